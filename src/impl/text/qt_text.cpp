#include "impl/text/qt_text.h"

#include "impl/text/ascii_step.h"

#include <QByteArray>

#include <algorithm>

namespace zvutil::impl {

std::string utf8_text(const QStringRef& text)
{
    const auto is_other = [](QChar unit) { return !is_ascii(unit.unicode()); };
    const QChar* const begin = text.constData();
    const QChar* const end = begin + text.size();
    const QChar* const plain_end = std::find_if(begin, end, is_other);
    std::string result(static_cast<std::size_t>(plain_end - begin), '\0');
    std::transform(begin, plain_end, result.begin(),
                   [](QChar unit) { return static_cast<char>(unit.unicode()); });
    if (plain_end != end) {
        const QByteArray rest = text.mid(static_cast<int>(plain_end - begin)).toUtf8();
        result.append(rest.constData(), static_cast<std::size_t>(rest.size()));
    }
    return result;
}

} // namespace zvutil::impl
