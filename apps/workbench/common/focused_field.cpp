#include "common/focused_field.h"

#include <QApplication>
#include <QLineEdit>

namespace workbench {

QLineEdit* focusedField(const QWidget& widget)
{
    auto* const field = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    return field && widget.isAncestorOf(field) ? field : nullptr;
}

} // namespace workbench
