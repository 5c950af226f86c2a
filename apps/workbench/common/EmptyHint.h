#pragma once

#include <QLabel>

#include <functional>

class QAbstractItemView;
class QAbstractScrollArea;

namespace workbench {

/// A text in the middle of a view that says what to do as long as the view is empty. The mouse goes through it.
class EmptyHint : public QLabel
{
    Q_OBJECT

public:
    /// A hint in \p view, which owns it and has its model already: it is empty as long as it has no rows.
    EmptyHint(const QString& text, QAbstractItemView* view);
    /// A hint on a page that has a grid, which would cross the text. \p view owns it, and shows it as long as \p isEmpty
    /// returns true. Whoever changes what that depends on calls `update`.
    EmptyHint(const QString& text, QAbstractScrollArea* view, std::function<bool()> isEmpty);

    void say(const QString& text);
    /// Shows or hides the hint.
    void update();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void setColour();

    QAbstractScrollArea& m_view;
    std::function<bool()> m_isEmpty;
    bool m_hasGround = true;
};

} // namespace workbench
