#include "common/LineIcon.h"

#include "common/styles.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace workbench {

namespace {

using libzvutil::ZvStyleBrush;

constexpr double side = 24;
constexpr double lineWidth = 1.6;

class Engine : public QIconEngine
{
public:
    explicit Engine(const QPainterPath& lines)
        : m_lines(lines)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        const bool isOn = state == QIcon::On;
        const double scale = std::min(rect.width(), rect.height()) / side;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(scale, scale);
        if (isOn) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(styleColour(ZvStyleBrush::Accent));
            painter->drawRoundedRect(QRectF(0, 0, side, side), 4, 4);
        }
        painter->setBrush(Qt::NoBrush);
        painter->setPen(
            QPen(lineColour(mode, isOn), lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(m_lines);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new Engine(m_lines); }

private:
    static QColor lineColour(QIcon::Mode mode, bool isOn)
    {
        if (mode == QIcon::Disabled)
            return styleColour(ZvStyleBrush::TextDisabled);
        return styleColour(isOn ? ZvStyleBrush::AccentForeground : ZvStyleBrush::TextEnabled);
    }

    QPainterPath m_lines;
};

} // namespace

QIcon lineIcon(const QPainterPath& lines)
{
    return QIcon(new Engine(lines));
}

} // namespace workbench
