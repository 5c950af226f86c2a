#pragma once

#include <QColor>
#include <QSize>
#include <QWidget>

namespace libzvutil {
class ZvStyle;
class ZvStyleEditor;
} // namespace libzvutil

/// A level from 0 to 1 as a bar, which turns red near the end.
class LevelMeter : public QWidget
{
    Q_OBJECT

public:
    /// Creates a meter in the application's current style.
    explicit LevelMeter(QWidget* parent = nullptr);
    /// Creates a meter in the style that \p editor shows.
    explicit LevelMeter(const libzvutil::ZvStyleEditor& editor);

    double level() const;
    /// Shows \p level, which is brought into the range from 0 to 1.
    void setLevel(double level);

    QSize sizeHint() const override;

    /// Adds a tab with a meter to all style editors that are made from now on.
    static void registerPreview();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// The colours that the meter paints with, as taken from a style.
    struct Colours
    {
        QColor background;
        QColor border;
        QColor bar;
        QColor overload;
    };

    void useStyle(const libzvutil::ZvStyle& style);

    Colours m_colours;
    double m_level = 0;
};
