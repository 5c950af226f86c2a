#pragma once

#include <zvutil/zvutil_export.h>

#include <QPixmap>
#include <QWidget>

/// A picture that adapts to the widget's size: where the widget has less area than the picture, the
/// picture is scaled down in its proportions; it is never scaled up.
///
/// The height follows from the width. A picture that is larger than the widget on one side, though
/// not in area, is cut off there. GUI thread only.
class ZVUTIL_EXPORT ZvResponsiveImage : public QWidget
{
    Q_OBJECT

public:
    /// Shows \p pixmap, or nothing if that is null; \p parent, which may be null, owns the widget.
    ZvResponsiveImage(const QPixmap& pixmap, QWidget* parent);
    /// Loads \p file, a file or a resource, given in UTF-8. Nothing is shown if that fails or
    /// \p file is null.
    ZvResponsiveImage(const char* file, QWidget* parent);
    /// Frees the picture.
    ~ZvResponsiveImage() override;

    /// Shows \p pixmap from now on, or nothing if that is null.
    void setImage(const QPixmap& pixmap);
    /// Loads \p file as the constructor does; nothing is shown if that fails or \p file is null.
    void setImage(const char* file);

    /// Always true.
    bool hasHeightForWidth() const override;
    /// The height at which the whole picture fits into \p width, cut down to whole pixels; without a
    /// picture the present height.
    int heightForWidth(int width) const override;
    /// The present width, and the height for it.
    QSize sizeHint() const override;
    /// 1 by 1 pixel of the widget.
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Emitted when any mouse button is pressed on the widget.
    void pressed(QPrivateSignal);

protected:
    /// Emits `pressed`.
    void mousePressEvent(QMouseEvent* event) override;
    /// Paints the picture, centred as far as it fits.
    void paintEvent(QPaintEvent* event) override;
    /// Scales the picture for the new size, smoothly.
    void resizeEvent(QResizeEvent* event) override;

private:
    QPixmap scaleOriginal(const QSize& size) const;

    QPixmap m_image;
    QPixmap m_scaled;
};

static_assert(sizeof(ZvResponsiveImage) == sizeof(QWidget) + 2 * sizeof(QPixmap));
