// Whatever the application, its threads, the style editor and the user's files do to the styles, in any
// order: the manager, the application's sheet and the files are those of a plain model.

#include "ManagedStyles.h"
#include "StyleStates.h"
#include "support/rapidcheck.h"

#include <zvutil/ZvStyleEditor.h>
#include <zvutil/ZvStyleModel.h>

#include <HostSupport/host.h>

#include <QComboBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeView>

#include <memory>
#include <ostream>
#include <string>
#include <thread>
#include <utility>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleEditor;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;
using zvtest::EditorModel;
using zvtest::inSheet;
using zvtest::Listener;
using zvtest::plain;
using zvtest::PlainLibrary;
using zvtest::PlainStyle;
using zvtest::StyleHost;
using zvtest::StyleModel;
using zvtest::styleOf;
using zvtest::textOf;
using zvutil::ZvFilePath;

namespace {

constexpr int maxEditorCommands = 8;

QString anyName()
{
    return QString::fromLatin1(
        *rc::gen::element("Mine", "Other", "MINE", "User Light", "light", "Dark"));
}

QColor anyColour()
{
    return {*rc::gen::element(Qt::red, Qt::green, Qt::blue, Qt::cyan, Qt::magenta)};
}

PlainStyle anyStyle()
{
    const QString name = anyName();
    return {name, anyColour(), false};
}

PlainLibrary anyLibrary()
{
    PlainLibrary library;
    for (int i = *rc::gen::inRange(0, 4); i > 0; --i)
        library.update(anyStyle());
    return library;
}

/// A library with just these styles.
ZvStyleLibrary libraryOf(const PlainLibrary& plain)
{
    ZvStyleLibrary library;
    library.clear(true);
    for (const PlainStyle& style : plain.styles())
        library.update(styleOf(style));
    return library;
}

/// The editor with its controls.
class Editor
{
public:
    void choose(const QString& name) { m_combo->setCurrentText(name); }

    void duplicate()
    {
        for (QPushButton* const button : m_editor.findChildren<QPushButton*>()) {
            if (button->text() == "Duplicate")
                button->click();
        }
    }

    void setPanel(const QColor& colour)
    {
        model().setData(model().index(0, 0, model().index(0, 0, {})), colour, Qt::DecorationRole);
    }

    void apply() { m_editor.apply(); }

    std::string text() const
    {
        return plain(model().style()).text() + " of " + m_combo->currentText().toStdString();
    }

    bool shows(const QColor& panel) const
    {
        const QWidget* const parent = m_editor.findChild<QTabWidget*>()->parentWidget();
        return parent->styleSheet().contains(inSheet(panel));
    }

private:
    libzvutil::ZvStyleModel& model() const
    {
        return dynamic_cast<libzvutil::ZvStyleModel&>(*m_editor.findChild<QTreeView*>()->model());
    }

    ZvStyleEditor m_editor;
    QComboBox* m_combo = m_editor.findChild<QComboBox*>();
};

/// The one manager as it is when the application starts without files of the user's.
class Styles
{
public:
    explicit Styles(const StyleHost& user)
        : host(user)
    {
        QFile::remove(host.libraryFile());
        writeModifications({});
        ZvStyleManager::SetLibrary(ZvStyleLibrary());
        ZvStyleManager::SetStyle(ZvStyleManager::Library().light());
        qApp->setStyleSheet(QString());
        listener.emplace();
    }

    ~Styles() { handleEvents(); }

    static void handleEvents() { QCoreApplication::processEvents(); }

    ZvFilePath libraryPath() const { return ZvFilePath(host.libraryFile().toStdWString()); }

    void writeModifications(const QString& text) const
    {
        if (!host.write(host.modificationsFile(), text.toUtf8()))
            qFatal("the additions can't be written");
    }

    const StyleHost& host;
    std::optional<Listener> listener;
    std::optional<Editor> editor;
    ZvStyle kept; ///< is moved from and assigned to again
    ZvStyleLibrary keptLibrary;
};

class StyleCommand : public rc::state::Command<StyleModel, Styles>
{
public:
    void apply(StyleModel& model) const override
    {
        model.events.clear();
        change(model);
    }

