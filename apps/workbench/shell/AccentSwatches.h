#pragma once

#include <QButtonGroup>
#include <QColor>
#include <QWidget>

namespace workbench {

/// Shows the accents of the built-in style library as a grid of swatches, for a menu or a dialog.
/// The arrow keys move from one to the next; Return and Space choose one.
class AccentSwatches : public QWidget
{
    Q_OBJECT

public:
    explicit AccentSwatches(QWidget* parent = nullptr);

    /// Marks the swatch of this colour with a ring, or none if no swatch has this colour.
    void setCurrent(const QColor& colour);
    /// Returns the colour of the swatch with the ring, or an invalid one if there is none.
    QColor current() const;

Q_SIGNALS:
    /// Emitted when the user has chosen a colour, even if it was the current one.
    void chosen(const QColor& colour);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void moveFocus(int step);

    QButtonGroup m_swatches;
};

} // namespace workbench
