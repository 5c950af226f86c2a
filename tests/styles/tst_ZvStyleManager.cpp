#include "ManagedStyles.h"

#include <zvutil/ZvStyleManager.h>

#include <zvutil/ZvException.h>
#include <zvutil/ZvStyleLibrary.h>

#include "support/Files.h"
#include "support/Messages.h"
#include "support/StdString.h"
#include "support/StyleHost.h"

#include <QApplication>
#include <QColor>
#include <QList>
#include <QMetaMethod>
#include <QPointer>
#include <QProcess>
#include <QTest>
#include <QWidget>

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;
using zvtest::builtIn;
using zvtest::inSheet;
using zvtest::Listener;
using zvtest::Messages;
using zvtest::panel;
using zvtest::styleWithPanel;
using zvutil::ZvFilePath;
using namespace std::string_literals;

namespace {

static_assert(sizeof(ZvStyleManager) == sizeof(QObject) + sizeof(void*));
static_assert(!std::is_default_constructible_v<ZvStyleManager>);

template <typename Style, typename = void>
struct CanBeSet : std::false_type
{
};
template <typename Style>
struct CanBeSet<Style, std::void_t<decltype(ZvStyleManager::SetStyle(std::declval<Style>()))>>
    : std::true_type
{
};

template <typename Style, typename = void>
struct CanUpdate : std::false_type
{
};
template <typename Style>
struct CanUpdate<Style, std::void_t<decltype(ZvStyleManager::Update(std::declval<Style>()))>>
    : std::true_type
{
};

// A style can be made from a name, so a call with a name has to be refused by name.
static_assert(CanBeSet<const ZvStyle&>::value && CanBeSet<ZvStyle&&>::value);
static_assert(!CanBeSet<const char (&)[5]>::value && !CanBeSet<const std::string&>::value);
static_assert(!CanBeSet<std::nullptr_t>::value);
static_assert(CanUpdate<const ZvStyle&>::value && CanUpdate<ZvStyle&&>::value);
static_assert(!CanUpdate<const char (&)[5]>::value && !CanUpdate<const std::string&>::value);
static_assert(std::is_convertible_v<const char*, ZvStyle>);
static_assert(std::is_convertible_v<const std::string&, ZvStyle>);

QString current()
{
    return ZvStyleManager::CurrentStyle().name().toQString();
}

/// As long as it lives, if at all, no window can be shown and no style be found.
class NothingWorks : public QObject
{
public:
    explicit NothingWorks(bool holds)
        : m_holds(holds)
        , m_kept(ZvStyleManager::Library())
    {
        if (!holds)
            return;
        library().clear(true);
        qApp->installEventFilter(this);
    }

    ~NothingWorks() override
    {
        if (m_holds)
            library() = m_kept;
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // The last of what a window is sent when it is shown.
        if (event->type() == QEvent::ShowToParent && static_cast<QWidget*>(watched)->isWindow())
            throw std::runtime_error("nothing works");
        return QObject::eventFilter(watched, event);
    }

private:
    /// The manager's own.
    static ZvStyleLibrary& library()
    {
        return const_cast<ZvStyleLibrary&>(ZvStyleManager::Library());
    }

    bool m_holds;
    const ZvStyleLibrary m_kept;
};

} // namespace