    void run(const StyleModel& before, Styles& styles) const override
    {
        styles.listener->events.clear();
        perform(before, styles);
        // Files that have been read are closed by it.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        check(nextState(before), styles);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void show(std::ostream& stream) const override { stream << description(); }

protected:
    virtual std::string description() const = 0;
    virtual void change(StyleModel& model) const = 0;
    virtual void perform(const StyleModel& before, Styles& styles) const = 0;

private:
    static void check(const StyleModel& model, const Styles& styles)
    {
        RC_ASSERT(styles.listener->events.join(", ").toStdString()
                  == model.events.join(", ").toStdString());
        RC_ASSERT(styles.listener->onManagersThread);
        RC_ASSERT(plain(ZvStyleManager::CurrentStyle()).text() == model.current.text());
        RC_ASSERT(&ZvStyle::Current() == &ZvStyleManager::CurrentStyle());
        RC_ASSERT(textOf(ZvStyleManager::Library()) == model.library.text());
        for (const PlainStyle& style : model.library.styles())
            RC_ASSERT(plain(ZvStyleManager::Style(style.name)).text() == style.text());
        checkSheet(model);
        RC_ASSERT(QFile::exists(styles.host.libraryFile()) == model.saved.has_value());
        if (model.saved)
            RC_ASSERT(textOf(ZvStyleLibrary(styles.libraryPath())) == model.saved->read().text());
        RC_ASSERT(styles.editor.has_value() == model.editor.has_value());
        if (model.editor) {
            RC_ASSERT(styles.editor->text()
                      == model.editor->shown.text() + " of " + model.editor->chosen.toStdString());
            RC_ASSERT(styles.editor->shows(model.editor->shown.panel));
        }
    }

    static void checkSheet(const StyleModel& model)
    {
        const QString sheet = qApp->styleSheet();
        RC_ASSERT(sheet.isEmpty() == !model.sheetPanel.has_value());
        if (!model.sheetPanel)
            return;
        const bool hasPanel = sheet.contains(inSheet(*model.sheetPanel));
        const bool hasEnd = sheet.endsWith("}\n" + model.sheetEnd);
        RC_ASSERT(hasPanel);
        RC_ASSERT(hasEnd);
    }
};

/// Something that may be called on any thread: it happens at once on the manager's own, else when
/// events are handled.
class ThreadedCommand : public StyleCommand
{
protected:
    using Effect = std::function<void(StyleModel&)>;

    virtual std::string action() const = 0;
    /// What a call has to do that is made while \p model holds.
    virtual Effect effect(const StyleModel& model) const = 0;
    virtual void call(Styles& styles) const = 0;

private:
    std::string description() const override { return action() + (m_isLate ? " on a thread" : ""); }

    void change(StyleModel& model) const override
    {
        if (m_isLate)
            model.waiting.append(effect(model));
        else
            effect(model)(model);
    }

    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        if (m_isLate)
            std::thread([&] { call(styles); }).join();
        else
            call(styles);
    }

    bool m_isLate = *rc::gen::weightedElement<bool>({{2, false}, {1, true}});
};

class SetStyle : public ThreadedCommand
{
    std::string action() const override { return "set " + m_style.text(); }

    Effect effect(const StyleModel& /*model*/) const override
    {
        return [style = m_style](StyleModel& model) { model.setStyle(style); };
    }

    void call(Styles& /*styles*/) const override
    {
        ZvStyle style = styleOf(m_style);
        if (m_isTemporary)
            ZvStyleManager::SetStyle(std::move(style));
        else
            ZvStyleManager::SetStyle(style);
        // It has been copied, and may change.
        style = styleOf({"Changed", Qt::black});
    }

    PlainStyle m_style = anyStyle();
    bool m_isTemporary = *rc::gen::arbitrary<bool>();
};

/// Sets one of the library's styles.
class ChooseStyle : public StyleCommand
{
public:
    explicit ChooseStyle(const StyleModel& model)
        : m_index(*rc::gen::inRange(0, model.library.styles().size()))
    {
    }

    void checkPreconditions(const StyleModel& model) const override
    {
        RC_PRE(m_index < model.library.styles().size());
    }

private:
    std::string description() const override { return "choose style " + std::to_string(m_index); }

