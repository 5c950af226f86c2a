#include <zvutil/ZvProgressLineEdit.h>

#include <QEvent>
#include <QLinearGradient>
#include <QPalette>

namespace {

/// A gradient that changes from \p before to \p behind where \p done of the width ends.
QBrush hardEdge(const QRect& rect, double done, const QColor& before, const QColor& behind)
{
    QLinearGradient gradient(rect.topLeft(), rect.topRight());
    // By contract: values aren't checked. QGradient ignores stops outside of 0 to 1 with a warning
    // and uses the others.
    gradient.setColorAt(done - 0.001, before);
    gradient.setColorAt(done, behind);
    gradient.setColorAt(done + 0.001, behind);
    return QBrush(gradient);
}

} // namespace

ZvProgressLineEdit::ZvProgressLineEdit(QWidget* parent)
    : QLineEdit(parent)
{
    resetBrush();
}

ZvProgressLineEdit::ZvProgressLineEdit(const QString& text, QWidget* parent)
    : QLineEdit(text, parent)
{
    resetBrush();
}

ZvProgressLineEdit::~ZvProgressLineEdit() = default;

int ZvProgressLineEdit::progressMaximum() const
{
    return m_progressMaximum;
}

void ZvProgressLineEdit::setProgressMaximum(int maximum)
{
    m_progressMaximum = maximum;
    progressChanged();
}

int ZvProgressLineEdit::progressValue() const
{
    return m_progressValue;
}

void ZvProgressLineEdit::setProgressValue(int value)
{
    m_progressValue = value;
    progressChanged();
}

void ZvProgressLineEdit::clearProgressBar()
{
    setProgressValue(0);
}

void ZvProgressLineEdit::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::StyleChange) {
        resetBrush();
        update();
    }
    QLineEdit::changeEvent(event);
}

void ZvProgressLineEdit::resetBrush()
{
    // Take the colour from a new line edit: this one's palette may hold a gradient already.
    const QLineEdit plain;
    m_baseBrush = plain.palette().brush(QPalette::Current, QPalette::Base);
    m_progressColour = m_baseBrush.color().darker(110);
}

void ZvProgressLineEdit::progressChanged()
{
    QPalette changed = palette();
    if (m_progressValue == 0) {
        changed.setBrush(QPalette::All, QPalette::Base, m_baseBrush);
    } else if (m_progressValue == m_progressMaximum) {
        changed.setBrush(QPalette::All, QPalette::Base, QBrush(m_progressColour, Qt::SolidPattern));
    } else {
        const double done =
            m_progressMaximum == 0 ? 0.0 : double(m_progressValue) / m_progressMaximum;
        changed.setBrush(QPalette::All, QPalette::Base,
                         hardEdge(rect(), done, m_progressColour, m_baseBrush.color()));
    }
    setPalette(changed);
    update();
}
