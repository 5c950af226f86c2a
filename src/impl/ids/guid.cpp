#include "impl/ids/guid.h"

#include <QtGlobal>

#if defined(Q_OS_WIN)

#include <objbase.h>

#include <algorithm>
#include <iterator>

namespace zvutil::impl {

guid make_guid()
{
    GUID id = {};
    // By contract: make_guid() ignores a failure of CoCreateGuid, which no caller could handle.
    (void)CoCreateGuid(&id);
    // Convert the first three parts byte by byte: the text shows them as numbers, whatever their
    // byte order in memory.
    guid result = {
        static_cast<unsigned char>(id.Data1 >> 24), static_cast<unsigned char>(id.Data1 >> 16),
        static_cast<unsigned char>(id.Data1 >> 8),  static_cast<unsigned char>(id.Data1),
        static_cast<unsigned char>(id.Data2 >> 8),  static_cast<unsigned char>(id.Data2),
        static_cast<unsigned char>(id.Data3 >> 8),  static_cast<unsigned char>(id.Data3),
    };
    std::copy(std::begin(id.Data4), std::end(id.Data4), result.begin() + 8);
    return result;
}

} // namespace zvutil::impl

#else

#include "impl/ids/random_pool.h"

namespace zvutil::impl {

guid make_guid()
{
    guid result = take_random();
    result[6] = (result[6] & 0x0F) | 0x40; // version 4
    result[8] = (result[8] & 0x3F) | 0x80; // variant of RFC 4122
    return result;
}

} // namespace zvutil::impl

#endif