    void change(StyleModel& model) const override
    {
        model.setStyle(model.library.styles().at(m_index));
    }

    void perform(const StyleModel& /*before*/, Styles& /*styles*/) const override
    {
        const QString name = ZvStyleManager::AvailableStyleNames().at(m_index);
        ZvStyleManager::SetStyle(ZvStyleManager::Style(name));
    }

    int m_index;
};

class SetLibrary : public ThreadedCommand
{
    std::string action() const override { return "set the library " + m_library.text(); }

    Effect effect(const StyleModel& /*model*/) const override
    {
        return [library = m_library](StyleModel& model) { model.setLibrary(library); };
    }

    void call(Styles& /*styles*/) const override
    {
        ZvStyleManager::SetLibrary(libraryOf(m_library));
    }

    PlainLibrary m_library = anyLibrary();
};

class Refresh : public ThreadedCommand
{
    std::string action() const override { return "refresh"; }

    Effect effect(const StyleModel& /*model*/) const override
    {
        return [](StyleModel& model) { model.refresh(); };
    }

    void call(Styles& /*styles*/) const override { ZvStyleManager::Refresh(); }
};

class HandleEvents : public StyleCommand
{
    std::string description() const override { return "handle events"; }
    void change(StyleModel& model) const override { model.handleEvents(); }
    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        styles.handleEvents();
    }
};

/// Puts a style's sheet on the application, and no more.
class Apply : public StyleCommand
{
    std::string description() const override { return m_isDark ? "apply Dark" : "apply Light"; }

    void change(StyleModel& model) const override
    {
        model.apply(*model.library.find(m_isDark ? "Dark" : "Light"));
    }

    void perform(const StyleModel& /*before*/, Styles& /*styles*/) const override
    {
        host::callCommand(m_isDark ? "_s1" : "_s2", {}, {}, {"test", 1});
    }

    bool m_isDark = *rc::gen::arbitrary<bool>();
};

class Update : public StyleCommand
{
    std::string description() const override { return "update " + m_style.text(); }
    void change(StyleModel& model) const override { model.update(m_style); }

    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        styles.kept = styleOf(m_style);
        if (m_isMoved)
            ZvStyleManager::Update(std::move(styles.kept));
        else
            ZvStyleManager::Update(styles.kept);
        styles.kept = ZvStyleManager::CurrentStyle();
        RC_ASSERT(plain(styles.kept).text() == plain(ZvStyleManager::CurrentStyle()).text());
    }

    PlainStyle m_style = anyStyle();
    bool m_isMoved = *rc::gen::arbitrary<bool>();
};

/// Passes a library on that is then used again.
class PassLibrary : public StyleCommand
{
    std::string description() const override { return "pass on the library " + m_library.text(); }
    void change(StyleModel& model) const override { model.setLibrary(m_library); }

    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        styles.keptLibrary = libraryOf(m_library);
        ZvStyleLibrary library;
        library.add(std::move(styles.keptLibrary));
        RC_ASSERT(textOf(styles.keptLibrary) == std::string());
        ZvStyleManager::SetLibrary(library);
        const ZvStyleLibrary taken = std::move(styles.keptLibrary);
        styles.keptLibrary = ZvStyleManager::Library();
        RC_ASSERT(textOf(styles.keptLibrary) == textOf(ZvStyleManager::Library()));
    }

    PlainLibrary m_library = anyLibrary();
};

/// The user's file changes behind the manager.
class WriteFile : public StyleCommand
{
    std::string description() const override { return "a file with " + m_library.text(); }
    void change(StyleModel& model) const override { model.saved = m_library; }

    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        libraryOf(m_library).save(styles.libraryPath());
    }

    PlainLibrary m_library = anyLibrary();
};

class RemoveFile : public StyleCommand
{
    std::string description() const override { return "the file is removed"; }
    void change(StyleModel& model) const override { model.saved.reset(); }

    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        QFile::remove(styles.host.libraryFile());
    }
};

class LoadFile : public StyleCommand
{
    std::string description() const override { return "load the file"; }

    void change(StyleModel& model) const override
    {
        model.setLibrary(model.saved ? model.saved->read() : PlainLibrary());
    }

    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        ZvStyleManager::SetLibrary(ZvStyleLibrary(styles.libraryPath()));
    }
};

