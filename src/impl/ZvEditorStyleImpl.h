#pragma once

#include <zvutil/ZvEditorStyle.h>

#include <string>
#include <vector>

namespace libzvutil {

class ZvEditorStyle::Impl
{
public:
    std::string name;
    std::vector<ZvNamedColour> brushes;
};

} // namespace libzvutil
