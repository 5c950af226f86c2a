#pragma once

#include "support/rapidcheck.h"

#include <QString>
#include <QVector>

#include <string>
#include <utility>
#include <vector>

namespace zvtest {

/// An element as it is meant: attributes by their whole names, and text or children.
struct XmlTree
{
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::string text;
    std::vector<XmlTree> children;
};

/// Declares the prefixes that occur below.
constexpr char xmlNamespaces[] = "xmlns:p='urn:p' xmlns:q='urn:q'";

/// Empty, or a text that doesn't consist of white space alone.
inline std::string anyXmlText()
{
    const auto parts =
        *rc::gen::resize(12,
                         rc::gen::container<std::vector<std::string>>(rc::gen::element<std::string>(
                             "t", " ", "\n", "<", "&", ">", "\"", "'", "]]>", "\xC3\xA4",
                             "\xE2\x82\xAC", "\xF0\x9D\x84\x9E", "a long part of plain text")));
    std::string text;
    for (const std::string& part : parts)
        text += part;
    return text.empty() ? text : '.' + text;
}

inline XmlTree anyXmlTree(int depth)
{
    XmlTree tree;
    tree.name =
        *rc::gen::element<std::string>("a", "b", "long-name.1", "\xC3\xA4\xC3\xB6", "p:a", "q:b");
    for (const char* const name : {"x", "p:x", "y", "q:x", "q:y", "\xC3\xA4", "xml:x"}) {
        if (*rc::gen::inRange(0, 4) == 0)
            tree.attributes.emplace_back(name, anyXmlText());
    }
    const int children = depth > 0 ? *rc::gen::inRange(0, 5) : 0;
    for (int i = 0; i < children; ++i)
        tree.children.push_back(anyXmlTree(depth - 1));
    if (tree.children.empty())
        tree.text = anyXmlText();
    return tree;
}

inline XmlTree anyXmlTree()
{
    return anyXmlTree(*rc::gen::inRange(0, 6));
}

/// Writes trees in the many ways in which the same can be written.
class XmlMarkup
{
public:
    /// \p all tells whether that is used, too, which QDomDocument doesn't read as others do: entities
    /// that the document declares, and references to characters above U+FFFF.
    explicit XmlMarkup(bool all)
        : m_all(all)
    {
    }

    QString document(const XmlTree& tree, const char* encoding)
    {
        m_text.clear();
        m_text += QString::fromUtf8("<?xml version='1.0' encoding='%1'?>")
                      .arg(QString::fromUtf8(encoding));
        if (m_all)
            m_text += QString::fromUtf8("<!DOCTYPE r [<!ENTITY t 't'><!ENTITY tt '&t;'>]>");
        nothing();
        element(tree, QString::fromUtf8(xmlNamespaces));
        nothing();
        return m_text;
    }

private:
    static bool chance(int inverse) { return *rc::gen::inRange(0, inverse) == 0; }

    bool mayRefer(uint code) const { return (m_all || code <= 0xFFFF) && chance(8); }

    void append(const char* text) { m_text += QString::fromUtf8(text); }

    /// What doesn't count.
    void nothing()
    {
        if (chance(6))
            append("<!-- <a> & -->");
        if (chance(6))
            append("<?pi <a> & ?>");
    }

    void element(const XmlTree& tree, const QString& more = {})
    {
        const QString name = QString::fromStdString(tree.name);
        m_text += QLatin1Char('<') + name + QLatin1Char(' ') + more;
        for (const auto& [key, value] : tree.attributes)
            attribute(QString::fromStdString(key), QString::fromStdString(value).toUcs4());
        if (tree.children.empty() && tree.text.empty() && chance(2)) {
            append("/>");
            return;
        }
        append(">");
        characters(QString::fromStdString(tree.text).toUcs4());
        for (const XmlTree& child : tree.children) {
            append(chance(3) ? " \n" : "");
            nothing();
            element(child);
        }
        m_text += "</" + name + QLatin1String(chance(3) ? " \n>" : ">");
    }

    void attribute(const QString& name, const QVector<uint>& value)
    {
        m_text += QLatin1Char(' ') + name + "=\"";
        for (const uint code : value) {
            if (code == '<' || code == '&' || code == '"' || code == '\n' || mayRefer(code))
                reference(code);
            else
                m_text += QString::fromUcs4(&code, 1);
        }
        append("\"");
    }

    void characters(const QVector<uint>& text)
    {
        const auto isBlank = [](uint code) { return code == ' ' || code == '\n'; };
        for (int i = 0; i < text.size(); ++i) {
            const uint code = text[i];
            // Never leaves a part that is nothing but white space, which the other reader drops.
            const bool mayBreak = !isBlank(code) && (i + 1 == text.size() || !isBlank(text[i + 1]));
            if (mayBreak && i > 0)
                nothing();
            if (mayBreak && code != '>' && chance(6))
                m_text += "<![CDATA[" + QString::fromUcs4(&code, 1) + "]]>";
            else if (m_all && code == 't')
                append(chance(2) ? "&tt;" : "&t;");
            else if (code == '<' || code == '&' || code == '>' || mayRefer(code))
                reference(code);
            else
                m_text += QString::fromUcs4(&code, 1);
        }
    }

    void reference(uint code)
    {
        switch (code) {
        case '<':
            append("&lt;");
            return;
        case '&':
            append("&amp;");
            return;
        default:
            m_text += chance(2) ? "&#x" + QString::number(code, 16) : "&#" + QString::number(code);
            append(";");
        }
    }

    bool m_all;
    QString m_text;
};

} // namespace zvtest