class WriteModifications : public StyleCommand
{
    std::string description() const override { return "additions: " + m_text.toStdString(); }
    void change(StyleModel& model) const override { model.modifications = m_text; }

    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        styles.writeModifications(m_text);
    }

    QString m_text = QString::fromLatin1(
        *rc::gen::element("", "QLabel { color: red }", "QLabel { color: blue }\n"));
};

class OpenEditor : public StyleCommand
{
    std::string description() const override { return "open the editor"; }

    void change(StyleModel& model) const override
    {
        const QStringList names = model.library.names();
        const QString& name = model.current.name;
        model.editor = EditorModel{model.library, model.current, names,
                                   names.contains(name) ? name : names.first()};
    }

    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        styles.editor.reset();
        styles.editor.emplace();
    }
};

/// What a user does in the editor.
class EditorCommand : public StyleCommand
{
public:
    void checkPreconditions(const StyleModel& model) const override
    {
        RC_PRE(model.editor.has_value());
    }
};

class CloseEditor : public EditorCommand
{
    std::string description() const override { return "close the editor"; }
    void change(StyleModel& model) const override { model.editor.reset(); }
    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        styles.editor.reset();
    }
};

class ChooseInEditor : public EditorCommand
{
    std::string description() const override { return "edit " + m_name.toStdString(); }
    void change(StyleModel& model) const override { model.editor->choose(m_name); }
    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        styles.editor->choose(m_name);
    }

    QString m_name = anyName();
};

class Duplicate : public EditorCommand
{
    std::string description() const override { return "duplicate"; }
    void change(StyleModel& model) const override { model.editor->duplicate(); }
    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        styles.editor->duplicate();
    }
};

class ChangeColour : public EditorCommand
{
public:
    void checkPreconditions(const StyleModel& model) const override
    {
        EditorCommand::checkPreconditions(model);
        // A user who changes a built-in style gets a copy, in a dialog.
        RC_PRE(!model.editor->shown.isDefault);
    }

private:
    std::string description() const override
    {
        return "change to " + m_colour.name().toStdString();
    }
    void change(StyleModel& model) const override { model.editor->setPanel(m_colour); }
    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        styles.editor->setPanel(m_colour);
    }

    QColor m_colour = anyColour();
};

class ApplyEditor : public EditorCommand
{
    std::string description() const override { return "apply what is edited"; }
    void change(StyleModel& model) const override { model.setLibrary(model.editor->library); }
    void perform(const StyleModel& /*before*/, Styles& styles) const override
    {
        styles.editor->apply();
    }
};

} // namespace

class tst_style_manager_states : public QObject
{
    Q_OBJECT

    const StyleHost m_host;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_host.isValid()); }

    void stylesAreThoseOfTheModel()
    {
        QVERIFY(rc::check("styles, sheet and files", [this] {
            Styles styles(m_host);
            rc::state::check(
                StyleModel(), styles,
                rc::state::gen::execOneOfWithArgs<
                    SetStyle, ChooseStyle, SetLibrary, Refresh, HandleEvents, Apply, Update,
                    PassLibrary, WriteFile, RemoveFile, LoadFile, WriteModifications>());
        }));
    }

    void editorShowsAndAppliesWhatTheModelDoes()
    {
        QVERIFY(rc::check("styles and their editor", [this] {
            const StyleModel model;
            // Each preview takes its time.
            const auto commands = *rc::gen::resize(
                maxEditorCommands,
                rc::state::gen::commands(
                    model,
                    rc::state::gen::execOneOfWithArgs<
                        OpenEditor, CloseEditor, ChooseInEditor, ChooseInEditor, Duplicate,
                        Duplicate, ChangeColour, ChangeColour, ChangeColour, ApplyEditor,
                        ApplyEditor, ApplyEditor, SetStyle, ChooseStyle, SetLibrary, HandleEvents,
                        Update>()));
            Styles styles(m_host);
            rc::state::runAll(commands, model, styles);
        }));
    }
};

QTEST_MAIN(tst_style_manager_states)
#include "tst_style_manager_states.moc"
