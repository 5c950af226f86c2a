#pragma once

#include <zvutil/zvutil_export.h>

#include <QWidget>

class ZvProcessingIndicatorPrivate;

/// A spinner: twelve bars on a circle, one of them opaque, that turn clockwise as long as the widget
/// is visible.
///
/// The spinner steps ten times a second, with a repaint each time; while hidden it does nothing, and
/// when shown again it continues where it stopped. The bars are black in every style. GUI thread
/// only.
/// @since 0.1 @ingroup widgets
class ZVUTIL_EXPORT ZvProcessingIndicator : public QWidget
{
    Q_OBJECT

public:
    /// A spinner that takes all the room it gets, with the wait cursor.
    /// @param parent owns the widget; may be null
    explicit ZvProcessingIndicator(QWidget* parent = nullptr);
    /// Ends the spinner.
    ~ZvProcessingIndicator() override;

    /// @return 16 by 16 pixels of the widget.
    QSize minimumSizeHint() const override;

protected:
    /// Paints the twelve bars, centred, in a circle of the widget's shorter side.
    /// @param event isn't looked at
    void paintEvent(QPaintEvent* event) override;
    /// Starts the steps.
    /// @param event passed on to the base class
    void showEvent(QShowEvent* event) override;
    /// Stops the steps; the angle stays.
    /// @param event passed on to the base class
    void hideEvent(QHideEvent* event) override;

private:
    ZvProcessingIndicatorPrivate* d_func();
    const ZvProcessingIndicatorPrivate* d_func() const;

    ZvProcessingIndicatorPrivate* d; // a child
};

static_assert(sizeof(ZvProcessingIndicator) == sizeof(QWidget) + sizeof(void*));
