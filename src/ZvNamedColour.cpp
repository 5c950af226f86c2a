#include <zvutil/ZvNamedColour.h>

#include <QByteArray>
#include <QColor>
#include <QString>

#include <utility>

namespace libzvutil {

class ZVUTIL_NO_EXPORT ZvNamedColour::Impl
{
public:
    ZvString name;
    QColor colour;
};

ZvNamedColour::ZvNamedColour()
    : m_implementation(new Impl)
{
}

// By contract: the constructor passes the text to QColor as it is and adds no hash to bare digits,
// which make an invalid colour.
ZvNamedColour::ZvNamedColour(const char* name, const char* colour)
    : ZvNamedColour(name, QColor(colour))
{
}

ZvNamedColour::ZvNamedColour(const char* name, const QColor& colour)
    : m_implementation(new Impl{name, colour})
{
}

ZvNamedColour::ZvNamedColour(const ZvNamedColour& other)
    : m_implementation(new Impl(*other.d_impl()))
{
}

ZvNamedColour::ZvNamedColour(ZvNamedColour&& other) noexcept
    : m_implementation(std::exchange(other.m_implementation, nullptr))
{
}

ZvNamedColour::~ZvNamedColour()
{
    delete m_implementation;
}

ZvNamedColour& ZvNamedColour::operator=(const ZvNamedColour& other)
{
    if (this == &other)
        return *this;
    if (!m_implementation)
        return *this = ZvNamedColour(other);
    *d_impl() = *other.d_impl();
    return *this;
}

ZvNamedColour& ZvNamedColour::operator=(ZvNamedColour&& other) noexcept
{
    ZvNamedColour taken(std::move(other));
    std::swap(m_implementation, taken.m_implementation);
    return *this;
}

ZvNamedColour& ZvNamedColour::operator=(const QColor& colour)
{
    if (!m_implementation)
        *this = ZvNamedColour();
    setColour(colour);
    return *this;
}

ZvNamedColour::operator const QColor&() const
{
    return qColour();
}

const QColor& ZvNamedColour::qColour() const
{
    return d_impl()->colour;
}

const ZvString& ZvNamedColour::name() const
{
    return d_impl()->name;
}

ZvString ZvNamedColour::colourString() const
{
    // By contract: colourString() drops alpha. Files of styles hold colours without it.
    return qColour().name().toUtf8().constData();
}

void ZvNamedColour::setColour(const QColor& colour)
{
    d_impl()->colour = colour;
}

ZvNamedColour::Impl* ZvNamedColour::d_impl()
{
    return m_implementation;
}

const ZvNamedColour::Impl* ZvNamedColour::d_impl() const
{
    return m_implementation;
}

} // namespace libzvutil
