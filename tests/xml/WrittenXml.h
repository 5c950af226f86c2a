#pragma once

#include "impl/xml/basic_qt_stream_xml_document_writer.h"

#include "support/HeldFiles.h"

#include <QBuffer>
#include <QTest>

#include <string>
#include <string_view>
#include <type_traits>

namespace zvtest {

template <typename C>
using Document = zvutil::experimental::xml::basic_qt_stream_xml_document_writer<C>;

template <typename C>
using Element = zvutil::experimental::unique_destroyable_ptr<
    zvutil::experimental::xml::basic_abstract_xml_element_writer<C>>;

/// An ASCII text in units of any type.
template <typename C>
std::basic_string<C> units(std::string_view text)
{
    return {text.begin(), text.end()};
}

template <typename C>
constexpr const char* encoding = std::is_same_v<C, char> ? "UTF-8"
    : std::is_same_v<C, char32_t>                        ? "UTF-32"
                                                         : "UTF-16";

/// Bytes of a file of this type of writer, each unit as it lies in memory.
template <typename C>
QString decoded(const QByteArray& bytes)
{
    if constexpr (std::is_same_v<C, char>) {
        return QString::fromUtf8(bytes);
    } else if constexpr (std::is_same_v<C, char32_t>) {
        return QString::fromUcs4(reinterpret_cast<const char32_t*>(bytes.constData()),
                                 bytes.size() / 4);
    } else {
        return QString(reinterpret_cast<const QChar*>(bytes.constData()), bytes.size() / 2);
    }
}

template <typename C>
QString declaration()
{
    return QString::fromUtf8("<?xml version=\"1.0\" encoding=\"%1\"?>")
        .arg(QString::fromUtf8(encoding<C>));
}

/// What is written behind the declaration, with the line break at the end taken off.
template <typename C, typename Write>
QString written(Write write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        Document<C> document(&buffer);
        write(document);
    }
    const QString text = decoded<C>(buffer.data());
    const QString start = declaration<C>();
    if (!text.startsWith(start) || !text.endsWith(QLatin1Char('\n')))
        return "wrong frame: " + text;
    return text.mid(start.size(), text.size() - start.size() - 1);
}

inline QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

} // namespace zvtest
