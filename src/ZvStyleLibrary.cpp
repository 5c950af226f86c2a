#include <zvutil/ZvStyleLibrary.h>

#include <zvutil/ZvException.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/experimental/xml/null_element_xml_exception.h>

#include "impl/ZvStyleImpl.h"
#include "impl/paths/path_text.h"
#include "impl/styles/style_names.h"
#include "impl/styles/style_xml.h"
#include "impl/text/utf8.h"
#include "impl/xml/basic_qt_xml_save_file.h"
#include "impl/xml/qt_xml_read_file.h"

#include <QColor>
#include <QFile>
#include <QString>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace libzvutil {

namespace xml = zvutil::experimental::xml;

using zvutil::ZvException;
using zvutil::ZvFilePath;

namespace {

using Element = xml::abstract_xml_element_reader;
using ElementPtr = zvutil::experimental::unique_destroyable_ptr<Element>;

const char libraryResource[] = ":/libzvutil/style/library.xml";

/// Returns \p element, or throws if it is null.
ElementPtr required(ElementPtr element)
{
    if (!element)
        throw xml::null_element_xml_exception();
    return element;
}

template <typename Work>
void forEachChild(Element& parent, Work work)
{
    while (const ElementPtr child = parent.next_child())
        work(*child);
}

ZvNamedColour readColour(const Element& element)
{
    const char* const colour = element.attribute("colour");
    return {element.attribute("name"), colour};
}

void readEditors(Element& list, ZvStyle& style)
{
    forEachChild(list, [&style](Element& element) {
        ZvEditorStyle editor(element.attribute("name"));
        if (const ElementPtr brushes = element.next_child())
            forEachChild(*brushes, [&editor](Element& e) { editor.setBrush(readColour(e)); });
        style.addEditor(std::move(editor));
    });
}

ZvStyle readStyle(Element& element)
{
    ZvStyle style(element.attribute("name"));
    forEachChild(*required(element.next_child()), [&style](Element& e) {
        const QColor colour(e.attribute("colour"));
        style.setColour(impl::brush_from_name(e.attribute("name")), colour);
    });
    forEachChild(*required(element.next_child()), [&style](Element& e) {
        const QString path = zvutil::impl::any_utf8_text(e.attribute("path"));
        style.setIcon(impl::icon_from_name(e.attribute("name")), path);
    });
    if (const ElementPtr editors = element.next_child())
        readEditors(*editors, style);
    return style;
}

template <typename Styles>
auto findStyle(Styles& styles, const char* name)
{
    const auto found = std::find_if(styles.begin(), styles.end(), [name](const ZvStyle& style) {
        return style.name().compare(name) == 0;
    });
    return found == styles.end() ? nullptr : &*found;
}

bool isBefore(const ZvStyle* a, const ZvStyle* b)
{
    return a->name().compare(b->name()) < 0;
}

} // namespace

class ZVUTIL_NO_EXPORT ZvStyleLibrary::Impl
{
public:
    Impl() = default;
    explicit Impl(const QString& fileName);

    /// The first style of that name, or null.
    ZvStyle* find(const char* name);
    const ZvStyle* find(const char* name) const;

    /// Appends the styles between two iterators whose names are new.
    template <typename Iterator>
    void add(Iterator begin, Iterator end);

    void update(ZvStyle&& style);

    std::vector<ZvStyle> styles;
    std::vector<ZvNamedColour> accents;
};

ZvStyleLibrary::Impl::Impl(const QString& fileName)
{
    const auto file = std::make_shared<QFile>(fileName);
    xml::qt_xml_read_file document(file);
    if (!file->isReadable())
        return;
    const ElementPtr root = required(document.root_element());
    if (const ElementPtr list = root->next_child())
        forEachChild(*list, [this](Element& e) { styles.push_back(readStyle(e)); });
    if (const ElementPtr list = root->next_child())
        forEachChild(*list, [this](Element& e) { accents.push_back(readColour(e)); });
}

ZvStyle* ZvStyleLibrary::Impl::find(const char* name)
{
    return findStyle(styles, name);
}

const ZvStyle* ZvStyleLibrary::Impl::find(const char* name) const
{
    return findStyle(styles, name);
}

template <typename Iterator>
void ZvStyleLibrary::Impl::add(Iterator begin, Iterator end)
{
    std::set<const ZvStyle*, decltype(&isBefore)> known(&isBefore);
    for (const ZvStyle& style : styles)
        known.insert(&style);
    std::vector<Iterator> added;
    for (Iterator style = begin; style != end; ++style) {
        if (known.insert(&static_cast<const ZvStyle&>(*style)).second)
            added.push_back(style);
    }
    styles.reserve(styles.size() + added.size());
    for (const Iterator& style : added)
        styles.push_back(*style);
}

