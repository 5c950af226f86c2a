#pragma once

#include <zvutil/zvutil_export.h>

#include <QWidget>

class ZvProcessingIndicatorPrivate;

/// A spinner: twelve bars on a circle, one of them opaque, which goes round clockwise as long as the
/// widget is visible.
///
/// It steps ten times a second, each step a repaint; hidden it does nothing, and shown again it goes
/// on where it stopped. It is black, whatever the style. GUI thread only.
class ZVUTIL_EXPORT ZvProcessingIndicator : public QWidget
{
    Q_OBJECT

public:
    /// Grows in both directions, and has the cursor that tells to wait.
    explicit ZvProcessingIndicator(QWidget* parent = nullptr);
    ~ZvProcessingIndicator() override;

    /// 16 by 16.
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    ZvProcessingIndicatorPrivate* d_func();
    const ZvProcessingIndicatorPrivate* d_func() const;

    ZvProcessingIndicatorPrivate* d; // a child
};

static_assert(sizeof(ZvProcessingIndicator) == sizeof(QWidget) + sizeof(void*));
