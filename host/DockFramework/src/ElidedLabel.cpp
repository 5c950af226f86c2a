#include "ElidedLabel.h"

#include <QFontMetrics>

ElidedLabel::ElidedLabel(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

void ElidedLabel::setFullText(const QString& text)
{
    m_text = text;
    setAccessibleName(text);
    updateGeometry();
    fit();
}

QSize ElidedLabel::minimumSizeHint() const
{
    return QSize(fontMetrics().averageCharWidth() * 3, QLabel::minimumSizeHint().height());
}

QSize ElidedLabel::sizeHint() const
{
    return QSize(fontMetrics().horizontalAdvance(m_text) + 2, QLabel::sizeHint().height());
}

void ElidedLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    fit();
}

void ElidedLabel::fit()
{
    setText(fontMetrics().elidedText(m_text, Qt::ElideRight, contentsRect().width()));
}