void ZvStyleLibrary::Impl::update(ZvStyle&& style)
{
    ZvStyle* const found = find(style.name().c_str());
    if (!found)
        styles.push_back(std::move(style));
    else if (!found->isDefaultStyle())
        *found = std::move(style);
}

ZvStyleLibrary::ZvStyleLibrary()
    : m_implementation(new Impl(QString::fromLatin1(libraryResource)))
{
    for (ZvStyle& style : d_impl()->styles)
        style.d_impl()->isDefault = true;
}

ZvStyleLibrary::ZvStyleLibrary(const ZvFilePath& path)
    : m_implementation(new Impl(zvutil::impl::native_file_name(path.c_str())))
{
}

ZvStyleLibrary::ZvStyleLibrary(const ZvStyleLibrary& other)
    : m_implementation(new Impl(*other.d_impl()))
{
}

ZvStyleLibrary::ZvStyleLibrary(ZvStyleLibrary&& other) noexcept
    : m_implementation(std::exchange(other.m_implementation, nullptr))
{
}

ZvStyleLibrary& ZvStyleLibrary::operator=(const ZvStyleLibrary& other)
{
    if (this == &other)
        return *this;
    if (!m_implementation)
        return *this = ZvStyleLibrary(other);
    *d_impl() = *other.d_impl();
    return *this;
}

ZvStyleLibrary& ZvStyleLibrary::operator=(ZvStyleLibrary&& other) noexcept
{
    ZvStyleLibrary taken(std::move(other));
    std::swap(m_implementation, taken.m_implementation);
    return *this;
}

ZvStyleLibrary::~ZvStyleLibrary()
{
    std::default_delete<Impl>()(m_implementation);
}

void ZvStyleLibrary::add(const ZvStyleLibrary& other)
{
    const std::vector<ZvStyle>& styles = other.d_impl()->styles;
    d_impl()->add(styles.begin(), styles.end());
}

void ZvStyleLibrary::add(ZvStyleLibrary&& other)
{
    if (this == &other)
        return;
    std::vector<ZvStyle>& styles = other.d_impl()->styles;
    d_impl()->add(std::make_move_iterator(styles.begin()), std::make_move_iterator(styles.end()));
    // Remove the styles that were moved from: they don't even have names.
    styles.clear();
}

void ZvStyleLibrary::add(const ZvFilePath& path)
{
    add(ZvStyleLibrary(path));
}

void ZvStyleLibrary::update(const ZvStyle& style)
{
    update(ZvStyle(style));
}

void ZvStyleLibrary::update(ZvStyle&& style)
{
    d_impl()->update(std::move(style));
}

void ZvStyleLibrary::clear(bool all)
{
    std::vector<ZvStyle>& styles = d_impl()->styles;
    const auto goes = [all](const ZvStyle& style) { return all || !style.isDefaultStyle(); };
    styles.erase(std::remove_if(styles.begin(), styles.end(), goes), styles.end());
}

const ZvStyle& ZvStyleLibrary::style(const char* name) const
{
    const ZvStyle* const found = d_impl()->find(name);
    if (!found)
        throw ZvException(std::string("Style not found: ") + name);
    return *found;
}

const ZvStyle& ZvStyleLibrary::dark() const
{
    return style("Dark");
}

const ZvStyle& ZvStyleLibrary::light() const
{
    return style("Light");
}

QStringList ZvStyleLibrary::names() const
{
    QStringList names;
    for (const ZvStyle& style : d_impl()->styles)
        names += style.name().toQString();
    return names;
}

void ZvStyleLibrary::save(const ZvFilePath& path) const
{
    xml::basic_qt_xml_save_file<char> document(std::wstring(path.c_str()));
    const impl::xml_element_writer root = document.root_element("StyleLibrary");
    {
        const impl::xml_element_writer list = root->child("Styles");
        for (const ZvStyle& style : d_impl()->styles)
            style.write(list->child("Style"));
    }
    {
        const impl::xml_element_writer list = root->child("Accents");
        for (const ZvNamedColour& accent : d_impl()->accents)
            impl::write_colour(*list, "Accent", accent);
    }
    // By contract: save() commits before the root element's writer is destroyed, so the file lacks
    // that end tag. Loading doesn't need the tag.
    document.commit();
}

ZvStyleLibrary::Impl* ZvStyleLibrary::d_impl()
{
    return m_implementation;
}

const ZvStyleLibrary::Impl* ZvStyleLibrary::d_impl() const
{
    return m_implementation;
}

} // namespace libzvutil
