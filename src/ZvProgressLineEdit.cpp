#include <zvutil/ZvProgressLineEdit.h>

#include <QEvent>
#include <QLinearGradient>
#include <QPalette>

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
    // The widget's own palette may hold a gradient already.
    const QLineEdit plain;
    m_baseBrush = plain.palette().brush(QPalette::Current, QPalette::Base);
    m_progressColour = m_baseBrush.color().darker(110);
}

void ZvProgressLineEdit::progressChanged()
{
    QPalette changed = palette();
    changed.setBrush(QPalette::All, QPalette::Base, progressBrush());
    setPalette(changed);
    update();
}

QBrush ZvProgressLineEdit::progressBrush() const
{
    if (m_progressValue == 0)
        return m_baseBrush;
    if (m_progressValue == m_progressMaximum)
        return QBrush(m_progressColour, Qt::SolidPattern);
    QLinearGradient gradient(rect().topLeft(), rect().topRight());
    const double edge = m_progressMaximum == 0 ? 0.0 : double(m_progressValue) / m_progressMaximum;
    // Wanted: Qt refuses the stops that lie outside, with a warning, and the others are used.
    gradient.setColorAt(edge - 0.001, m_progressColour);
    gradient.setColorAt(edge, m_baseBrush.color());
    gradient.setColorAt(edge + 0.001, m_baseBrush.color());
    return QBrush(gradient);
}
