#pragma once

#include <QGraphicsScene>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>

namespace zvtest {

/// Whether a pixel is ink: neither paper nor the dots of a grid.
inline bool isInk(QRgb pixel)
{
    return qGray(pixel) < 110;
}

inline int inkOf(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += isInk(image.pixel(x, y)) ? 1 : 0;
    }
    return count;
}

/// How much of the ink of one picture has none of the other's next to it, from 0 to 1.
inline double strayInk(const QImage& image, const QImage& other)
{
    constexpr int reach = 2;
    int stray = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (!isInk(image.pixel(x, y)))
                continue;
            bool isNear = false;
            for (int v = std::max(0, y - reach); v <= std::min(other.height() - 1, y + reach);
                 ++v) {
                for (int u = std::max(0, x - reach); u <= std::min(other.width() - 1, x + reach);
                     ++u)
                    isNear = isNear || isInk(other.pixel(u, v));
            }
            stray += isNear ? 0 : 1;
        }
    }
    return double(stray) / std::max(1, inkOf(image));
}

inline QImage rendered(const QByteArray& svg, const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QSvgRenderer renderer(svg);
    renderer.render(&painter, QRectF(QPointF(), size));
    return image;
}

inline QImage rendered(QGraphicsScene& scene, const QRectF& area, const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    scene.render(&painter, QRectF(QPointF(), size), area);
    return image;
}

} // namespace zvtest
