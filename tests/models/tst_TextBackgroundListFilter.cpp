#include "support/FilterResult.h"
#include "support/Warnings.h"

#include "impl/models/TextBackgroundListFilter.h"

#include <QMetaMethod>
#include <QRegExp>
#include <QStandardItemModel>
#include <QStringListModel>
#include <QTest>

#include <memory>
#include <type_traits>

using zvtest::FilterResult;

class tst_TextBackgroundListFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    }
    void cleanup() { qInstallMessageHandler(nullptr); }

    void shape()
    {
        static_assert(std::is_base_of_v<AbstractBackgroundListFilter, TextBackgroundListFilter>);
        const QMetaObject& meta = TextBackgroundListFilter::staticMetaObject;
        QCOMPARE(meta.superClass(), &AbstractBackgroundListFilter::staticMetaObject);
        QCOMPARE(meta.methodCount(), meta.methodOffset());
        QObject parent;
        QCOMPARE(FilterResult(*new TextBackgroundListFilter(&parent)).timer().interval(), 50);
        QCOMPARE(FilterResult(*new TextBackgroundListFilter(9, &parent)).timer().interval(), 9);
        QCOMPARE(parent.children().size(), 2);
    }

    void matches_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("row");
        QTest::addColumn<bool>("isAccepted");
        QTest::newRow("empty") << ""
                               << "abc" << true;
        QTest::newRow("empty in empty") << ""
                                        << "" << true;
        QTest::newRow("all") << "abc"
                             << "abc" << true;
        QTest::newRow("start") << "ab"
                               << "abc" << true;
        QTest::newRow("middle") << "b"
                                << "abc" << true;
        QTest::newRow("end") << "bc"
                             << "abc" << true;
        QTest::newRow("not there") << "ac"
                                   << "abc" << false;
        QTest::newRow("too long") << "abcd"
                                  << "abc" << false;
        QTest::newRow("case") << "B"
                              << "abc" << false;
        QTest::newRow("in empty") << "a"
                                  << "" << false;
        QTest::newRow("line feed") << "b"
                                   << "a\nb\nc" << true;
        QTest::newRow("asterisk") << "a*c"
                                  << "xabcx" << true;
        QTest::newRow("asterisk for nothing") << "a*b"
                                              << "ab" << true;
        QTest::newRow("asterisk over a line feed") << "a*c"
                                                   << "a\nc" << true;
        QTest::newRow("asterisk, not there") << "c*a"
                                             << "abc" << false;
        QTest::newRow("question mark") << "a?c"
                                       << "abc" << true;
        QTest::newRow("question mark for nothing") << "a?b"
                                                   << "ab" << false;
        QTest::newRow("question marks at the end") << "b??"
                                                   << "abc" << false;
        QTest::newRow("set") << "a[xb]c"
                             << "abc" << true;
        QTest::newRow("set, not in it") << "a[xy]c"
                                        << "abc" << false;
        QTest::newRow("range") << "[0-9]"
                               << "a7" << true;
        QTest::newRow("other set") << "a[^b]c"
                                   << "abc" << false;
        QTest::newRow("set that isn't closed") << "[a"
                                               << "[a" << false;
        QTest::newRow("bracket alone") << "]"
                                       << "]" << false;
        // A backslash that stands before an ordinary character is doubled.
        QTest::newRow("backslash") << "a\\b"
                                   << "a\\b" << false;
        QTest::newRow("backslash, doubled in the row") << "a\\b"
                                                       << "a\\\\b" << true;
        QTest::newRow("backslash at the end") << "a\\"
                                              << "a\\b" << false;
        QTest::newRow("backslash at the end, and an asterisk there") << "a\\"
                                                                     << "a\\*" << true;
        QTest::newRow("characters of expressions") << "(a+)."
                                                   << "x(a+).x" << true;
        QTest::newRow("characters of expressions mean nothing") << "a.c"
                                                                << "abc" << false;
        QTest::newRow("dollar and circumflex") << "^a$"
                                               << "a" << false;
        QTest::newRow("braces and bar") << "{1}|"
                                        << "a{1}|" << true;
        QTest::newRow("not ASCII") << "€𝄞"
                                   << "ä€𝄞ä" << true;
        QTest::newRow("half of a pair") << QString(QChar(0xD834)) << "𝄞" << true;
    }

    void matches()
    {
        QFETCH(QString, text);
        QFETCH(QString, row);
        QFETCH(bool, isAccepted);
        // What it is defined by.
        const QRegExp pattern(u'*' + text + u'*', Qt::CaseSensitive, QRegExp::Wildcard);
        QCOMPARE(pattern.exactMatch(row), isAccepted);
        QStringListModel source({row});
        TextBackgroundListFilter filter(1, nullptr);
        const FilterResult result(filter);
        filter.setSourceModel(&source);
        QVERIFY(filter.acceptsRow(0));
        filter.setSearchString(text);
        QVERIFY(result.settles());
        QCOMPARE(!result.rows.isEmpty(), isAccepted);
        // And back to a text of the other kind.
        filter.setSearchString("*");
        filter.setSearchString("no such text");
        QVERIFY(result.settles());
        QVERIFY(result.rows.isEmpty());
    }

    void acceptsAllBeforeTheFirstText()
    {
        QStringListModel source({"a", QString(), "c"});
        TextBackgroundListFilter filter(1, nullptr);
        const FilterResult result(filter);
        filter.setSourceModel(&source);
        QVERIFY(result.settles());
        QCOMPARE(result.rows, (QList<int>{0, 1, 2}));
        QVERIFY(!filter.criteriaPending());
    }

    void looksAtTheTextOfTheFirstColumn()
    {
        QStandardItemModel source(3, 2);
        source.setData(source.index(0, 1), "a");
        source.setData(source.index(1, 0), "a");
        source.setData(source.index(2, 0), "a", Qt::ToolTipRole);
        TextBackgroundListFilter filter(1, nullptr);
        const FilterResult result(filter);
        filter.setSourceModel(&source);
        filter.setSearchString("a");
        QVERIFY(result.settles());
        QCOMPARE(result.rows, QList<int>{1});
        // A number is its text.
        source.setData(source.index(0, 0), 17);
        filter.setSearchString("7");
        QVERIFY(result.settles());
        QCOMPARE(result.rows, QList<int>{0});
    }

    void ofTwoTextsTheSecondCounts()
    {
        QStringListModel source({"a", "b"});
        TextBackgroundListFilter filter(60'000, nullptr);
        FilterResult result(filter);
        filter.setSourceModel(&source);
        filter.setSearchString("a");
        filter.setSearchString("b");
        result.timer().setInterval(1);
        QVERIFY(result.settles());
        QCOMPARE(result.rows, QList<int>{1});
    }

    void textsDuringAPassAreTakenOverTogether()
    {
        QStringList rows;
        for (int i = 0; i < 100; ++i)
            rows.append(QString::number(i));
        QStringListModel source(rows);
        TextBackgroundListFilter filter(1, nullptr);
        const FilterResult result(filter);
        bool pending = false;
        QMetaObject::invokeMethod(
            &filter,
            [&] {
                for (const char* text : {"1", "2", "33"})
                    filter.setSearchString(QLatin1String(text));
                pending = filter.criteriaPending();
            },
            Qt::QueuedConnection);
        filter.setSourceModel(&source);
        QVERIFY(pending);
        QVERIFY(result.settles());
        QCOMPARE(result.resets, 2);
        QCOMPARE(result.rows, QList<int>{33});
    }

    void linesOfTheLog()
    {
        TextBackgroundListFilter filter(1, nullptr);
        const QStringList lines = zvtest::warningsOf([&filter] {
            filter.setSearchString("a***b");
            filter.setSourceModel(nullptr);
        });
        QCOMPARE(
            lines,
            (QStringList{"TBLF setSearchString:  \"a***b\"", "TBLF searchStarted:  \"*a***b*\"",
                         "TBLF searchStarted:  \"*a***b*\""}));
    }

    void veryLongTexts_data()
    {
        QTest::addColumn<QString>("text");
        const int length = 100'000;
        const auto repeated = [](const char* text) {
            return QString::fromLatin1(text).repeated(length / int(qstrlen(text)));
        };
        QTest::newRow("plain") << repeated("a");
        QTest::newRow("asterisks") << repeated("*");
        QTest::newRow("question marks") << repeated("?");
        QTest::newRow("asterisks and letters") << repeated("*a");
        QTest::newRow("asterisks and question marks") << repeated("*?");
        QTest::newRow("a set") << u'[' + repeated("abcdefgh") + u']';
        QTest::newRow("sets") << repeated("[a]");
        QTest::newRow("sets of asterisks") << repeated("[**]");
        QTest::newRow("a set that isn't closed") << u'[' + repeated("a");
        QTest::newRow("brackets") << repeated("[");
        QTest::newRow("closing brackets") << repeated("]");
        QTest::newRow("backslashes") << repeated("\\");
        QTest::newRow("a backslash and asterisks") << u'\\' + repeated("*");
        QTest::newRow("paths") << repeated("C:\\dir\\file.txt\n");
        QTest::newRow("a set and asterisks") << "[a]" + repeated("*");
    }

    void veryLongTexts()
    {
        QFETCH(QString, text);
        QStringList rows;
        for (int i = 0; i < 200; ++i)
            rows.append(QString(i, QLatin1Char('a')));
        QStringListModel source(rows);
        TextBackgroundListFilter filter(1, nullptr);
        const FilterResult result(filter);
        filter.setSourceModel(&source);
        filter.setSearchString(text);
        QVERIFY(result.settles());
        const bool matchesAll = text.count(QLatin1Char('*')) == text.size();
        const bool isSet = text.startsWith("[a") && text.count(u'[') == 1 && text.contains(u']');
        // The empty row has no character for a set.
        QCOMPARE(result.rows.size(), matchesAll ? 200 : isSet ? 199 : 0);
    }
};

QTEST_GUILESS_MAIN(tst_TextBackgroundListFilter)
#include "tst_TextBackgroundListFilter.moc"
