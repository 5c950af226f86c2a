#pragma once

#include <zvutil/zvutil_export.h>

#include <QBrush>
#include <QColor>
#include <QLineEdit>
#include <QString>

class QEvent;

/// A line edit whose background shows how far some work is: what is done is darker, up to a hard
/// edge.
///
/// The edge is where the widget's width at the last change of a value puts it: it follows a resize
/// only with the next value. Values aren't checked; one outside of 0 to the maximum puts the edge
/// outside, and Qt warns of a gradient.
///
/// The background is the widget's palette, so a style sheet that sets one hides it. GUI thread only.
class ZVUTIL_EXPORT ZvProgressLineEdit : public QLineEdit
{
public:
    explicit ZvProgressLineEdit(QWidget* parent = nullptr);
    ZvProgressLineEdit(const QString& text, QWidget* parent);
    ~ZvProgressLineEdit() override;

    /// The value at which all is done. 0 at the start.
    int progressMaximum() const;
    void setProgressMaximum(int maximum);

    /// How much is done. 0, as at the start, shows nothing.
    int progressValue() const;
    void setProgressValue(int value);

    /// Shows nothing, and sets the value to 0. The maximum stays.
    void clearProgressBar();

protected:
    /// A new style brings new colours, which show with the next change of a value.
    void changeEvent(QEvent* event) override;

private:
    void resetBrush();
    void progressChanged();

    int m_progressMaximum = 0;
    int m_progressValue = 0;
    QBrush m_baseBrush;
    QColor m_progressColour;
};
