#include <zvutil/ZvVariant.h>

#include <QString>
#include <QVariant>

#include <utility>

namespace libzvutil {

class ZVUTIL_NO_EXPORT ZvVariant::Impl
{
public:
    QVariant value;
};

ZvVariant::ZvVariant(Impl* implementation)
    : m_implementation(implementation)
{
}

ZvVariant::ZvVariant()
    : ZvVariant(QVariant())
{
}

ZvVariant::ZvVariant(int value)
    : ZvVariant(QVariant(value))
{
}

ZvVariant::ZvVariant(const double& value)
    : ZvVariant(QVariant(value))
{
}

ZvVariant::ZvVariant(const char* text)
    : ZvVariant(QVariant(QString::fromUtf8(text)))
{
}

ZvVariant::ZvVariant(const std::string& text)
    : ZvVariant(text.c_str())
{
}

ZvVariant::ZvVariant(const zvutil::ZvBasicString<char>& text)
    : ZvVariant(text.c_str())
{
}

// By contract: the constructor stores a bool for wide text, since the pointer converts to
// QVariant's bool.
ZvVariant::ZvVariant(const wchar_t* text)
    : ZvVariant(QVariant(text != nullptr))
{
}

ZvVariant::ZvVariant(const std::wstring& text)
    : ZvVariant(text.c_str())
{
}

ZvVariant::ZvVariant(const QVariant& value)
    : ZvVariant(new Impl{value})
{
}

ZvVariant::ZvVariant(const ZvVariant& other)
    : ZvVariant(other.data())
{
}

ZvVariant::ZvVariant(ZvVariant&& other) noexcept
    : ZvVariant(std::exchange(other.m_implementation, nullptr))
{
}

ZvVariant::~ZvVariant()
{
    delete m_implementation;
}

ZvVariant& ZvVariant::operator=(const ZvVariant& other)
{
    if (this != &other)
        *this = other.data();
    return *this;
}

ZvVariant& ZvVariant::operator=(const QVariant& value)
{
    if (m_implementation)
        m_implementation->value = value;
    else
        m_implementation = new Impl{value};
    return *this;
}

const QVariant& ZvVariant::data() const
{
    return d_impl()->value;
}

ZvVariant::Impl* ZvVariant::d_impl()
{
    return m_implementation;
}

const ZvVariant::Impl* ZvVariant::d_impl() const
{
    return m_implementation;
}

} // namespace libzvutil
