#include "impl/text/text_conversion.h"

#include <stdexcept>

namespace zvutil::impl {

void throw_bad_conversion()
{
    throw std::range_error("bad conversion");
}

} // namespace zvutil::impl
