#include "schematic/SchematicMimeData.h"

#include "schematic/SchematicPicture.h"

#include <zvworkbench/FileError.h>

#include <QImage>

namespace workbench {

namespace {

const QString svgFormat = QStringLiteral("image/svg+xml");
const QString imageFormat = QStringLiteral("application/x-qt-image");

// Programs wait for what they paste, and a picture of more elements is of no use to them.
constexpr int maxElements = 5'000;
constexpr qint64 maxPixels = 16'000'000;

} // namespace

SchematicMimeData::SchematicMimeData(const Schematic& part, const QString& format,
                                     const QByteArray& bytes)
    : m_part(part)
{
    setData(format, bytes);
}

QStringList SchematicMimeData::formats() const
{
    QStringList formats = QMimeData::formats();
    if (hasPictures())
        formats += {svgFormat, imageFormat};
    return formats;
}

QVariant SchematicMimeData::retrieveData(const QString& format, QVariant::Type type) const
{
    try {
        if (hasPictures() && format == svgFormat)
            return SchematicPicture(m_part).svg({}, [](int, int) { return true; });
        if (hasPictures() && format == imageFormat)
            return SchematicPicture(m_part).image(maxPixels);
    } catch (const FileError&) {
        return {}; // there is no memory for it, and nobody here to be told
    }
    return QMimeData::retrieveData(format, type);
}

bool SchematicMimeData::hasPictures() const
{
    return m_part.symbols.size() + m_part.wires.size() <= maxElements;
}

} // namespace workbench
