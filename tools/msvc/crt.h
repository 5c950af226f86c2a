// What tools/check-msvc declares before each source: LLVM's standard library expects these functions of Visual C++'s
// run-time library, and the headers of Wine's run-time library lack them. Nothing is linked, so declarations do.
#pragma once
#include <intrin.h>
#include <locale.h>
#include <stdarg.h>
#include <stddef.h>
#include <time.h>
struct timespec
{
    long long tv_sec;
    long tv_nsec;
};
#define MB_CUR_MAX 4
#define _SH_DENYNO 0x40
typedef int sig_atomic_t;
extern "C" {
int vsnprintf_s(char*, size_t, size_t, const char*, va_list);
int localtime_s(struct tm*, const time_t*);
int gmtime_s(struct tm*, const time_t*);
int getenv_s(size_t*, char*, size_t, const char*);
unsigned int ___lc_codepage_func();
unsigned char _BitScanForward(unsigned long*, unsigned long);
double erfc(double);
float erfcf(float);
int _islower_l(int, _locale_t);
int _isupper_l(int, _locale_t);
float _strtof_l(const char*, char**, _locale_t);
double _strtod_l(const char*, char**, _locale_t);
long double acosl(long double);
long double asinl(long double);
long double atanl(long double);
long double ceill(long double);
long double cosl(long double);
long double coshl(long double);
long double expl(long double);
long double fabsl(long double);
long double floorl(long double);
long double logl(long double);
long double log10l(long double);
long double sinl(long double);
long double sinhl(long double);
long double sqrtl(long double);
long double tanl(long double);
long double tanhl(long double);
long double acoshl(long double);
long double asinhl(long double);
long double atanhl(long double);
long double cbrtl(long double);
long double erfl(long double);
long double erfcl(long double);
long double exp2l(long double);
long double expm1l(long double);
long double lgammal(long double);
long double log1pl(long double);
long double log2l(long double);
long double logbl(long double);
long double nearbyintl(long double);
long double rintl(long double);
long double roundl(long double);
long double tgammal(long double);
long double truncl(long double);
long double atan2l(long double, long double);
long double fmodl(long double, long double);
long double powl(long double, long double);
long double copysignl(long double, long double);
long double fdiml(long double, long double);
long double fmaxl(long double, long double);
long double fminl(long double, long double);
long double hypotl(long double, long double);
long double nextafterl(long double, long double);
long double remainderl(long double, long double);
long double frexpl(long double, int*);
long double ldexpl(long double, int);
long double modfl(long double, long double*);
long double fmal(long double, long double, long double);
int ilogbl(long double);
long long llrintl(long double);
long long llroundl(long double);
long lrintl(long double);
long lroundl(long double);
long double nexttowardl(long double, long double);
float nexttowardf(float, long double);
double nexttoward(double, long double);
long double nanl(const char*);
long double remquol(long double, long double, int*);
long double scalblnl(long double, long);
long double scalbnl(long double, int);
}

// Qt's containers use these of Visual C++'s standard library.
namespace stdext {
template <typename T>
T* make_unchecked_array_iterator(T* p)
{
    return p;
}
template <typename T>
T* make_checked_array_iterator(T* p, size_t)
{
    return p;
}
} // namespace stdext
