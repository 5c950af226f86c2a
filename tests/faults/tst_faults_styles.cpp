// The user's styles and modifications are saved whole or not at all, and whatever can't be read leaves
// the styles that are there, whichever call on a file fails.

#include "Drive.h"
#include "SavePromise.h"

#include <zvutil/ZvException.h>
#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>
#include <zvutil/exception.h>

#include "impl/styles/text_file.h"
#include "support/EventLoop.h"
#include "support/Files.h"
#include "support/Process.h"
#include "support/StyleHost.h"

#include <HostSupport/host.h>

#include <QApplication>
#include <QTest>

#include <functional>
#include <optional>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleLibrary;
using libzvutil::ZvStyleManager;
using zvtest::Injected;
using zvtest::Operation;
using zvtest::SavePromise;

namespace {

const QStringList builtIn = {"Light", "Dark"};

zvutil::ZvFilePath pathOf(const QString& name)
{
    return name.toStdWString();
}

ZvStyle named(const char* name)
{
    ZvStyle style(name);
    style.setColour(libzvutil::ZvStyleBrush::Panel, QColor(1, 2, 3));
    return style;
}

ZvStyleLibrary withUsersStyles(int count)
{
    ZvStyleLibrary library;
    for (int i = 0; i < count; ++i)
        library.update(named(("User " + std::to_string(i)).c_str()));
    return library;
}

} // namespace

class tst_faults_styles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_host.isValid());
        QVERIFY(QDir(m_host.path()).mkpath("ui"));
        // The faults of an operation are none of the manager's start.
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), builtIn);
    }

    void cleanupTestCase() { zvtest::Tally::print(); }

    void saveLibrary_data() { zvtest::addFaultKinds(); }

    void saveLibrary()
    {
        const ZvStyleLibrary before = withUsersStyles(1);
        const ZvStyleLibrary after = withUsersStyles(20);
        driveSave(
            m_host.libraryFile(), [&] { before.save(pathOf(m_host.libraryFile())); },
            [&] { after.save(pathOf(m_host.libraryFile())); });
    }

    void update_data() { zvtest::addFaultKinds(); }

    void update()
    {
        driveSave(
            m_host.libraryFile(),
            [&] {
                ZvStyleManager::SetLibrary(ZvStyleLibrary());
                ZvStyleManager::Library().save(ZvStyleManager::StyleConfigPath());
            },
            [&] { ZvStyleManager::Update(named("Mine")); });
        QCOMPARE(ZvStyleManager::AvailableStyleNames(), QStringList(builtIn) << "Mine");
    }

    void saveModifications_data() { zvtest::addFaultKinds(); }

    void saveModifications()
    {
        const QString text = QString("* { color: red; }\n").repeated(5'000);
        m_report = SavePromise::Report::Result;
        driveSave(
            m_host.modificationsFile(),
            [&] { libzvutil::impl::write_text_file(m_host.modificationsFile(), "* {}"); },
            [&] {
                m_isSaved = libzvutil::impl::write_text_file(m_host.modificationsFile(), text);
            });
        m_report = SavePromise::Report::None;
    }

    void loadLibrary_data() { zvtest::addFaultKinds(); }

    // By contract a file that can't be read is an empty library, and one that breaks off ends there.
    void loadLibrary()
    {
        withUsersStyles(20).save(pathOf(m_host.libraryFile()));
        zvtest::runEventLoop();
        const QStringList all = ZvStyleLibrary(pathOf(m_host.libraryFile())).names();
        QCOMPARE(all.size(), 22);
        QStringList names;
        driveLoad(
            [&] { names = ZvStyleLibrary(pathOf(m_host.libraryFile())).names(); },
            [&] { return all.mid(0, names.size()) == names ? names.size() == 22 : throwWrong(); });
    }

    void addLibrary_data() { zvtest::addFaultKinds(); }

    void addLibrary()
    {
        withUsersStyles(20).save(pathOf(m_host.libraryFile()));
        zvtest::runEventLoop();
        ZvStyleLibrary library;
        driveLoad(
            [&] {
                library = ZvStyleLibrary();
                library.add(pathOf(m_host.libraryFile()));
            },
            [&] {
                const QStringList names = library.names();
                return names.mid(0, 2) == builtIn ? names.size() == 22 : throwWrong();
            });
    }

    void refresh_data() { zvtest::addFaultKinds(); }

    void refresh()
    {
        QVERIFY(zvtest::writeTo(m_host.modificationsFile(), "/* mine */"));
        ZvStyleManager::SetLibrary(ZvStyleLibrary());
        int changes = 0;
        QObject context;
        connect(&libzvutil::styleManager(), &ZvStyleManager::currentStyleChanged, &context,
                [&changes] { ++changes; });
        int expected = 0;
        driveLoad(
            [&] {
                expected = changes + 1;
                ZvStyleManager::Refresh();
            },
            [&] {
                const QString sheet = qApp->styleSheet();
                return changes == expected && sheet.size() > 1'000 ? sheet.contains("/* mine */")
                                                                   : throwWrong();
            });
    }

private:
    static bool throwWrong() { throw std::logic_error("neither whole nor as laid down"); }

    void driveSave(const QString& file, const std::function<void()>& prepare,
                   const std::function<void()>& work)
    {
        QFETCH(int, kind);
        const QString folder = m_host.path() + "/ui";
        QFile::remove(m_host.libraryFile());
        QFile::remove(m_host.modificationsFile());
        SavePromise promise(folder, file, {}, m_report);
        Operation operation;
        operation.folder = folder;
        operation.prepare = [&] {
            QFile::remove(file);
            prepare();
            zvtest::runEventLoop();
            QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
        };
        operation.run = [&] {
            work();
            zvtest::runEventLoop();
        };
        operation.problem = [&](const Injected& fault) {
            return promise.problem(fault, m_isSaved);
        };
        operation.prepare();
        promise.setBefore();
        operation.run();
        promise.setAfter();
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

    /// \p isWhole tells whether all was read, or throws if what was read can't be.
    void driveLoad(const std::function<void()>& work, const std::function<bool()>& isWhole)
    {
        QFETCH(int, kind);
        bool hasThrown = false;
        Operation operation;
        operation.folder = m_host.path() + "/ui";
        operation.prepare = [] {};
        operation.run = [&] {
            hasThrown = false;
            try {
                work();
            } catch (const zvutil::exception&) {
                hasThrown = true;
            }
            zvtest::runEventLoop();
        };
        const bool mustSucceed = zvtest::faultKind(kind).isHarmless;
        operation.problem = [&](const Injected& fault) {
            try {
                if ((hasThrown || !isWhole()) && (mustSucceed || fault.call.isEmpty()))
                    return QString("not all was read");
            } catch (const std::logic_error& error) {
                return QString(error.what());
            }
            return QString();
        };
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

    const zvtest::StyleHost m_host;
    SavePromise::Report m_report = SavePromise::Report::None;
    bool m_isSaved = false;
};

QTEST_MAIN(tst_faults_styles)
#include "tst_faults_styles.moc"
