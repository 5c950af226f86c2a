#pragma once

#include <QObject>

class QWidget;

namespace workbench {

/// Keeps windows without a parent, such as the style editor, in front of the workbench's window: behind
/// it a user would take them for closed.
class WindowStack : public QObject
{
    Q_OBJECT

public:
    /// Keeps them in front of \p window, which owns the object.
    explicit WindowStack(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_window;
};

} // namespace workbench
