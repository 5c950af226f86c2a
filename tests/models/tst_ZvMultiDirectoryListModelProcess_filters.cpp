// The types and filters of a scan.

#include "Scan.h"

#include "support/FileTree.h"
#include "support/Process.h"
#include "support/WalkOracle.h"

#include <zv_logging/host.h>

#include <QScopeGuard>
#include <QTest>

#include <clocale>
#include <locale>
#include <stdexcept>
#include <string>

using zvtest::FileTree;
using zvtest::named;
using zvtest::Scan;

class tst_ZvMultiDirectoryListModelProcess_filters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void extensions_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("types");
        QTest::addColumn<bool>("isListed");
        QTest::newRow("equal") << "a.txt" << QStringList{".txt"} << true;
        QTest::newRow("case of the name") << "a.TxT" << QStringList{".txt"} << true;
        QTest::newRow("case of the type") << "a.txt" << QStringList{".Txt"} << true;
        QTest::newRow("second type") << "a.txt" << QStringList{".bin", ".txt"} << true;
        QTest::newRow("no such type") << "a.txt" << QStringList{".bin"} << false;
        QTest::newRow("no dot in the type") << "a.txt" << QStringList{"txt"} << false;
        QTest::newRow("wildcard") << "a.txt" << QStringList{"*.txt", ".*", ".t?t"} << false;
        QTest::newRow("beginning") << "a.txt" << QStringList{".tx", ".txtx"} << false;
        QTest::newRow("last of two") << "a.tar.gz" << QStringList{".gz"} << true;
        QTest::newRow("both of two") << "a.tar.gz" << QStringList{".tar.gz", ".tar"} << false;
        QTest::newRow("none") << "a" << QStringList{".txt"} << false;
        QTest::newRow("none, and the empty type") << "a" << QStringList{""} << true;
        QTest::newRow("a dot at the start begins none")
            << ".profile" << QStringList{".profile"} << false;
        QTest::newRow("and the empty type") << ".profile" << QStringList{""} << true;
        QTest::newRow("dots at the start") << "..txt" << QStringList{".txt"} << true;
        QTest::newRow("no types") << "a.txt" << QStringList{} << true;
        QTest::newRow("not ASCII") << "a.€𝄞" << QStringList{".€𝄞"} << true;
        QTest::newRow("NUL in the type")
            << "a.txt" << QStringList{QString(".txt") + QChar(u'\0')} << false;
#if defined(Q_OS_UNIX)
        QTest::newRow("dot at the end") << "a." << QStringList{"."} << true;
        QTest::newRow("alternate stream") << "a.gz:b.txt" << QStringList{".gz"} << true;
        QTest::newRow("what looks like a drive") << "a:b.txt" << QStringList{".txt"} << false;
        QTest::newRow("backslash") << "a.bin\\b" << QStringList{".bin"} << false;
        QTest::newRow("behind a backslash") << "a\\b.txt" << QStringList{".txt"} << true;
