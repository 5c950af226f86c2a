#include <zvutil/ZvNamedIcon.h>

#include <QByteArray>
#include <QString>

namespace libzvutil {

ZvNamedIcon::ZvNamedIcon() = default;

ZvNamedIcon::ZvNamedIcon(const ZvString& name, const ZvString& path)
    : m_name(name)
    , m_path(path)
{
}

ZvNamedIcon::ZvNamedIcon(const ZvNamedIcon& other) = default;

ZvNamedIcon::ZvNamedIcon(ZvNamedIcon&& other) noexcept = default;

ZvNamedIcon& ZvNamedIcon::operator=(const ZvNamedIcon& other) = default;

ZvNamedIcon& ZvNamedIcon::operator=(ZvNamedIcon&& other) noexcept = default;

ZvNamedIcon::~ZvNamedIcon() = default;

const ZvString& ZvNamedIcon::name() const
{
    return m_name;
}

const ZvString& ZvNamedIcon::path() const
{
    return m_path;
}

void ZvNamedIcon::setPath(const char* path)
{
    m_path = ZvString(path);
}

void ZvNamedIcon::setPath(const ZvString& path)
{
    m_path = path;
}

void ZvNamedIcon::setPath(const QString& path)
{
    setPath(path.toUtf8().constData());
}

} // namespace libzvutil
