#pragma once

#include <zvutil/ZvUUID.h>

#include "support/StdString.h"

#include <string>

namespace zvtest {

inline std::string textOf(const zvutil::ZvUUID& id)
{
    return id.c_str();
}

} // namespace zvtest
