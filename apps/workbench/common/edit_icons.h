#pragma once

#include <QIcon>

namespace workbench {

/// Icons of the actions on documents, in the current style's colours; see `lineIcon`.
QIcon openIcon();
QIcon saveIcon();
QIcon runIcon();
QIcon stopIcon();
QIcon undoIcon();
QIcon redoIcon();
QIcon cutIcon();
QIcon copyIcon();
QIcon pasteIcon();
QIcon insertRowIcon();
QIcon removeRowIcon();
QIcon rotateIcon();
QIcon removeIcon();
QIcon fitIcon();
QIcon pointerIcon();

} // namespace workbench
