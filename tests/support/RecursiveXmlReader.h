#pragma once

#include <zvutil/experimental/xml/abstract_xml_document_reader.h>
#include <zvutil/experimental/xml/abstract_xml_element_reader.h>
#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>
#include <zvutil/experimental/xml/null_element_xml_exception.h>

#include <QIODevice>
#include <QXmlStreamReader>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zvtest {

using zvutil::experimental::unique_destroyable_ptr;
using zvutil::experimental::xml::abstract_xml_document_reader;
using zvutil::experimental::xml::abstract_xml_element_reader;

/// The reader as its rules read: an element is skipped by reading its children and theirs, one
/// stack frame for each level. Slow, not for deep documents, and the measure of the real one.
class RecursiveElement final : public abstract_xml_element_reader
{
public:
    explicit RecursiveElement(std::shared_ptr<QXmlStreamReader> stream)
        : d(std::make_shared<State>())
    {
        d->owner = this;
        d->stream = std::move(stream);
        d->name = d->stream->name().toString().toStdString();
        const QXmlStreamAttributes attributes = d->stream->attributes();
        for (const QXmlStreamAttribute& attribute : attributes) {
            const std::string key = attribute.name().toString().toStdString();
            const std::string value = attribute.value().toString().toStdString();
            const auto same = std::find_if(d->attributes.begin(), d->attributes.end(),
                                           [&key](const auto& a) { return a.first == key; });
            if (same == d->attributes.end())
                d->attributes.emplace_back(key, value);
            else
                same->second = value;
        }
    }

    ~RecursiveElement() override { finish(); }

    void destroy() override { delete this; }

    const char* name() const override { return d->name.c_str(); }

    const char* attribute(const char* name) const override
    {
        for (const auto& [key, value] : d->attributes) {
            if (key == name)
                return value.c_str();
        }
        throw zvutil::experimental::xml::attribute_not_found_xml_exception(name);
    }

    const char* text() override
    {
        if (!d->stream)
            throw zvutil::experimental::xml::null_element_xml_exception();
        finishActiveChild();
        d->text =
            d->stream->readElementText(QXmlStreamReader::ErrorOnUnexpectedElement).toStdString();
        d->stream.reset();
        return d->text.c_str();
    }

    unique_destroyable_ptr<abstract_xml_element_reader> next_child() override
    {
        if (!d->stream)
            throw zvutil::experimental::xml::null_element_xml_exception();
        finishActiveChild();
        if (!d->stream->readNextStartElement()) {
            d->stream.reset();
            return nullptr;
        }
        auto child = std::make_unique<RecursiveElement>(d->stream);
        d->activeChild = child->d;
        return unique_destroyable_ptr<abstract_xml_element_reader>(child.release());
    }

private:
    struct State
    {
        RecursiveElement* owner = nullptr;
        std::shared_ptr<QXmlStreamReader> stream;
        std::string name;
        std::string text;
        std::vector<std::pair<std::string, std::string>> attributes;
        std::weak_ptr<State> activeChild;
    };

    void finishActiveChild()
    {
        if (const std::shared_ptr<State> child = d->activeChild.lock())
            child->owner->finish();
    }

    void finish()
    {
        if (!d->stream)
            return;
        finishActiveChild();
        while (next_child()) { }
        d->stream.reset();
    }

    std::shared_ptr<State> d;
};

class RecursiveDocument final : public abstract_xml_document_reader
{
public:
    explicit RecursiveDocument(QIODevice* device)
        : m_stream(std::make_shared<QXmlStreamReader>(device))
    {
    }

    unique_destroyable_ptr<abstract_xml_element_reader> next_element() override
    {
        while (!m_stream->atEnd()) {
            if (m_stream->readNext() == QXmlStreamReader::StartElement)
                break;
        }
        if (m_stream->atEnd())
            return nullptr;
        return unique_destroyable_ptr<abstract_xml_element_reader>(
            std::make_unique<RecursiveElement>(m_stream).release());
    }

    unique_destroyable_ptr<abstract_xml_element_reader> root_element() override
    {
        const QXmlStreamReader::TokenType token = m_stream->tokenType();
        if (token != QXmlStreamReader::NoToken && token != QXmlStreamReader::StartDocument)
            return nullptr;
        return next_element();
    }

private:
    std::shared_ptr<QXmlStreamReader> m_stream;
};

} // namespace zvtest
