#include <zvutil/unknown_property_exception.h>

namespace zvutil {

unknown_property_exception::unknown_property_exception(const std::string& name)
    : exception("unknown property: ", name)
{
}

unknown_property_exception::unknown_property_exception(
    const unknown_property_exception& other) noexcept = default;

unknown_property_exception::~unknown_property_exception() = default;

} // namespace zvutil
