#pragma once

#include <QButtonGroup>
#include <QColor>
#include <QWidget>

namespace workbench {

/// The accents of the built-in style library as a grid of swatches, to stand in a menu or a dialog.
/// The arrow keys go from one to the next, Return and the blank choose.
class AccentSwatches : public QWidget
{
    Q_OBJECT

public:
    explicit AccentSwatches(QWidget* parent = nullptr);

    /// Rings the swatch of this colour, or none if there isn't one.
    void setCurrent(const QColor& colour);
    /// Invalid if no swatch is ringed.
    QColor current() const;

Q_SIGNALS:
    /// The user has chosen this colour, also if it was the current one.
    void chosen(const QColor& colour);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void moveFocus(int step);

    QButtonGroup m_swatches;
};

} // namespace workbench
