#pragma once

#include <QLabel>

class QAbstractItemView;

namespace workbench {

/// A text in the middle of an item view that says what to do as long as the view has no rows. The mouse
/// goes through it.
class EmptyHint : public QLabel
{
    Q_OBJECT

public:
    /// A hint in \p view, which owns it and has its model already.
    EmptyHint(const QString& text, QAbstractItemView* view);

    void say(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void update();
    void paint();

    QAbstractItemView& m_view;
};

} // namespace workbench
