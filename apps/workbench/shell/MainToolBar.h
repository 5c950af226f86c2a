#pragma once

#include <QList>
#include <QToolBar>

class QAction;

namespace workbench {

/// The tool bar of the window: what the window always offers, then what its current document does.
class MainToolBar : public QToolBar
{
    Q_OBJECT

public:
    explicit MainToolBar(QWidget* parent);

    void showActions(const QList<QAction*>& ofWindow, const QList<QAction*>& ofDocument);

private:
    QAction* m_separator; // owned as a child
};

} // namespace workbench
