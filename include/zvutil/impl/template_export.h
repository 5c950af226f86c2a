#pragma once

#include <zvutil/zvutil_export.h>

// How the instantiations of an exported class template are marked. The header declares them:
//     extern template class ZVUTIL_TEMPLATE_DECLARE Thing<char>;
// and the library's source defines them:
//     template class ZVUTIL_TEMPLATE_DEFINE Thing<char>;
// MSVC refuses to export what is extern and wants the mark where the instantiation is; GCC and
// Clang ignore it there and want it at the first declaration.
#if defined(_MSC_VER) && defined(zvutil_EXPORTS)
#define ZVUTIL_TEMPLATE_DECLARE
#define ZVUTIL_TEMPLATE_DEFINE ZVUTIL_EXPORT
#else
#define ZVUTIL_TEMPLATE_DECLARE ZVUTIL_EXPORT
#define ZVUTIL_TEMPLATE_DEFINE
#endif
