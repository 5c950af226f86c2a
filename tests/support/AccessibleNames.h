#pragma once

#include <QAccessible>
#include <QString>
#include <QStringList>
#include <QWidget>

namespace zvtest {

/// Appends what in the tree below \p item can have the focus, is shown, and has no name.
inline void addUnnamed(QAccessibleInterface& item, QStringList& unnamed)
{
    const QAccessible::State state = item.state();
    if (state.invisible)
        return;
    if (state.focusable && item.text(QAccessible::Name).isEmpty()) {
        const QObject* const object = item.object();
        unnamed.append(
            object ? QString("%1 “%2”").arg(QString::fromLatin1(object->metaObject()->className()),
                                            object->objectName())
                   : QString("role %1").arg(item.role()));
    }
    for (int i = 0; i < item.childCount(); ++i) {
        if (QAccessibleInterface* const child = item.child(i))
            addUnnamed(*child, unnamed);
    }
}

/// Returns what a screen reader couldn't name when it has the focus, in a widget that is shown.
inline QStringList unnamedIn(QWidget& widget)
{
    QStringList unnamed;
    if (QAccessibleInterface* const root = QAccessible::queryAccessibleInterface(&widget))
        addUnnamed(*root, unnamed);
    return unnamed;
}

} // namespace zvtest
