#include <zvutil/ZvResponsiveImage.h>

#include "impl/text/utf8.h"

#include <QPainter>
#include <QResizeEvent>

#include <algorithm>
#include <limits>

namespace {

/// By contract: area() computes in 32 bits, so the area of a huge size wraps around.
int area(const QSize& size)
{
    return static_cast<int>(static_cast<unsigned>(size.width())
                            * static_cast<unsigned>(size.height()));
}

/// Loads \p file; a null pointer gives a null picture.
QPixmap load(const char* file)
{
    return file ? QPixmap(zvutil::impl::any_utf8_text(file)) : QPixmap();
}

} // namespace

ZvResponsiveImage::ZvResponsiveImage(const QPixmap& pixmap, QWidget* parent)
    : QWidget(parent)
    , m_image(pixmap)
{
}

ZvResponsiveImage::ZvResponsiveImage(const char* file, QWidget* parent)
    : ZvResponsiveImage(load(file), parent)
{
}

ZvResponsiveImage::~ZvResponsiveImage() = default;

void ZvResponsiveImage::setImage(const QPixmap& pixmap)
{
    m_image = pixmap;
    m_scaled = scaleOriginal(size());
    update();
}

void ZvResponsiveImage::setImage(const char* file)
{
    setImage(load(file));
}

bool ZvResponsiveImage::hasHeightForWidth() const
{
    return true;
}

int ZvResponsiveImage::heightForWidth(int width) const
{
    if (m_image.isNull())
        return height();
    const double suited = double(m_image.height()) * width / m_image.width();
    return static_cast<int>(std::min<double>(suited, std::numeric_limits<int>::max()));
}

QSize ZvResponsiveImage::sizeHint() const
{
    return QSize(width(), heightForWidth(width()));
}

QSize ZvResponsiveImage::minimumSizeHint() const
{
    return QSize(1, 1);
}

void ZvResponsiveImage::mousePressEvent(QMouseEvent* /*event*/)
{
    Q_EMIT pressed(QPrivateSignal());
}

void ZvResponsiveImage::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    // By contract: paintEvent() takes the size in device pixels for one in widget pixels, so on
    // scaled displays the picture is painted too large.
    const QSize size = m_scaled.size();
    const int left = std::max((width() - size.width()) / 2, 0);
    const int top = std::max((height() - size.height()) / 2, 0);
    painter.drawPixmap(QRect(QPoint(left, top), size), m_scaled);
}

void ZvResponsiveImage::resizeEvent(QResizeEvent* event)
{
    if (!m_image.isNull())
        m_scaled = scaleOriginal(event->size());
}

QPixmap ZvResponsiveImage::scaleOriginal(const QSize& size) const
{
    // By contract: scaleOriginal() compares areas, not sides, so a long and narrow widget gets the
    // whole picture and cuts it off.
    if (area(size) >= area(m_image.size()))
        return m_image;
    const double ratio = devicePixelRatioF();
    const QSize target(qRound(size.width() * ratio), qRound(size.height() * ratio));
    QPixmap scaled = m_image.scaled(target, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(ratio);
    return scaled;
}
