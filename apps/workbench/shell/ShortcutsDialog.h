#pragma once

#include <QDialog>

class QLineEdit;
class QMainWindow;
class QTreeWidget;

namespace workbench {

/// A page of the shortcuts that work in a window, made from its actions: those of its menus, and those
/// of the documents and panels that are open.
class ShortcutsDialog : public QDialog
{
    Q_OBJECT

public:
    /// Reads the actions of \p window, which is the dialog's parent.
    explicit ShortcutsDialog(QMainWindow& window);

private:
    void addMenus(const QMainWindow& window);
    void addWidgets(const QMainWindow& window);
    void add(const QString& group, const QList<QAction*>& actions);
    void filter(const QString& text);

    QLineEdit* m_search; // owned as a child, like the next
    QTreeWidget* m_list;
};

} // namespace workbench
