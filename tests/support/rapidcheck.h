#pragma once

// RapidCheck's headers don't pass our warnings.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wpedantic"
#endif
#include <rapidcheck.h>
#include <rapidcheck/state.h>
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
