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
using namespace zvtest::literals;

class tst_ZvMultiDirectoryListModelProcess_filters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void extensions_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QStringList>("types");
        QTest::addColumn<bool>("isListed");
        QTest::newRow("equal") << "a.txt" << QStringList{".txt"_q} << true;
        QTest::newRow("case of the name") << "a.TxT" << QStringList{".txt"_q} << true;
        QTest::newRow("case of the type") << "a.txt" << QStringList{".Txt"_q} << true;
        QTest::newRow("second type") << "a.txt" << QStringList{".bin"_q, ".txt"_q} << true;
        QTest::newRow("no such type") << "a.txt" << QStringList{".bin"_q} << false;
        QTest::newRow("no dot in the type") << "a.txt" << QStringList{"txt"_q} << false;
        QTest::newRow("wildcard") << "a.txt" << QStringList{"*.txt"_q, ".*"_q, ".t?t"_q} << false;
        QTest::newRow("beginning") << "a.txt" << QStringList{".tx"_q, ".txtx"_q} << false;
        QTest::newRow("last of two") << "a.tar.gz" << QStringList{".gz"_q} << true;
        QTest::newRow("both of two") << "a.tar.gz" << QStringList{".tar.gz"_q, ".tar"_q} << false;
        QTest::newRow("none") << "a" << QStringList{".txt"_q} << false;
        QTest::newRow("none, and the empty type") << "a" << QStringList{""_q} << true;
        QTest::newRow("a dot at the start begins none")
            << ".profile" << QStringList{".profile"_q} << false;
        QTest::newRow("and the empty type") << ".profile" << QStringList{""_q} << true;
        QTest::newRow("dots at the start") << "..txt" << QStringList{".txt"_q} << true;
        QTest::newRow("no types") << "a.txt" << QStringList{} << true;
        QTest::newRow("not ASCII") << "a.€𝄞"_q << QStringList{".€𝄞"_q} << true;
        QTest::newRow("NUL in the type")
            << "a.txt" << QStringList{".txt"_q + QChar(u'\0')} << false;
#if defined(Q_OS_UNIX)
        QTest::newRow("dot at the end") << "a." << QStringList{"."_q} << true;
        QTest::newRow("alternate stream") << "a.gz:b.txt" << QStringList{".gz"_q} << true;
        QTest::newRow("what looks like a drive") << "a:b.txt" << QStringList{".txt"_q} << false;
        QTest::newRow("backslash") << "a.bin\\b" << QStringList{".bin"_q} << false;
        QTest::newRow("behind a backslash") << "a\\b.txt" << QStringList{".txt"_q} << true;
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
        const FileTree tree({"a.txt"_q, "b.bin"_q, "c.txt"_q, "d.bin"_q, "e.txt"_q, "f.bin"_q});
        const QStringList text{".txt"_q};
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
        QTest::newRow("not ASCII") << "d/x€𝄞x"_q
                                   << "€𝄞"_q << true;
        QTest::newRow("not ASCII, in upper case, in the locale \"C\"") << "d/ä.txt"_q
                                                                       << "Ä"_q << false;
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
        const FileTree tree({"ä.é"_q});
        const std::locale before = std::locale::global(locale);
        Scan scan;
        std::locale::global(before);
        scan.process.setAllowedFileTypes({".É"_q});
        scan.add(tree.path());
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("Ä"_q);
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("A"_q);
        QCOMPARE(scan.rows.size(), 0);
        // What was global when it was made counts.
        Scan plain;
        plain.add(tree.path());
        plain.process.setFilterFixedString("Ä"_q);
        QCOMPARE(plain.rows.size(), 0);
    }

    void localeOfTheCLibraryDoesNotFold()
    {
        const FileTree tree({"\u00E4.\u00E9"_q});
        const std::string before = std::setlocale(LC_ALL, nullptr);
        const auto back = qScopeGuard([&before] { std::setlocale(LC_ALL, before.c_str()); });
        // By itself it knows the letters beyond ASCII, on Windows at least.
        std::setlocale(LC_ALL, "");
        Scan scan;
        scan.add(tree.path());
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("\u00E4"_q);
        QCOMPARE(scan.rows.size(), 1);
        scan.process.setFilterFixedString("\u00C4"_q);
        QCOMPARE(scan.rows.size(), 0);
    }

    void newFilterAsksNoDisk()
    {
        const FileTree tree(named("abc"_q));
        Scan scan;
        scan.add(tree.path());
        const QStringList rows = scan.rows;
        for (const QString& name : named("abc"_q))
            tree.remove(name);
        scan.process.setFilterFixedString("T"_q);
        QCOMPARE(scan.rows, rows);
        scan.process.reloadPaths();
        QCOMPARE(scan.rows, QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_ZvMultiDirectoryListModelProcess_filters)
#include "tst_ZvMultiDirectoryListModelProcess_filters.moc"
