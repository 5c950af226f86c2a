#pragma once

#include <QLabel>
#include <QString>

/// A line of text that ends in dots where there is no room for all of it.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent);

    /// Also what assistive tools read.
    void setFullText(const QString& text);

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void fit();

    QString m_text;
};
