#pragma once

#include "impl/xml/qt_stream_xml_document_reader.h"

#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>
#include <zvutil/experimental/xml/null_element_xml_exception.h>

#include "support/StdString.h"

#include <QBuffer>
#include <QTest>
#include <QTextCodec>

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace zvtest {

using Element = zvutil::experimental::unique_destroyable_ptr<
    zvutil::experimental::xml::abstract_xml_element_reader>;

class Document : public zvutil::experimental::xml::qt_stream_xml_document_reader
{
public:
    explicit Document(const QByteArray& bytes)
        : Document(std::make_unique<QBuffer>(), bytes)
    {
    }

private:
    Document(std::unique_ptr<QBuffer>&& buffer, const QByteArray& bytes)
        : zvutil::experimental::xml::qt_stream_xml_document_reader(buffer.get())
        , m_buffer(std::move(buffer))
    {
        m_buffer->setData(bytes);
        m_buffer->open(QIODevice::ReadOnly);
    }

    std::unique_ptr<QBuffer> m_buffer;
};

/// The names of an element and of all elements below: `a(b()c())`.
inline std::string structure(const Element& element)
{
    std::string result = element->name();
    result += '(';
    while (const Element child = element->next_child())
        result += structure(child);
    return result + ')';
}

inline std::string structure(const QByteArray& document)
{
    Document reader(document);
    const Element root = reader.root_element();
    return root ? structure(root) : "none";
}

inline std::string nameOf(const Element& element)
{
    return element ? element->name() : "none";
}

inline std::optional<std::string> attributeOf(const Element& element, const char* name)
{
    try {
        return element->attribute(name);
    } catch (const zvutil::experimental::xml::attribute_not_found_xml_exception&) {
        return std::nullopt;
    }
}

/// Whether nothing more can be read, while all that has been read is still there.
inline bool isNull(const Element& element, const std::string& name, const std::string& x)
{
    try {
        element->text();
        return false;
    } catch (const zvutil::experimental::xml::null_element_xml_exception&) {
    }
    try {
        element->next_child();
        return false;
    } catch (const zvutil::experimental::xml::null_element_xml_exception&) {
    }
    return element->name() == name && element->attribute("x") == x;
}

enum class Mark { None, ByteOrder };

inline QByteArray encoded(const char* codec, const QString& text, Mark mark)
{
    QTextCodec::ConverterState state(mark == Mark::None ? QTextCodec::IgnoreHeader
                                                        : QTextCodec::DefaultConversion);
    return QTextCodec::codecForName(codec)->fromUnicode(text.constData(), text.size(), &state);
}

inline constexpr char twoLevels[] = "<r x='0'><a x='1'><b x='2'/><c/></a><d x='3'>t</d><e/></r>";

} // namespace zvtest
