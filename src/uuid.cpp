#include <zvutil/uuid.h>

#include "impl/ids/guid.h"

#include <cstddef>

namespace zvutil {

namespace {

constexpr char digits[] = "0123456789ABCDEF";

bool isGroupEnd(std::size_t byte)
{
    return byte == 3 || byte == 5 || byte == 7 || byte == 9;
}

std::string textOf(const impl::guid& guid)
{
    std::string text(36, '-');
    char* out = text.data();
    for (std::size_t i = 0; i < guid.size(); ++i) {
        *out++ = digits[guid[i] >> 4];
        *out++ = digits[guid[i] & 0x0F];
        if (isGroupEnd(i))
            ++out;
    }
    return text;
}

} // namespace

uuid::uuid()
    : m_text(textOf(impl::make_guid()))
{
}

} // namespace zvutil
