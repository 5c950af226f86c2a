#include "LevelMeter.h"

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleEditor.h>
#include <zvutil/ZvStyleManager.h>

#include <QPainter>

#include <algorithm>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using libzvutil::ZvStyleEditor;
using libzvutil::ZvStyleManager;

namespace {

constexpr double overload = 0.9;

} // namespace

LevelMeter::LevelMeter(QWidget* parent)
    : QWidget(parent)
{
    useStyle(ZvStyle::Current());
    connect(&libzvutil::styleManager(), &ZvStyleManager::currentStyleChanged, this,
            [this](const ZvStyle& style) { useStyle(style); });
}

LevelMeter::LevelMeter(const ZvStyleEditor& editor)
{
    useStyle(ZvStyle::Current());
    connect(&editor, &ZvStyleEditor::previewStyleChanged, this,
            [this](const ZvStyle& style) { useStyle(style); });
}

void LevelMeter::useStyle(const ZvStyle& style)
{
    m_colours.background = style.colour(ZvStyleBrush::EditorEnabled);
    m_colours.border = style.colour(ZvStyleBrush::BorderEditorEnabled);
    m_colours.bar = style.colour(ZvStyleBrush::Accent);
    // Not every style has the editor; a style without it gives an invalid colour.
    m_colours.overload = style.editorColour("Testplan", "ErrorBackground");
    if (!m_colours.overload.isValid())
        m_colours.overload = Qt::red;
    update();
}

double LevelMeter::level() const
{
    return m_level;
}

void LevelMeter::setLevel(double level)
{
    m_level = std::clamp(level, 0.0, 1.0);
    update();
}

QSize LevelMeter::sizeHint() const
{
    return {200, 24};
}

void LevelMeter::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setPen(m_colours.border);
    painter.setBrush(m_colours.background);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    const QRect inside = rect().adjusted(1, 1, -1, -1);
    const int bar = qRound(inside.width() * m_level);
    const int plain = qRound(inside.width() * std::min(m_level, overload));
    painter.fillRect(inside.x(), inside.y(), plain, inside.height(), m_colours.bar);
    painter.fillRect(inside.x() + plain, inside.y(), bar - plain, inside.height(),
                     m_colours.overload);
}

void LevelMeter::registerPreview()
{
    ZvStyleEditor::RegisterPreviewWidget("Levels", [](const ZvStyleEditor* editor) -> QWidget* {
        auto* const meter = new LevelMeter(*editor);
        meter->setLevel(0.95);
        return meter;
    });
}