#endif
    }

    void extensions()
    {
        QFETCH(QString, name);
        QFETCH(QStringList, types);
        QFETCH(bool, isListed);
        const FileTree tree({name});
        Scan scan;
        scan.process.setAllowedFileTypes(types);
        scan.add(tree.path());
        QCOMPARE(scan.rows.size(), isListed ? 1 : 0);
    }

    void typesActOnWhatIsYetToBeFound()
    {
        const FileTree tree({"a.txt", "b.bin", "c.txt", "d.bin", "e.txt", "f.bin"});
        const QStringList text{".txt"};
        Scan scan;
        scan.process.setAllowedFileTypes(text);
        scan.add(tree.path());
        const QStringList texts = zvtest::expectedRows({tree.path()}, text);
        QCOMPARE(scan.rows, texts);
        scan.process.setAllowedFileTypes({});
        QCOMPARE(scan.rows, texts);
        scan.process.reloadPaths();
        const QStringList all = zvtest::expectedRows({tree.path()});
        QCOMPARE(scan.rows, all);
        scan.process.setAllowedFileTypes(text);
        QCOMPARE(scan.rows, all);
        scan.process.reloadPaths();
        QCOMPARE(scan.rows, texts);
    }

    void filters_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("isListed");
        QTest::newRow("empty") << "d/abc.txt"
                               << "" << true;
        QTest::newRow("inside") << "d/abc.txt"
                                << "b" << true;
        QTest::newRow("start") << "d/abc.txt"
                               << "abc" << true;
        QTest::newRow("end") << "d/abc.txt"
                             << "txt" << true;
        QTest::newRow("all") << "d/abc.txt"
                             << "abc.txt" << true;
        QTest::newRow("more than all") << "d/abc.txt"
                                       << "abc.txtx" << false;
        QTest::newRow("case of the name") << "d/ABC.txt"
                                          << "abc" << true;
        QTest::newRow("case of the text") << "d/abc.txt"
                                          << "ABC" << true;
        QTest::newRow("not in it") << "d/abc.txt"
                                   << "x.t" << false;
        QTest::newRow("directory") << "dir/abc.txt"
                                   << "dir" << false;
        QTest::newRow("separator") << "d/abc.txt"
                                   << "/abc" << false;
        QTest::newRow("backslash") << "d/abc.txt"
                                   << "\\abc" << false;
        QTest::newRow("no wildcards") << "d/abc.txt"
                                      << "a*c" << false;
        QTest::newRow("blank") << "d/a c.txt"
                               << " " << true;
        QTest::newRow("not ASCII") << "d/x€𝄞x"
                                   << "€𝄞" << true;
        QTest::newRow("not ASCII, in upper case, in the locale \"C\"") << "d/ä.txt"
                                                                       << "Ä" << false;
        QTest::newRow("NUL") << "d/abc.txt" << QString(QChar(u'\0')) << false;
        QTest::newRow("very long") << "d/abc.txt" << QString(1'000'000, QLatin1Char('a')) << false;
#if defined(Q_OS_UNIX)
        QTest::newRow("before a backslash in the name") << "d/ab\\c"
                                                        << "ab" << false;
        QTest::newRow("behind a backslash in the name") << "d/ab\\c"
                                                        << "c" << true;
#endif
    }

    void filters()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QFETCH(bool, isListed);
        const FileTree tree({name});
        Scan scan;
        // The directory that the path is cut back to is none of this type.
        scan.process.setFilterFixedString(text);
        scan.add(tree.path());
        QCOMPARE(scan.rows.contains(QDir::toNativeSeparators(tree.path(name))), isListed);
    }

    void upperCaseIsThatOfTheGlobalLocale()
    {
        std::locale locale;
        try {
            locale = std::locale("C.UTF-8");
        } catch (const std::runtime_error&) {
            QSKIP("There is no such locale");
        }
        const FileTree tree({"ä.é"});
        const std::locale before = std::locale::global(locale);
        Scan scan;
        std::locale::global(before);
        scan.process.setAllowedFileTypes({".É"});
        scan.add(tree.path());
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("Ä");
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("A");
        QCOMPARE(scan.rows.size(), 0);
        // What was global when it was made counts.
        Scan plain;
        plain.add(tree.path());
        plain.process.setFilterFixedString("Ä");
        QCOMPARE(plain.rows.size(), 0);
    }

    void localeOfTheCLibraryDoesNotFold()
    {
        const FileTree tree({"\u00E4.\u00E9"});
        const std::string before = std::setlocale(LC_ALL, nullptr);
        const auto back = qScopeGuard([&before] { std::setlocale(LC_ALL, before.c_str()); });
        // By itself it knows the letters beyond ASCII, on Windows at least.
        std::setlocale(LC_ALL, "");
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("\u00E4");
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("\u00C4");
        QCOMPARE(scan.rows.size(), 0);
    }

    void newFilterAsksNoDisk()
    {
        const FileTree tree(named("abc"));
        Scan scan;
        scan.add(tree.path());
        const QStringList rows = scan.rows;
        for (const QString& name : named(QString("abc")))
            tree.remove(name);
        scan.process.setFilterFixedString("T");
        QCOMPARE(scan.rows, rows);
        scan.process.reloadPaths();
        QCOMPARE(scan.rows, QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_ZvMultiDirectoryListModelProcess_filters)
#include "tst_ZvMultiDirectoryListModelProcess_filters.moc"
