#include "impl/background/string_metatype.h"

#include <QMetaType>

#include <string>

namespace zvutil::impl {

void register_string_metatype()
{
    // Register by name: a Q_DECLARE_METATYPE would collide with that of an application.
    [[maybe_unused]] static const int registered = qRegisterMetaType<std::string>("std::string");
}

} // namespace zvutil::impl