class tst_ZvStyleManager : public zvtest::StyleManagerTest
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject()
    {
        const QMetaObject& meta = ZvStyleManager::staticMetaObject;
        QCOMPARE(meta.className(), "libzvutil::ZvStyleManager");
        QStringList methods;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Signal);
            methods += QString::fromLatin1(meta.method(i).methodSignature());
        }
        QCOMPARE(methods, (QStringList{"currentStyleChanged(ZvStyle)", "styleLibraryChanged()"}));
    }

    void paths_data()
    {
        QTest::addColumn<QString>("symbol");
        QTest::addColumn<QString>("directory");
        QTest::newRow("plain") << "C:\\data"
                               << "C:\\data\\ui";
        QTest::newRow("separator at the end") << "C:\\data\\"
                                              << "C:\\data\\ui";
        QTest::newRow("slash at the end") << "C:/data/"
                                          << "C:\\data\\ui";
        QTest::newRow("no value") << QString() << "ui";
    }

    void paths()
    {
        QFETCH(QString, symbol);
        QFETCH(QString, directory);
        host::setPathSymbol("ZVAPPDATAPATH", symbol.toStdString());
        const ZvFilePath paths[] = {ZvStyleManager::StyleDirectory(),
                                    ZvStyleManager::StyleConfigPath(),
                                    ZvStyleManager::StyleModificationsPath()};
        host::setPathSymbol("ZVAPPDATAPATH", m_host.path().toStdString());
        QCOMPARE(paths[0].toQString(), directory);
        QCOMPARE(paths[1].toQString(), directory + "\\styles.xml");
        QCOMPARE(paths[2].toQString(), directory + "\\modifications.qss");
        QVERIFY(!QFile::exists("ui"));
    }

    void setStyle()
    {
        Listener listener;
        const ZvStyle style = styleWithPanel("Unknown", Qt::red);
        ZvStyleManager::SetStyle(style);
        QCOMPARE(current(), QString("Unknown"));
        QCOMPARE(panel(ZvStyleManager::CurrentStyle()), QColor(Qt::red));
        QVERIFY(&ZvStyle::Current() == &ZvStyleManager::CurrentStyle());
        QCOMPARE(listener.events, QStringList{"style Unknown"});
        // No sheet, and nothing in the library.
        QVERIFY(qApp->styleSheet().isEmpty());
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), builtIn);

        ZvStyle temporary = styleWithPanel("Temporary", Qt::blue);
        ZvStyleManager::SetStyle(std::move(temporary));
        QCOMPARE(current(), QString("Temporary"));
        // NOLINTNEXTLINE(bugprone-use-after-move): it stays as it is
        QCOMPARE(temporary.name().toQString(), QString("Temporary"));

        // The current style itself.
        ZvStyleManager::SetStyle(ZvStyleManager::CurrentStyle());
        QCOMPARE(current(), QString("Temporary"));
    }

    void setLibrary()
    {
        ZvStyleLibrary library;
        library.clear(true);
        library.update(styleWithPanel("Light", Qt::red));
        library.update(styleWithPanel("One", Qt::blue));
        ZvStyleManager::SetStyle(styleWithPanel("ONE", Qt::red));

        Listener listener;
        ZvStyleManager::SetLibrary(library);
        QCOMPARE(listener.events, (QStringList{"library", "style One"}));
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), builtIn + QStringList{"One"});
        QCOMPARE(panel(ZvStyleManager::CurrentStyle()), QColor(Qt::blue));
        QCOMPARE(panel(ZvStyleManager::Library().light()), QColor(0xF0, 0xF0, 0xF0));
        QVERIFY(qApp->styleSheet().isEmpty());
        QVERIFY(!QFile::exists(m_host.libraryFile()));

        // Styles that are no longer there go, and the current one falls back.
        ZvStyleLibrary next;
        next.update(styleWithPanel("Two", Qt::red));
        ZvStyleManager::SetLibrary(next);
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), builtIn + QStringList{"Two"});
        QCOMPARE(current(), QString("Light"));

        // The manager's own.
        ZvStyleManager::SetLibrary(ZvStyleManager::Library());
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), builtIn + QStringList{"Two"});
    }

    void freeStandingStyleFallsBackToLight()
    {
        ZvStyleManager::SetStyle(styleWithPanel("Unknown", Qt::red));
        ZvStyleManager::SetLibrary(ZvStyleLibrary());
        QCOMPARE(current(), QString("Light"));
    }

    void style()
    {
        QCOMPARE(ZvStyleManager::Style("dark").name().toQString(), QString("Dark"));
        try {
            ZvStyleManager::Style("\u00E4");
            QFAIL("nothing thrown");
        } catch (const zvutil::ZvException& error) {
            QCOMPARE(std::string(error.what()), "Style not found: \xC3\xA4"s);
        }
    }

    void refreshAppliesTheCurrentStyle()
    {
        ZvStyleManager::SetStyle(styleWithPanel("Mine", QColor(1, 2, 3)));
        Listener listener;
        ZvStyleManager::Refresh();
        QCOMPARE(listener.events, QStringList{"style Mine"});
        QVERIFY(qApp->styleSheet().contains(inSheet(QColor(1, 2, 3))));
        // The sheet is there before the listeners hear of it.
        QCOMPARE(listener.sheets, QStringList{qApp->styleSheet()});

        // A style alone changes nothing on the screen.
        ZvStyleManager::SetStyle(ZvStyleManager::Library().dark());
        QVERIFY(qApp->styleSheet().contains(inSheet(QColor(1, 2, 3))));
        ZvStyleManager::Refresh();
        QVERIFY(qApp->styleSheet().contains(inSheet(QColor(0x20, 0x20, 0x20))));
    }

    void applyJoinsTemplateAndModifications()
    {
        const ZvStyle& light = ZvStyleManager::Library().light();
        QVERIFY(light.apply());
        const QString plain = qApp->styleSheet();
        QVERIFY(plain.endsWith("\r\n}\n"));

        QVERIFY(
            m_host.write(m_host.modificationsFile(),
                         "QLabel { color: @panel } /* \xC3\xA4 @testplanCommentTextEnabled */"));
        QVERIFY(light.apply());
        QCOMPARE(qApp->styleSheet(), plain + "QLabel { color: #fff0f0f0 } /* \u00E4 #ff000000 */");

        QWidget widget;
        QVERIFY(light.apply(&widget));
        QCOMPARE(widget.styleSheet(),
                 plain.left(plain.size() - 1)
                     + "QLabel { color: #fff0f0f0 } /* \u00E4 #ff000000 */");

        QVERIFY(light.apply(QString("QLabel { color: @textDisabled; }")));
        QCOMPARE(qApp->styleSheet(), plain + "QLabel { color: #61000000; }");
        QVERIFY(light.apply(QString()));
        QCOMPARE(qApp->styleSheet(), plain);
    }

    void applyOfAFile()
    {
        const ZvStyle& light = ZvStyleManager::Library().light();
        const QString file = m_host.path() + "/own.qss";
        const ZvFilePath path(file.toStdWString());
        qApp->setStyleSheet("QLabel {}");
        QVERIFY(!light.apply(path));
        QVERIFY(m_host.write(file, QByteArray()));
        QVERIFY(!light.apply(path));
        QCOMPARE(qApp->styleSheet(), QString("QLabel {}"));
        QVERIFY(m_host.write(file, "QLabel { image: url(@iconMenu) }"));
        QVERIFY(light.apply(path));
        QCOMPARE(qApp->styleSheet(),
                 QString("QLabel { image: url(:/libzvutil/style/menu-black.svg) }"));
    }

    void update()
    {
        Listener listener;
        const ZvStyle mine = styleWithPanel("Mine", QColor(1, 2, 3));
        ZvStyleManager::Update(mine);
        QVERIFY(listener.events.isEmpty());
        QCOMPARE(current(), QString("Light"));
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), builtIn + QStringList{"Mine"});
        const ZvFilePath config(m_host.libraryFile().toStdWString());
        QCOMPARE(ZvStyleLibrary(config).names(), ZvStyleManager::AvailableStyleNames());
        QCOMPARE(panel(ZvStyleLibrary(config).style("Mine")), QColor(1, 2, 3));

        // A default style stays, and the library is saved all the same.
        QVERIFY(QFile::remove(m_host.libraryFile()));
        ZvStyleManager::Update(styleWithPanel("Dark", Qt::red));
        QCOMPARE(panel(ZvStyleManager::Library().dark()), QColor(0x20, 0x20, 0x20));
        QVERIFY(QFile::exists(m_host.libraryFile()));
        QVERIFY(QFile::remove(m_host.libraryFile()));
    }

    void updateThatCannotBeSavedSaysNothing()
    {
        QVERIFY(QDir(m_host.path()).rename("ui", QString("gone")));
        ZvStyleManager::Update(styleWithPanel("Mine", Qt::red));
        QVERIFY(QDir(m_host.path()).rename("gone", QString("ui")));
        QVERIFY(ZvStyleManager::AvailableStyleNames().contains("Mine"));
    }

    void commands()
    {
        ZvStyleManager::SetStyle(styleWithPanel("Mine", QColor(1, 2, 3)));
        Listener listener;
        host::callCommand("_s1", {}, {}, {"test", 1});
        QVERIFY(qApp->styleSheet().contains(inSheet(QColor(0x20, 0x20, 0x20))));
        host::callCommand("_s2", {"ignored"}, {}, {"test", 1});
        QVERIFY(qApp->styleSheet().contains(inSheet(QColor(0xF0, 0xF0, 0xF0))));
        // The look alone.
        QCOMPARE(current(), QString("Mine"));
        QVERIFY(listener.events.isEmpty());
        ZvStyleManager::Refresh();
        QVERIFY(qApp->styleSheet().contains(inSheet(QColor(1, 2, 3))));
    }

    void commandsReleaseTheirMessageHandler_data()
    {
        QTest::addColumn<bool>("throws");
        for (const char* const name : {"_se", "_s1", "_s2", "_modifystyle", "_s3"}) {
            QTest::newRow(name) << false;
            QTest::addRow("%s, which throws", name) << true;
        }
    }

    void commandsReleaseTheirMessageHandler()
    {
        QFETCH(bool, throws);
        const QString tag = QString::fromLatin1(QTest::currentDataTag());
        const std::string name = tag.section(QLatin1Char(','), 0, 0).toStdString();
        bool hasThrown = false;
        Messages::alive = 0;
        {
            const NothingWorks nothingWorks(throws);
            try {
                host::callCommand(name, {}, YRef<MessageHandler>(std::make_unique<Messages>()),
                                  {"test", 1});
            } catch (...) {
                hasThrown = true;
            }
        }
        // One may be deleted along with another.
        QList<QPointer<QWidget>> windows;
        for (QWidget* const window : QApplication::topLevelWidgets())
            windows.append(window);
        for (const QPointer<QWidget>& window : windows) {
            if (window && !window->parent())
                delete window;
        }
        QCOMPARE(hasThrown, throws);
        QCOMPARE(Messages::alive, 0);
    }

    void options()
    {
        std::vector<std::string> options;
        for (const host::OptionInfo& option : host::options())
            options.push_back(option.name + " " + option.defaultValue + " " + option.source + " "
                              + std::to_string(option.line) + " "
                              + std::to_string(option.cacheStatus) + " "
                              + std::to_string(option.flag));
        QCOMPARE(options,
                 (std::vector{"ZvStyle Light src\\ZvStyleManager 13 0 1"s,
                              "ZvStyleAccent #2D7D9A src\\impl\\ZvStyleImpl 13 0 1"s}));
        for (const host::CommandInfo& command : host::commands())
            QCOMPARE(command.flags, 0);
    }

    void start_data()
    {
        QTest::addColumn<QByteArray>("library");
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("printed");
        const QByteArray none;
        const QByteArray user = "<StyleLibrary><Styles><Style name='LIGHT'><Brushes>"
                                "<Brush name='Panel' colour='#010203'/></Brushes><Icons/></Style>"
                                "<Style name='User'><Brushes/><Icons/></Style>"
                                "</Styles><Accents/></StyleLibrary>";
        const auto row = [](const char* name, const QByteArray& library, const char* option,
                            const char* printed) {
            QTest::newRow(name) << library << QString::fromUtf8(option)
                                << QString::fromUtf8(printed);
        };
        row("nothing there", none, "", "Light|Light,Dark|#f0f0f0");
        row("option", none, "Dark", "Dark|Light,Dark|#f0f0f0");
        row("option in another case", none, "dARK", "Dark|Light,Dark|#f0f0f0");
        row("option unknown", none, "Blue", "Light|Light,Dark|#f0f0f0");
        row("user's library", user, "", "Light|Light,Dark,User|#f0f0f0");
        row("user's style", user, "User", "User|Light,Dark,User|#f0f0f0");
        row("bad element", "<StyleLibrary><Styles><Style/></Styles></StyleLibrary>", "",
            "Light|Light,Dark|#f0f0f0");
        row("no root", "none", "", "Light|Light,Dark|#f0f0f0");
        row("style without lists",
            "<StyleLibrary><Styles><Style name='x'/></Styles></StyleLibrary>", "Dark",
            "Dark|Light,Dark|#f0f0f0");
        row("breaks off", user.left(user.indexOf("/><Icons/></Style></Styles>")), "",
            "Light|Light,Dark|#f0f0f0");
    }

    void start()
    {
        QFETCH(QByteArray, library);
        QFETCH(QString, option);
        QFETCH(QString, printed);
        const zvtest::StyleHost user;
        if (!library.isEmpty())
            QVERIFY(user.write(user.libraryFile(), library));
        QCOMPARE(probe(user, {"start", option}), printed);
        QVERIFY(QDir(user.path()).exists("ui"));
        // No file is written, and none is touched.
        if (library.isEmpty())
            QVERIFY(!QFile::exists(user.libraryFile()));
        else
            QCOMPARE(zvtest::contentOf(user.libraryFile()), library);
        QVERIFY(!QFile::exists(user.modificationsFile()));
    }

    void startWithoutADirectory()
    {
        // A file where the directory is to be.
        const zvtest::StyleHost user;
        QFile blocking(user.path() + "/ui");
        QVERIFY(blocking.open(QIODevice::WriteOnly));
        QCOMPARE(probe(user, {"start", QString()}), QString("Light|Light,Dark|#f0f0f0"));
    }

    void startWithoutOptions()
    {
#if defined(Q_OS_WIN)
        QSKIP("No function takes the place of another library's");
#else
        const zvtest::StyleHost user;
        QProcess process;
        process.start(OPTION_PROBE_FILE, {user.path()});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.readAllStandardOutput(), QByteArray("Light\n"));
        QCOMPARE(process.exitCode(), 0);
