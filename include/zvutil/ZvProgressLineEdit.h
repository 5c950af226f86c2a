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
/// @since 0.1 @ingroup widgets
class ZVUTIL_EXPORT ZvProgressLineEdit : public QLineEdit
{
public:
    /// An empty line edit that shows no progress.
    /// @param parent owns the widget; may be null
    explicit ZvProgressLineEdit(QWidget* parent = nullptr);
    /// The same with a text.
    /// @param text shown at first
    /// @param parent owns the line edit; may be null
    ZvProgressLineEdit(const QString& text, QWidget* parent);
    /// Frees the colours of the bar.
    ~ZvProgressLineEdit() override;

    /// @return the value at which all is done; 0 at first.
    int progressMaximum() const;
    /// Sets the value at which all is done, and repaints.
    /// @param maximum isn't checked
    void setProgressMaximum(int maximum);

    /// @return how much is done; 0, as at first, shows nothing.
    int progressValue() const;
    /// Sets how much is done, and repaints.
    /// @param value from 0 to the maximum; isn't checked
    void setProgressValue(int value);

    /// Sets the value to 0, which shows nothing. The maximum stays.
    void clearProgressBar();

protected:
    /// Computes the colours again for a new style; they are painted after the next change of a
    /// value.
    /// @param event passed on to the base class
    void changeEvent(QEvent* event) override;

private:
    void resetBrush();
    void progressChanged();

    int m_progressMaximum = 0;
    int m_progressValue = 0;
    QBrush m_baseBrush;
    QColor m_progressColour;
};
