#include <zvutil/experimental/xml/xml_exception.h>

#include <string>
namespace zvutil::experimental::xml {

xml_exception::xml_exception(const char* text)
    : exception(text, std::string())
{
}

xml_exception::xml_exception(const xml_exception& other) noexcept = default;

xml_exception::~xml_exception() = default;

} // namespace zvutil::experimental::xml
