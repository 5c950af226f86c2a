#pragma once

#include "documents/ProgressBox.h"
#include "schematic/Schematic.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QImage>
#include <QRectF>
#include <QString>

#include <memory>
#include <vector>

class QPainter;

namespace workbench {

class SymbolItem;
class WireItem;

/// The largest picture that is made of a schematic, in pixels.
constexpr qint64 maxPicturePixels = 64'000'000;

/// A schematic as it looks on paper: black on white, without grid and selection.
class SchematicPicture
{
    Q_DECLARE_TR_FUNCTIONS(workbench::SchematicPicture)

public:
    explicit SchematicPicture(const Schematic& schematic);
    ~SchematicPicture();
    SchematicPicture(const SchematicPicture&) = delete;
    SchematicPicture& operator=(const SchematicPicture&) = delete;

    /// Returns the rectangle around all, in units of the scene.
    const QRectF& bounds() const;
    /// Paints in units of the scene. Lines have at least the width \p leastWidth. Throws `Stopped` if \p progress
    /// returns false.
    void paint(QPainter& painter, double leastWidth, const Progress& progress) const;

    /// Returns the picture as an SVG file.
    QByteArray svg(const QString& title, const Progress& progress) const;
    /// Returns the picture as a PNG file for prints of 300 dots per inch, if a unit of the scene is a pixel of a usual
    /// screen. Throws `FileError` if it would be larger than `maxPicturePixels`.
    QByteArray png(const QString& title, const Progress& progress) const;
    /// Returns the picture with as many dots per inch, or with fewer so that it has at most \p maxPixels.
    QImage image(qint64 maxPixels) const;

private:
    QImage image(double scale, const Progress& progress) const;

    std::vector<std::unique_ptr<SymbolItem>> m_symbols;
    std::vector<std::unique_ptr<WireItem>> m_wires;
    QVector<QPoint> m_junctions;
    QRectF m_bounds;
};

} // namespace workbench
