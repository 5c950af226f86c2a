#include "shell/ShortcutsDialog.h"

#include "common/DimPlaceholder.h"

#include <DockFramework/DockableWidgetContents.h>

#include <QAction>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QKeySequence>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace workbench {

namespace {

constexpr QSize preferredSize(520, 560);

QString withoutMarks(const QString& text)
{
    QString plain = text;
    plain.replace(QLatin1String("&&"), QString(QChar::Null));
    plain.remove(QLatin1Char('&')).replace(QChar::Null, QLatin1Char('&'));
    plain.remove(QStringLiteral("…"));
    return plain;
}

/// Returns the shortcuts of \p action, each once: two may be written alike.
QString keysOf(const QAction& action)
{
    QStringList keys;
    for (const QKeySequence& shortcut : action.shortcuts()) {
        const QString text = shortcut.toString(QKeySequence::NativeText);
        if (!text.isEmpty() && !keys.contains(text))
            keys.append(text);
    }
    return keys.join(QStringLiteral(", "));
}

/// Returns the actions of \p menu and of the menus within.
QList<QAction*> actionsBelow(const QMenu& menu)
{
    QList<QAction*> actions;
    for (QAction* const action : menu.actions()) {
        if (const QMenu* const inner = action->menu())
            actions += actionsBelow(*inner);
        else
            actions.append(action);
    }
    return actions;
}

} // namespace

ShortcutsDialog::ShortcutsDialog(QMainWindow& window)
    : QDialog(&window)
    , m_search(new QLineEdit(this))
    , m_list(new QTreeWidget(this))
{
    setWindowTitle(tr("Keyboard Shortcuts"));
    m_search->setObjectName(QStringLiteral("search"));
    m_search->setAccessibleName(tr("Search for a command or key"));
    m_search->setPlaceholderText(tr("Search for a command or key"));
    m_search->setClearButtonEnabled(true);
    new DimPlaceholder(m_search);
    m_list->setObjectName(QStringLiteral("shortcuts"));
    m_list->setAccessibleName(tr("Keyboard shortcuts"));
    m_list->setHeaderLabels({tr("Command"), tr("Keys")});
    m_list->setRootIsDecorated(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_list->header()->setStretchLastSection(false);
    addMenus(window);
    addWidgets(window);
    m_list->expandAll();

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_search, &QLineEdit::textChanged, this, &ShortcutsDialog::filter);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_search);
    layout->addWidget(m_list, 1);
    layout->addWidget(buttons);
    resize(preferredSize.boundedTo(window.size()));
}

void ShortcutsDialog::addMenus(const QMainWindow& window)
{
    for (const QAction* const entry : window.menuBar()->actions()) {
        if (!entry->menu())
            continue;
        // A menu may be filled only when it is opened.
        Q_EMIT entry->menu()->aboutToShow();
        add(withoutMarks(entry->text()), actionsBelow(*entry->menu()));
    }
}

/// Adds what works within one document or panel alone.
void ShortcutsDialog::addWidgets(const QMainWindow& window)
{
    for (const DockableWidgetContents* const contents :
         window.findChildren<DockableWidgetContents*>()) {
        if (contents->isContentWidget())
            continue;
        QList<QAction*> actions = contents->actions();
        for (const QWidget* const widget : contents->findChildren<QWidget*>()) {
            for (QAction* const action : widget->actions()) {
                if (!actions.contains(action))
                    actions.append(action);
            }
        }
        add(contents->shortTitle(), actions);
    }
}

void ShortcutsDialog::add(const QString& group, const QList<QAction*>& actions)
{
    QTreeWidgetItem* top = nullptr;
    for (const QAction* const action : actions) {
        const QString keys = keysOf(*action);
        if (keys.isEmpty())
            continue;
        if (!top) {
            top = new QTreeWidgetItem(m_list, {group});
            top->setFlags(Qt::ItemIsEnabled);
            top->setFirstColumnSpanned(true);
            QFont bold = font();
            bold.setBold(true);
            top->setFont(0, bold);
        }
        new QTreeWidgetItem(top, {withoutMarks(action->text()), keys});
    }
}

/// Shows the commands whose name or keys contain \p text.
void ShortcutsDialog::filter(const QString& text)
{
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        QTreeWidgetItem* const group = m_list->topLevelItem(i);
        bool isEmpty = true;
        for (int j = 0; j < group->childCount(); ++j) {
            QTreeWidgetItem* const item = group->child(j);
            const bool isFound = item->text(0).contains(text, Qt::CaseInsensitive)
                || item->text(1).contains(text, Qt::CaseInsensitive);
            item->setHidden(!isFound);
            isEmpty = isEmpty && !isFound;
        }
        group->setHidden(isEmpty);
    }
}

} // namespace workbench
