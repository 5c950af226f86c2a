#pragma once

#include <zvutil/zvutil_export.h>

#include <QPixmap>
#include <QWidget>

/// A picture that adapts to the widget's size: where the widget has less area than the picture, the
/// picture is scaled down in its proportions; it is never scaled up.
///
/// The height follows from the width. A picture that is larger than the widget on one side, though
/// not in area, is cut off there. GUI thread only.
/// @since 0.1 @ingroup widgets
class ZVUTIL_EXPORT ZvResponsiveImage : public QWidget
{
    Q_OBJECT

public:
    /// A widget with a picture.
    /// @param pixmap with a null one nothing is shown
    /// @param parent owns the widget; may be null
    ZvResponsiveImage(const QPixmap& pixmap, QWidget* parent);
    /// Loads a picture. Nothing is shown if that fails.
    /// @param file path of a file or a resource, in UTF-8; null shows nothing
    /// @param parent owns the widget; may be null
    ZvResponsiveImage(const char* file, QWidget* parent);
    /// Frees the picture.
    ~ZvResponsiveImage() override;

    /// Shows a picture from now on.
    /// @param pixmap with a null one nothing is shown
    void setImage(const QPixmap& pixmap);
    /// Loads a picture as the constructor does; nothing is shown if that fails.
    /// @param file path of a file or a resource, in UTF-8; null shows nothing
    void setImage(const char* file);

    /// @return always true.
    bool hasHeightForWidth() const override;
    /// @return the height at which the whole picture fits into \p width, cut down to whole pixels;
    /// without a picture the present height.
    /// @param width in pixels of the widget
    int heightForWidth(int width) const override;
    /// @return the present width, and the height for it.
    QSize sizeHint() const override;
    /// @return 1 by 1 pixel of the widget.
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// Emitted when any mouse button is pressed on the widget.
    void pressed(QPrivateSignal);

protected:
    /// Emits `pressed`.
    /// @param event isn't looked at
    void mousePressEvent(QMouseEvent* event) override;
    /// Paints the picture, centred as far as it fits.
    /// @param event isn't looked at
    void paintEvent(QPaintEvent* event) override;
    /// Scales the picture for the new size, smoothly.
    /// @param event has the new size
    void resizeEvent(QResizeEvent* event) override;

private:
    QPixmap scaleOriginal(const QSize& size) const;

    QPixmap m_image;
    QPixmap m_scaled;
};

static_assert(sizeof(ZvResponsiveImage) == sizeof(QWidget) + 2 * sizeof(QPixmap));
