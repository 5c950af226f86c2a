#include <zvutil/ZvStyle.h>

#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvStyleManager.h>
#include <zvutil/experimental/xml/basic_abstract_xml_element_writer.h>

#include "impl/ZvStyleImpl.h"
#include "impl/paths/path_text.h"
#include "impl/styles/icon_formats.h"
#include "impl/styles/style_xml.h"
#include "impl/styles/text_file.h"

#include <QApplication>
#include <QColor>
#include <QString>
#include <QWidget>

#include <memory>
#include <utility>

namespace libzvutil {

namespace {

QString templateText()
{
    return impl::read_text_file(ZvStyle::TemplateResourcePath());
}

QString modificationsText()
{
    return impl::read_text_file(
        zvutil::impl::native_file_name(ZvStyleManager::StyleModificationsPath().c_str()));
}

bool applyToApplication(const QString& sheet)
{
    auto* const application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application)
        return false;
    impl::report_missing_icon_formats();
    application->setStyleSheet(sheet);
    return true;
}

} // namespace

ZvStyle::ZvStyle()
    : ZvStyle("")
{
}

ZvStyle::ZvStyle(const char* name)
    : m_implementation(new Impl(name))
{
}

ZvStyle::ZvStyle(const std::string& name)
    : ZvStyle(name.c_str())
{
}

ZvStyle::ZvStyle(const ZvStyle& other)
    : m_implementation(new Impl(*other.d_impl()))
{
}

ZvStyle::ZvStyle(ZvStyle&& other) noexcept
    : m_implementation(std::exchange(other.m_implementation, nullptr))
{
}

ZvStyle& ZvStyle::operator=(const ZvStyle& other)
{
    if (this == &other)
        return *this;
    if (!m_implementation)
        return *this = ZvStyle(other);
    *d_impl() = *other.d_impl();
    return *this;
}

ZvStyle& ZvStyle::operator=(ZvStyle&& other) noexcept
{
    ZvStyle taken(std::move(other));
    std::swap(m_implementation, taken.m_implementation);
    return *this;
}

ZvStyle::~ZvStyle()
{
    std::default_delete<Impl>()(m_implementation);
}

const ZvStyle& ZvStyle::Current()
{
    return ZvStyleManager::CurrentStyle();
}

const ZvString& ZvStyle::name() const
{
    return d_impl()->name;
}

const ZvNamedColour& ZvStyle::colour(ZvStyleBrush brush) const
{
    return d_impl()->colour(brush);
}

const ZvNamedColour& ZvStyle::color(ZvStyleBrush brush) const
{
    return colour(brush);
}

void ZvStyle::setColour(ZvStyleBrush brush, const QColor& colour)
{
    d_impl()->colour(brush).setColour(colour);
}

void ZvStyle::setColor(ZvStyleBrush brush, const QColor& color)
{
    setColour(brush, color);
}

void ZvStyle::setAccent(const QColor& colour)
{
    d_impl()->deriveAccent(colour);
}

const ZvNamedIcon& ZvStyle::icon(ZvStyleIcon icon) const
{
    return d_impl()->icon(icon);
}

void ZvStyle::setIcon(ZvStyleIcon icon, const QString& path)
{
    d_impl()->icon(icon).setPath(path);
}

void ZvStyle::addEditor(const ZvEditorStyle& editor)
{
    d_impl()->editors.push_back(editor);
}

void ZvStyle::addEditor(ZvEditorStyle&& editor)
{
    d_impl()->editors.push_back(std::move(editor));
}

ZvEditorStyle ZvStyle::editorStyle(const char* name) const
{
    const ZvEditorStyle* const found = d_impl()->editor(name);
    return found ? *found : ZvEditorStyle();
}

QColor ZvStyle::editorColour(const char* editor, const char* brush) const
{
    const ZvEditorStyle* const found = d_impl()->editor(editor);
    return found ? found->brush(brush) : QColor();
}

QColor ZvStyle::editorColour(const std::string& editor, const std::string& brush) const
{
    return editorColour(editor.c_str(), brush.c_str());
}

void ZvStyle::setEditorColour(const char* editor, const char* brush, const QColor& colour)
{
    ZvEditorStyle added(editor);
    added.setBrush(brush, colour);
    if (ZvEditorStyle* const found = d_impl()->editor(editor))
        found->setBrush(brush, colour);
    // By contract: setEditorColour() appends an editor even if one of that name exists. Readers
    // find the first one, which has just been updated.
    addEditor(std::move(added));
}

void ZvStyle::setEditorColour(const std::string& editor, const std::string& brush,
                              const QColor& colour)
{
    setEditorColour(editor.c_str(), brush.c_str(), colour);
}

ZvStyle ZvStyle::duplicate(const char* name) const
{
    ZvStyle copy(*this);
    copy.d_impl()->name = ZvString(name);
    copy.d_impl()->isDefault = false;
    return copy;
}

bool ZvStyle::isDefaultStyle() const
{
    return d_impl()->isDefault;
}

void ZvStyle::write(impl::xml_element_writer element) const
{
    element->attribute("name", name().c_str());
    impl::write_brushes(*element, d_impl()->colours);
    {
        const impl::xml_element_writer list = element->child("Icons");
        for (const ZvNamedIcon& icon : d_impl()->icons) {
            const impl::xml_element_writer entry = list->child("Icon");
            entry->attribute("name", icon.name().c_str());
            entry->attribute("path", icon.path().c_str());
        }
    }
    const impl::xml_element_writer list = element->child("Editors");
    for (const ZvEditorStyle& editor : d_impl()->editors)
        editor.write(list->child("Editor"));
}

bool ZvStyle::apply() const
{
    return apply(modificationsText());
}

bool ZvStyle::apply(const QString& styleSheet) const
{
    const QString text = templateText();
    if (text.isEmpty())
        return false;
    return applyToApplication(d_impl()->substituteVariables(text + QLatin1Char('\n') + styleSheet));
}

bool ZvStyle::apply(const zvutil::ZvFilePath& path) const
{
    const QString text = impl::read_text_file(zvutil::impl::native_file_name(path.c_str()));
    return !text.isEmpty() && applyToApplication(d_impl()->substituteVariables(text));
}

bool ZvStyle::apply(QWidget* widget) const
{
    const QString text = templateText();
    if (text.isEmpty())
        return false;
    // By contract: the sheet of a widget has no line feed between template and modifications,
    // unlike that of the application.
    widget->setStyleSheet(d_impl()->substituteVariables(text + modificationsText()));
    return true;
}

QString ZvStyle::TemplateResourcePath()
{
    return QStringLiteral(":/libzvutil/style/template.tqss");
}

ZvStyle::Impl* ZvStyle::d_impl()
{
    return m_implementation;
}

const ZvStyle::Impl* ZvStyle::d_impl() const
{
    return m_implementation;
}

} // namespace libzvutil
