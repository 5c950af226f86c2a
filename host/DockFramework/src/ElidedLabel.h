#pragma once

#include <QLabel>
#include <QString>

/// A line of text that is elided where there is no room for all of it.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent);

    /// Sets the text, which assistive tools read in full.
    void setFullText(const QString& text);

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void fit();

    QString m_text;
};
