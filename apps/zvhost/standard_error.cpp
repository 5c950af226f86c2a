#include "standard_error.h"

#include <cstdio>

#if defined(Q_OS_WIN)
#include <windows.h>
#endif

namespace {

#if defined(Q_OS_WIN)

/// Returns whether somebody sees standard error: a console, or a program that reads it.
bool hasStandardError()
{
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    GetStartupInfoW(&start);
    return GetConsoleWindow() || (start.dwFlags & STARTF_USESTDHANDLES) != 0;
}

bool showBox(const QString& text)
{
    if (hasStandardError())
        return false;
    MessageBoxW(nullptr, reinterpret_cast<const wchar_t*>(text.utf16()), L"zvhost",
                MB_OK | MB_ICONERROR);
    return true;
}

#else

bool showBox(const QString& /*text*/)
{
    return false;
}

#endif

} // namespace

void writeError(const QString& text)
{
    if (!showBox(text))
        std::fprintf(stderr, "%s\n", text.toUtf8().constData());
}
