#pragma once

#include <zvutil/zvutil_export.h>

#include <QPixmap>
#include <QWidget>

/// A picture that fits itself into the room that it gets: it is made smaller, in its proportions,
/// where the widget has less area than the picture, and never larger.
///
/// Its height follows from its width. A picture that is larger than the widget on one side, though
/// not in area, is cut off there. GUI thread only.
class ZVUTIL_EXPORT ZvResponsiveImage : public QWidget
{
    Q_OBJECT

public:
    ZvResponsiveImage(const QPixmap& pixmap, QWidget* parent);
    /// Loads \p file, a file or a resource, given in UTF-8. Nothing is shown if that can't be done.
    ZvResponsiveImage(const char* file, QWidget* parent);
    ~ZvResponsiveImage() override;

    void setImage(const QPixmap& pixmap);
    /// As the constructor.
    void setImage(const char* file);

    /// True.
    bool hasHeightForWidth() const override;
    /// The height at which the whole picture fits into \p width, cut down to whole pixels; without a
    /// picture the present height.
    int heightForWidth(int width) const override;
    /// The present width, and the height for it.
    QSize sizeHint() const override;
    /// 1 by 1.
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// A mouse button was pressed on the widget, any of them.
    void pressed(QPrivateSignal);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QPixmap scaleOriginal(const QSize& size) const;

    QPixmap m_image;
    QPixmap m_scaled;
};

static_assert(sizeof(ZvResponsiveImage) == sizeof(QWidget) + 2 * sizeof(QPixmap));