#endif
    }

    void theWholeRoad()
    {
        // The user has a library on disc; a process changes it, applies it and saves a style.
        const zvtest::StyleHost user;
        QVERIFY(user.write(user.libraryFile(),
                           "<StyleLibrary><Styles><Style name='Mine'><Brushes>"
                           "<Brush name='Panel' colour='#010203'/></Brushes><Icons/></Style>"
                           "</Styles><Accents/></StyleLibrary>"));
        QCOMPARE(probe(user, {"road", "Mine"}),
                 QString("Mine|library|style Mine|style Edited|style Edited|sheet #ff040506"));
        // Another one reads what it has saved.
        QCOMPARE(probe(user, {"start", "Saved"}), QString("Saved|Light,Dark,Mine,Saved|#f0f0f0"));
        QCOMPARE(QDir(user.path() + "/ui").entryList(QDir::Files), QStringList{"styles.xml"});
    }

    void processesThatUpdateAtOnceLeaveAWholeFile()
    {
        const zvtest::StyleHost user;
        QProcess first;
        QProcess second;
        startProbe(first, user, {"update", "First"});
        startProbe(second, user, {"update", "Second"});
        int seen = 0;
        while (first.state() != QProcess::NotRunning || second.state() != QProcess::NotRunning) {
            first.waitForFinished(5);
            second.waitForFinished(5);
            QFile file(user.libraryFile());
            if (!file.open(QIODevice::ReadOnly))
                continue; // not there yet, or just being replaced
            const QByteArray bytes = file.readAll();
            ++seen;
            QVERIFY(bytes.startsWith("<?xml"));
            QVERIFY(bytes.endsWith("</Accents>"));
        }
        QCOMPARE(first.exitCode(), 0);
        QCOMPARE(second.exitCode(), 0);
        QVERIFY(seen > 0);
        const ZvStyleLibrary library(ZvFilePath(user.libraryFile().toStdWString()));
        QCOMPARE(library.names().mid(0, 2), builtIn);
        QCOMPARE(QDir(user.path() + "/ui").entryList(QDir::Files), QStringList{"styles.xml"});
    }

    void missingSvgPluginIsToldOnce()
    {
        const zvtest::StyleHost user;
        QVERIFY(probe(user, {"icons"}).isEmpty());
        QCOMPARE(probe(user, {"icons", "none"}),
                 QString("Icons can't be shown: Qt has no image format plugin for SVG"));
    }

private:
    static void startProbe(QProcess& process, const zvtest::StyleHost& user,
                           const QStringList& arguments)
    {
        process.start(STYLE_PROBE_FILE, QStringList{user.path()} + arguments);
        if (!process.waitForStarted())
            QFAIL("the probe doesn't start");
    }

    /// What the probe prints about a manager of its own.
    static QString probe(const zvtest::StyleHost& user, const QStringList& arguments)
    {
        QProcess process;
        startProbe(process, user, arguments);
        if (!process.waitForFinished() || process.exitCode() != 0)
            return "failed: " + QString::fromUtf8(process.readAllStandardError());
        return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
};

QTEST_MAIN(tst_ZvStyleManager)
#include "tst_ZvStyleManager.moc"
