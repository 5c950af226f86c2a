#pragma once

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleBrush.h>
#include <zvutil/ZvStyleLibrary.h>

#include <QColor>
#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace zvtest {

/// A style in its plainest form: of its colours that of panels alone.
struct PlainStyle
{
    QString name;
    QColor panel;
    bool isDefault = false;

    std::string text() const
    {
        return (name + ' ' + panel.name() + (isDefault ? " (default)" : "")).toStdString();
    }
};

inline PlainStyle plain(const libzvutil::ZvStyle& style)
{
    return {style.name().toQString(), style.colour(libzvutil::ZvStyleBrush::Panel).qColour(),
            style.isDefaultStyle()};
}

/// Like the light style but for its name and panels.
inline libzvutil::ZvStyle styleOf(const PlainStyle& plain)
{
    static const libzvutil::ZvStyleLibrary library;
    libzvutil::ZvStyle style = library.light().duplicate(plain.name.toUtf8().constData());
    style.setColour(libzvutil::ZvStyleBrush::Panel, plain.panel);
    return style;
}

/// A list of styles by the rules of `ZvStyleLibrary`.
class PlainLibrary
{
public:
    static PlainLibrary builtIn()
    {
        PlainLibrary library;
        library.m_styles = {{"Light", QColor(0xF0, 0xF0, 0xF0), true},
                            {"Dark", QColor(0x20, 0x20, 0x20), true}};
        return library;
    }

    const QList<PlainStyle>& styles() const { return m_styles; }

    QStringList names() const
    {
        QStringList names;
        for (const PlainStyle& style : m_styles)
            names.append(style.name);
        return names;
    }

    const PlainStyle* find(const QString& name) const
    {
        const auto found =
            std::find_if(m_styles.begin(), m_styles.end(), [&name](const PlainStyle& style) {
                return style.name.compare(name, Qt::CaseInsensitive) == 0;
            });
        return found == m_styles.end() ? nullptr : &*found;
    }

    void add(const PlainLibrary& other)
    {
        for (const PlainStyle& style : other.m_styles) {
            if (!find(style.name))
                m_styles.append(style);
        }
    }

    void update(const PlainStyle& style)
    {
        for (PlainStyle& own : m_styles) {
            if (own.name.compare(style.name, Qt::CaseInsensitive) != 0)
                continue;
            if (!own.isDefault)
                own = style;
            return;
        }
        m_styles.append(style);
    }

    void removeUsers()
    {
        const auto isUsers = [](const PlainStyle& style) { return !style.isDefault; };
        m_styles.erase(std::remove_if(m_styles.begin(), m_styles.end(), isUsers), m_styles.end());
    }

    /// What is read from the file of this library: no style is a default one.
    PlainLibrary read() const
    {
        PlainLibrary library = *this;
        for (PlainStyle& style : library.m_styles)
            style.isDefault = false;
        return library;
    }

    std::string text() const
    {
        std::string text;
        for (const PlainStyle& style : m_styles)
            text += style.text() + "\n";
        return text;
    }

private:
    QList<PlainStyle> m_styles;
};

/// The styles of \p library as `PlainLibrary::text` writes them.
inline std::string textOf(const libzvutil::ZvStyleLibrary& library)
{
    std::string text;
    for (const QString& name : library.names())
        text += plain(library.style(name.toUtf8().constData())).text() + "\n";
    return text;
}

/// What the style editor shows, and the library that it edits.
struct EditorModel
{
    PlainLibrary library;
    PlainStyle shown;
    QStringList listed; ///< the names in the list of styles
    QString chosen; ///< the one that is chosen there

    /// The list is filled anew, which shows what is chosen then.
    void listAgain()
    {
        listed = library.names();
        if (!listed.contains(chosen))
            chosen = listed.first();
        shown = *library.find(chosen);
    }

    void choose(const QString& name)
    {
        // The list tells of a choice only where it is another one.
        if (name == chosen || !listed.contains(name))
            return;
        chosen = name;
        if (const PlainStyle* const found = library.find(name))
            shown = *found;
    }

    void duplicate()
    {
        const QString base = shown.isDefault ? "User " + shown.name : shown.name;
        QString name = base;
        for (int i = 1; library.names().contains(name); ++i)
            name = base + ' ' + QString::number(i);
        library.update({name, shown.panel, false});
        listAgain();
        choose(name);
    }

    void setPanel(const QColor& colour)
    {
        shown.panel = colour;
        library.update(shown);
    }
};

/// The manager, the application's sheet, the user's files, and calls that wait for the event loop.
struct StyleModel
{
    PlainLibrary library = PlainLibrary::builtIn();
    PlainStyle current = library.styles().first();
    std::optional<QColor> sheetPanel; ///< nothing before the first sheet
    QString sheetEnd;
    std::optional<PlainLibrary> saved;
    QString modifications;
    std::optional<EditorModel> editor;
    QList<std::function<void(StyleModel&)>> waiting;
    QStringList events; ///< what listeners hear

    void setStyle(const PlainStyle& style)
    {
        current = style;
        events.append("style " + style.name);
    }

    void setLibrary(const PlainLibrary& other)
    {
        library.removeUsers();
        library.add(other);
        const PlainStyle* const found = library.find(current.name);
        events.append("library");
        setStyle(found ? *found : library.styles().first());
    }

    void apply(const PlainStyle& style)
    {
        sheetPanel = style.panel;
        sheetEnd = modifications;
    }

    void refresh()
    {
        apply(current);
        events.append("style " + current.name);
    }

    void update(const PlainStyle& style)
    {
        library.update(style);
        saved = library;
    }

    void handleEvents()
    {
        for (const auto& call : std::exchange(waiting, {}))
            call(*this);
    }
};

} // namespace zvtest
