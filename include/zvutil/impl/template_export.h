#pragma once

#include <zvutil/zvutil_export.h>

// Marks for the instantiations of an exported class template. A header declares them:
//     extern template class ZVUTIL_TEMPLATE_DECLARE Thing<char>;
// and the library's source defines them:
//     template class ZVUTIL_TEMPLATE_DEFINE Thing<char>;
// MSVC refuses to export an extern instantiation and wants the mark at the definition; GCC and Clang
// ignore the mark there and want it at the first declaration.
#if defined(_MSC_VER) && defined(zvutil_EXPORTS)
#define ZVUTIL_TEMPLATE_DECLARE
#define ZVUTIL_TEMPLATE_DEFINE ZVUTIL_EXPORT
#else
#define ZVUTIL_TEMPLATE_DECLARE ZVUTIL_EXPORT
#define ZVUTIL_TEMPLATE_DEFINE
#endif
