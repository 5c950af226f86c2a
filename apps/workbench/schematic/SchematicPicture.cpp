#include "schematic/SchematicPicture.h"

#include "common/number_text.h"
#include "schematic/SymbolItem.h"
#include "schematic/WireItem.h"

#include <zvworkbench/FileError.h>

#include <QBuffer>
#include <QImageWriter>
#include <QPainter>
#include <QPen>
#include <QSvgGenerator>

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

constexpr double margin = 10;
constexpr double screenDotsPerInch = 96;
constexpr double dotsPerInch = 300;
constexpr double metresPerInch = 0.0254;

Progress never()
{
    return [](int, int) { return true; };
}

} // namespace

SchematicPicture::SchematicPicture(const Schematic& schematic)
    : m_junctions(junctionsOf(schematic))
{
    for (const Symbol& symbol : schematic.symbols) {
        m_symbols.push_back(std::make_unique<SymbolItem>(symbol));
        m_bounds |= m_symbols.back()->boundingRect().translated(m_symbols.back()->pos());
    }
    for (const Wire& wire : schematic.wires) {
        m_wires.push_back(std::make_unique<WireItem>(wire));
        m_bounds |= m_wires.back()->boundingRect();
    }
    m_bounds.adjust(-margin, -margin, margin, margin);
}

SchematicPicture::~SchematicPicture() = default;

const QRectF& SchematicPicture::bounds() const
{
    return m_bounds;
}

void SchematicPicture::paint(QPainter& painter, double leastWidth, const Progress& progress) const
{
    const QPen pen(Qt::black, std::max(wireWidth, leastWidth), Qt::SolidLine, Qt::RoundCap,
                   Qt::RoundJoin);
    const int all = static_cast<int>(m_wires.size() + m_symbols.size());
    int done = 0;
    for (const std::unique_ptr<WireItem>& wire : m_wires) {
        report(progress, done++, all);
        wire->draw(painter, pen);
    }
    for (const std::unique_ptr<SymbolItem>& symbol : m_symbols) {
        report(progress, done++, all);
        painter.save();
        painter.translate(symbol->pos());
        symbol->draw(painter, pen, Qt::white);
        painter.restore();
    }
    for (const QPoint& junction : m_junctions)
        paintJunction(painter, junction, Qt::black);
}

QByteArray SchematicPicture::svg(const QString& title, const Progress& progress) const
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QSvgGenerator generator;
    const QRect area = m_bounds.toAlignedRect();
    generator.setOutputDevice(&buffer);
    generator.setTitle(title.toHtmlEscaped()); // which it writes as it is
    generator.setResolution(int(screenDotsPerInch));
    generator.setSize(area.size());
    generator.setViewBox(area);
    QPainter painter(&generator);
    painter.fillRect(area, Qt::white);
    paint(painter, 0, progress);
    painter.end();
    return bytes;
}

QByteArray SchematicPicture::png(const QString& title, const Progress& progress) const
{
    const double scale = dotsPerInch / screenDotsPerInch;
    const QSizeF size = m_bounds.size() * scale;
    if (size.width() * size.height() > double(maxPicturePixels))
        throw FileError(tr("The picture would have %1 × %2 pixels; at most %3 are possible in all.")
                            .arg(numberText(qint64(size.width())),
                                 numberText(qint64(size.height())), numberText(maxPicturePixels)));
    QImage picture = image(scale, progress);
    picture.setText(QStringLiteral("Title"), title);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "png");
    if (!writer.write(picture))
        throw FileError(writer.errorString());
    return bytes;
}

QImage SchematicPicture::image(qint64 maxPixels) const
{
    const double area = m_bounds.width() * m_bounds.height();
    const double scale =
        std::min(dotsPerInch / screenDotsPerInch, std::sqrt(double(maxPixels) / area));
    return image(scale, never());
}

/// Returns a picture with so many pixels per unit of the scene.
QImage SchematicPicture::image(double scale, const Progress& progress) const
{
    const QSizeF size = m_bounds.size() * scale;
    QImage picture(std::max(1, int(size.width())), std::max(1, int(size.height())),
                   QImage::Format_RGB32);
    if (picture.isNull())
        throw FileError(tr("There is not enough memory."));
    picture.setDotsPerMeterX(qRound(screenDotsPerInch * scale / metresPerInch));
    picture.setDotsPerMeterY(picture.dotsPerMeterX());
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.translate(-m_bounds.topLeft());
    paint(painter, 1 / scale, progress);
    return picture;
}

} // namespace workbench
