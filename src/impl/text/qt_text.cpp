#include "impl/text/qt_text.h"

#include "impl/text/ascii_step.h"

#include <QByteArray>

#include <algorithm>

namespace zvutil::impl {

std::string utf8_text(const QStringRef& text)
{
    const auto isOther = [](QChar unit) { return !is_ascii(unit.unicode()); };
    const QChar* const begin = text.constData();
    const QChar* const end = begin + text.size();
    const QChar* const plainEnd = std::find_if(begin, end, isOther);
    std::string result(static_cast<std::size_t>(plainEnd - begin), '\0');
    std::transform(begin, plainEnd, result.begin(),
                   [](QChar unit) { return static_cast<char>(unit.unicode()); });
    if (plainEnd != end) {
        const QByteArray rest = text.mid(static_cast<int>(plainEnd - begin)).toUtf8();
        result.append(rest.constData(), static_cast<std::size_t>(rest.size()));
    }
    return result;
}

} // namespace zvutil::impl
