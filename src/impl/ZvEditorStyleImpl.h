#pragma once

#include <zvutil/ZvEditorStyle.h>

#include <string>
#include <vector>

namespace libzvutil {

class ZVUTIL_NO_EXPORT ZvEditorStyle::Impl
{
public:
    std::string name;
    std::vector<ZvNamedColour> brushes;
};

} // namespace libzvutil
