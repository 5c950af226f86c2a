#pragma once

#include <QIcon>

namespace workbench {

/// Icons of what is done with documents.
QIcon openIcon();
QIcon saveIcon();
QIcon runIcon();
QIcon stopIcon();
QIcon undoIcon();
QIcon redoIcon();
QIcon insertRowIcon();
QIcon removeRowIcon();
QIcon rotateIcon();
QIcon removeIcon();
QIcon fitIcon();
QIcon pointerIcon();

} // namespace workbench
