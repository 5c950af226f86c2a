#pragma once

#include <cstring>

namespace zvtest {

/// The variables of style sheets, in the order in which they are replaced.
constexpr const char* styleVariables[] = {
    "@panel",
    "@editorEnabled",
    "@editorDisabled",
    "@editorFocus",
    "@editorHover",
    "@interactiveEnabled",
    "@interactiveHover",
    "@interactivePressed",
    "@borderEditorEnabled",
    "@borderEditorDisabled",
    "@borderEditorFocus",
    "@borderEditorHover",
    "@borderInteractiveEnabled",
    "@borderInteractiveDisabled",
    "@borderInteractiveHover",
    "@borderInteractivePressed",
    "@accentD1",
    "@accentD2",
    "@accentD3",
    "@accentL1",
    "@accentL2",
    "@accentL3",
    "@accentForeground",
    "@accent",
    "@textEnabled",
    "@textDisabled",
    "@textHover",
    "@iconCheckboxTick",
    "@iconCheckboxIndeterminate",
    "@iconClose",
    "@iconMenu",
    "@testplanCommentTextEnabled",
};

inline bool isIconVariable(const char* name)
{
    return std::strncmp(name, "@icon", 5) == 0;
}

} // namespace zvtest
