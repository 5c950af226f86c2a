#include "impl/xml/qt_stream_xml_element_reader.h"

#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>
#include <zvutil/experimental/xml/null_element_xml_exception.h>
#include <zvutil/experimental/xml/xml_exception.h>

#include "impl/text/qt_text.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace zvutil::experimental::xml {

namespace {

using Attribute = std::pair<std::string, std::string>; // name and value

template <typename Name>
auto find(std::vector<Attribute>& attributes, const Name& name)
{
    return std::find_if(attributes.begin(), attributes.end(),
                        [&name](const Attribute& attribute) { return attribute.first == name; });
}

std::vector<Attribute> by_local_name(const QXmlStreamAttributes& source)
{
    std::vector<Attribute> attributes;
    attributes.reserve(static_cast<std::size_t>(source.size()));
    bool may_meet = false;
    for (const QXmlStreamAttribute& attribute : source) {
        std::string name = zvutil::impl::utf8_text(attribute.name());
        std::string value = zvutil::impl::utf8_text(attribute.value());
        // Search only after a prefix was seen: names without prefixes differ, or the document is
        // malformed.
        may_meet = may_meet || !attribute.prefix().isEmpty();
        const auto same = may_meet ? find(attributes, name) : attributes.end();
        // By contract: attributes with the same local name are one, in the place of the first and
        // with the value of the last. The application's formats use no namespaces.
        if (same != attributes.end())
            same->second = std::move(value);
        else
            attributes.emplace_back(std::move(name), std::move(value));
    }
    return attributes;
}

/// Reads up to the end tags of \p depth nested elements.
///
/// Where a document breaks off, each of them tries once more to read on, as if it were read by
/// itself.
void skip(QXmlStreamReader& stream, std::size_t depth)
{
    while (depth > 0) {
        const QXmlStreamReader::TokenType token = stream.readNext();
        if (token == QXmlStreamReader::StartElement)
            ++depth;
        else if (token == QXmlStreamReader::EndElement || token == QXmlStreamReader::Invalid)
            --depth;
    }
}

} // namespace

struct qt_stream_xml_element_reader::impl
{
    explicit impl(std::shared_ptr<QXmlStreamReader>&& source)
        : stream(std::move(source))
        , name(zvutil::impl::utf8_text(stream->name()))
        , attributes(by_local_name(stream->attributes()))
    {
    }

    /// Throws if there is nothing to read, or if a destructor had too little memory to read on.
    void require_stream() const
    {
        if (!stream)
            throw null_element_xml_exception();
        if (stream->error() == QXmlStreamReader::CustomError)
            throw std::bad_alloc();
    }

    /// Reads the rest of the children that still have readers, each the child of the one before,
    /// and makes these null. The stack doesn't grow with their number.
    void finish_active_child()
    {
        const auto live = [](const impl& parent) {
            std::shared_ptr<impl> child = parent.active_child.lock();
            return child && child->stream ? child : nullptr;
        };
        std::size_t depth = 0;
        for (auto child = live(*this); child; child = live(*child))
            ++depth;
        skip(*stream, depth);
        for (auto child = live(*this); child; child = live(*child))
            child->stream.reset();
    }

    std::shared_ptr<QXmlStreamReader> stream; ///< null once the element has been read to its end
    std::string name;
    std::string text;
    std::vector<Attribute> attributes;
    std::weak_ptr<impl> active_child; ///< the child returned last
};

qt_stream_xml_element_reader::qt_stream_xml_element_reader(std::shared_ptr<QXmlStreamReader> stream)
{
    if (!stream)
        throw xml_exception("not at element start");
    m_d = std::make_shared<impl>(std::move(stream));
}

qt_stream_xml_element_reader::~qt_stream_xml_element_reader()
{
    if (!m_d->stream)
        return;
    try {
        m_d->finish_active_child();
        skip(*m_d->stream, 1);
    } catch (const std::bad_alloc&) {
        // Have the next one who reads throw instead: a destructor can't.
        m_d->stream->raiseError(QStringLiteral("out of memory"));
    }
    m_d->stream.reset();
}

void qt_stream_xml_element_reader::destroy()
{
    delete this;
}

const char* qt_stream_xml_element_reader::name() const
{
    return m_d->name.c_str();
}

const char* qt_stream_xml_element_reader::attribute(const char* name) const
{
    const auto found = find(m_d->attributes, name);
    if (found == m_d->attributes.end())
        throw attribute_not_found_xml_exception(name);
    return found->second.c_str();
}

const char* qt_stream_xml_element_reader::text()
{
    m_d->require_stream();
    m_d->finish_active_child();
    // By contract: text() after a child returns an empty text. The stream no longer stands on the
    // start tag, so readElementText() reads nothing.
    const QString text = m_d->stream->readElementText(QXmlStreamReader::ErrorOnUnexpectedElement);
    m_d->text = zvutil::impl::utf8_text(QStringRef(&text));
    m_d->stream.reset();
    return m_d->text.c_str();
}

unique_destroyable_ptr<abstract_xml_element_reader> qt_stream_xml_element_reader::next_child()
{
    m_d->require_stream();
    m_d->finish_active_child();
    if (!m_d->stream->readNextStartElement()) {
        m_d->stream.reset();
        return nullptr;
    }
    auto child = std::make_unique<qt_stream_xml_element_reader>(m_d->stream);
    m_d->active_child = child->m_d;
    return unique_destroyable_ptr<abstract_xml_element_reader>(child.release());
}

} // namespace zvutil::experimental::xml
