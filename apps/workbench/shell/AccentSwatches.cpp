#include "shell/AccentSwatches.h"

#include "common/style_options.h"
#include "shell/accents.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QKeyEvent>
#include <QPainter>

namespace workbench {

namespace {

constexpr int columns = 8;

/// A button for one colour. The current colour has a ring, the one with the focus or under the
/// mouse a frame.
class Swatch : public QAbstractButton
{
public:
    explicit Swatch(const Accent& accent)
        : m_colour(accent.colour)
    {
        setCheckable(true);
        setFocusPolicy(Qt::StrongFocus);
        setAttribute(Qt::WA_Hover);
        setToolTip(accentText(accent.colour));
        setAccessibleName(accent.name);
        setAccessibleDescription(accentText(accent.colour));
    }

    QColor colour() const { return m_colour; }

    QSize sizeHint() const override { return {28, 28}; }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        constexpr qreal inset = 4.5;
        constexpr qreal ring = 1.5;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_colour);
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), 3, 3);
        if (!isChecked() && !hasFocus() && !underMouse())
            return;
        const QColor colour = styleColour(isChecked() ? libzvutil::ZvStyleBrush::TextEnabled
                                                      : libzvutil::ZvStyleBrush::TextDisabled);
        painter.setPen(QPen(colour, 2, hasFocus() && !isChecked() ? Qt::DotLine : Qt::SolidLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(ring, ring, -ring, -ring), 5, 5);
    }

    /// Leaves the arrow keys to the grid, which moves the focus.
    void keyPressEvent(QKeyEvent* event) override
    {
        switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            click();
            break;
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
            event->ignore();
            break;
        default:
            QAbstractButton::keyPressEvent(event);
        }
    }

private:
    QColor m_colour;
};

QColor colourOf(const QAbstractButton* button)
{
    return button ? static_cast<const Swatch*>(button)->colour() : QColor();
}

} // namespace

AccentSwatches::AccentSwatches(QWidget* parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Accent colours"));
    auto* const layout = new QGridLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(0);
    int index = 0;
    for (const Accent& accent : accents()) {
        auto* const swatch = new Swatch(accent);
        m_swatches.addButton(swatch, index);
        layout->addWidget(swatch, index / columns, index % columns);
        ++index;
    }
    connect(&m_swatches, QOverload<QAbstractButton*>::of(&QButtonGroup::buttonClicked), this,
            [this](const QAbstractButton* button) { Q_EMIT chosen(colourOf(button)); });
}

void AccentSwatches::setCurrent(const QColor& colour)
{
    // An exclusive group would keep its checked button, even if no swatch has this colour.
    m_swatches.setExclusive(false);
    for (QAbstractButton* const button : m_swatches.buttons())
        button->setChecked(colourOf(button).rgb() == colour.rgb() && colour.isValid());
    m_swatches.setExclusive(true);
}

QColor AccentSwatches::current() const
{
    return colourOf(m_swatches.checkedButton());
}

void AccentSwatches::focusInEvent(QFocusEvent* event)
{
    QAbstractButton* const first =
        m_swatches.checkedButton() ? m_swatches.checkedButton() : m_swatches.button(0);
    if (first)
        first->setFocus(event->reason());
}

void AccentSwatches::keyPressEvent(QKeyEvent* event)
{
    const int forward = isRightToLeft() ? -1 : 1;
    switch (event->key()) {
    case Qt::Key_Left:
        moveFocus(-forward);
        break;
    case Qt::Key_Right:
        moveFocus(forward);
        break;
    case Qt::Key_Up:
        moveFocus(-columns);
        break;
    case Qt::Key_Down:
        moveFocus(columns);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

/// Moves the focus by \p step swatches. Before the first and after the last one, the focus stays.
void AccentSwatches::moveFocus(int step)
{
    for (QAbstractButton* const button : m_swatches.buttons()) {
        QAbstractButton* const next = m_swatches.button(m_swatches.id(button) + step);
        if (button->hasFocus() && next) {
            next->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

} // namespace workbench
