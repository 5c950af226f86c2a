#pragma once

#include <zvutil/zvutil_export.h>

#include <QBrush>
#include <QColor>
#include <QLineEdit>
#include <QString>

class QEvent;

/// A line edit whose background shows the progress of some work: the part that is done is darker, up
/// to a hard edge.
///
/// The edge is computed from the widget's width when a value changes, so it follows a resize only
/// with the next value. Values aren't checked; one outside of 0 to the maximum puts the edge outside
/// the widget, and Qt warns of a gradient.
///
/// The background is the widget's palette, so a style sheet that sets one hides it. GUI thread only.
class ZVUTIL_EXPORT ZvProgressLineEdit : public QLineEdit
{
public:
    /// An empty line edit that shows no progress; \p parent, which may be null, owns it.
    explicit ZvProgressLineEdit(QWidget* parent = nullptr);
    /// The same with \p text.
    ZvProgressLineEdit(const QString& text, QWidget* parent);
    /// Frees the colours of the bar.
    ~ZvProgressLineEdit() override;

    /// The value at which all is done; 0 at first.
    int progressMaximum() const;
    /// Sets the value at which all is done, and repaints.
    void setProgressMaximum(int maximum);

    /// How much is done; 0, as at first, shows nothing.
    int progressValue() const;
    /// Sets how much is done, and repaints.
    void setProgressValue(int value);

    /// Sets the value to 0, which shows nothing. The maximum stays.
    void clearProgressBar();

protected:
    /// Computes the colours again for a new style; they are painted after the next change of a value.
    void changeEvent(QEvent* event) override;

private:
    void resetBrush();
    void progressChanged();

    int m_progressMaximum = 0;
    int m_progressValue = 0;
    QBrush m_baseBrush;
    QColor m_progressColour;
};
