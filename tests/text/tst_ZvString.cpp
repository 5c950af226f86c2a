#include <zvutil/ZvString.h>
#include <zvutil/ZvWString.h>

#include "support/StdString.h"
#include "support/Threads.h"

#include <QString>
#include <QTest>

#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

using libzvutil::ZvAbstractString;
using libzvutil::ZvString;
using namespace std::string_literals;

namespace {

using Folded =
    std::basic_string<char, zvutil::experimental::string::case_insensitive_char_traits<char>>;

static_assert(sizeof(ZvAbstractString) == 2 * sizeof(void*));
static_assert(sizeof(ZvString) == 2 * sizeof(void*));
static_assert(std::is_base_of_v<ZvAbstractString, ZvString>);
static_assert(std::has_virtual_destructor_v<ZvAbstractString>);
static_assert(!std::is_copy_constructible_v<ZvAbstractString>);
static_assert(!std::is_copy_assignable_v<ZvAbstractString>);
static_assert(!std::is_default_constructible_v<ZvAbstractString>);
static_assert(std::is_nothrow_move_constructible_v<ZvString>);
static_assert(std::is_nothrow_move_assignable_v<ZvString>);

/// All units, NULs included.
std::string units(const ZvString& text)
{
    return {text.c_str(), text.size()};
}

/// A text that holds "ab", a NUL and "cd".
ZvString withNul()
{
    ZvString text("ab");
    text += '\0';
    text += "cd";
    return text;
}

const QString astral = QString::fromUtf8("\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E");

} // namespace

Q_DECLARE_METATYPE(std::function<void(ZvString&)>)

class tst_ZvString : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction()
    {
        QCOMPARE(units(ZvString()), ""s);
        QCOMPARE(units(ZvString("")), ""s);
        QCOMPARE(units(ZvString("abc")), "abc"s);
        QCOMPARE(units(ZvString("ab\0c")), "ab"s);
        QCOMPARE(units(ZvString("\xFF\x80")), "\xFF\x80"s);
        const std::string longText(1'000'000, 'x');
        QCOMPARE(units(ZvString(longText.c_str())), longText);
    }

    void resize_data()
    {
        QTest::addColumn<quint64>("size");
        QTest::addColumn<std::string>("result");
        QTest::newRow("shorter") << quint64(2) << "ab"s;
        QTest::newRow("same") << quint64(3) << "abc"s;
        QTest::newRow("to nothing") << quint64(0) << ""s;
        QTest::newRow("longer") << quint64(5) << "abc\0\0"s;
        QTest::newRow("much longer") << quint64(100) << "abc"s + std::string(97, '\0');
    }

    void resize()
    {
        QFETCH(quint64, size);
        QFETCH(std::string, result);
        ZvString text("abc");
        ZvAbstractString& base = text;
        base.resize(size);
        QCOMPARE(quint64(base.size()), size);
        QCOMPARE(units(text), result);
    }

    void resizeBeyondAnyText()
    {
        ZvString text("abc");
        QVERIFY_EXCEPTION_THROWN(text.resize(std::numeric_limits<std::size_t>::max()),
                                 std::length_error);
        QCOMPARE(units(text), "abc"s);
        libzvutil::ZvWString wide(L"abc");
        QVERIFY_EXCEPTION_THROWN(wide.resize(std::numeric_limits<std::size_t>::max()),
                                 std::length_error);
        QCOMPARE(wide.size(), std::size_t(3));
    }

    void copyEndsAtTheFirstNul()
    {
        ZvString text("abc");
        text.resize(5);
        QCOMPARE(std::string(text.c_str()), "abc"s);
        const ZvString copy(text);
        QCOMPARE(units(copy), "abc"s);
        const ZvString source = withNul();
        QCOMPARE(units(ZvString(source)), "ab"s);
    }

    void copiesShareNothing()
    {
        ZvString source("abc");
        const ZvString copy(source);
        source += "d";
        QCOMPARE(units(copy), "abc"s);
        QVERIFY(copy.c_str() != source.c_str());
    }

    void copyAssignmentTakesTheWholeText()
    {
        const ZvString source = withNul();
        ZvString target("a text that is too long to lie in the string itself");
        const char* const place = target.c_str();
        QVERIFY(&(target = source) == &target);
        QCOMPARE(units(target), "ab\0cd"s);
        QVERIFY(target.c_str() == place);
        QVERIFY(target.c_str() != source.c_str());

        const ZvString& self = target;
        target = self;
        QCOMPARE(units(target), "ab\0cd"s);
    }

    void moves()
    {
        ZvString source = withNul();
        source += "a text that is too long to lie in the string itself";
        const std::string all = units(source);
        const char* const place = source.c_str();
        ZvString target(std::move(source));
        QVERIFY(target.c_str() == place);
        QCOMPARE(units(target), all);

        // A moved-from text can be moved on and be the target of a move.
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        ZvString empty(std::move(source));
        QVERIFY(&(empty = std::move(target)) == &empty);
        QVERIFY(empty.c_str() == place);
        ZvString& self = empty;
        empty = std::move(self);
        QVERIFY(empty.c_str() == place);
        QCOMPARE(units(empty), all);
    }

    void appending_data()
    {
        using Append = std::function<void(ZvString&)>;
        QTest::addColumn<Append>("append");
        QTest::addColumn<std::string>("result");
        const auto row = [](const char* name, const Append& append, const std::string& result) {
            QTest::newRow(name) << append << result;
        };
        row(
            "text", [](ZvString& s) { s += ZvString("def"); }, "abcdef"s);
        row(
            "text with a NUL", [](ZvString& s) { s += withNul(); }, "abcab"s);
        row(
            "itself", [](ZvString& s) { s += s; }, "abcabc"s);
        row(
            "pointer", [](ZvString& s) { s += "def"; }, "abcdef"s);
        row(
            "nothing", [](ZvString& s) { s += ""; }, "abc"s);
        row(
            "pointer into itself", [](ZvString& s) { s += s.c_str() + 1; }, "abcbc"s);
        row(
            "folded string", [](ZvString& s) { s += Folded("DEF"); }, "abcDEF"s);
        row(
            "folded string with a NUL", [](ZvString& s) { s += Folded("d\0e", 3); }, "abcd"s);
        row(
            "unit", [](ZvString& s) { s += 'd'; }, "abcd"s);
        row(
            "NUL", [](ZvString& s) { s += '\0'; }, "abc\0"s);
        row(
            "behind a NUL",
            [](ZvString& s) {
                s.resize(4);
                s += "d";
            },
            "abc\0d"s);
        row(
            "itself with a NUL",
            [](ZvString& s) {
                s.resize(4);
                s += s;
            },
            "abc\0abc"s);
        row(
            "Qt", [](ZvString& s) { s += astral; }, "abc\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E"s);
        row(
            "null of Qt", [](ZvString& s) { s += QString(); }, "abc"s);
        row(
            "Qt with a NUL", [](ZvString& s) { s += QString("d") + QChar(0) + "e"; }, "abcd"s);
        row(
            "unpaired surrogate of Qt", [](ZvString& s) { s += QString(QChar(0xD800)); },
            "abc"s + QString(QChar(0xD800)).toStdString());
        row(
            "several", [](ZvString& s) { ((s += "d") += 'e') += "f"; }, "abcdef"s);
    }

    void appending()
    {
        QFETCH(std::function<void(ZvString&)>, append);
        QFETCH(std::string, result);
        ZvString text("abc");
        append(text);
        QCOMPARE(units(text), result);
    }

    void appendingALongTextToItself()
    {
        const std::string part(1000, 'x');
        ZvString text(part.c_str());
        for (int i = 0; i < 5; ++i)
            text += text;
        QCOMPARE(units(text), std::string(32'000, 'x'));
    }

    void compare_data()
    {
        QTest::addColumn<std::string>("a");
        QTest::addColumn<std::string>("b");
        QTest::addColumn<int>("result");
        QTest::newRow("equal") << "abc"s
                               << "abc"s << 0;
        QTest::newRow("case doesn't count") << "abc"s
                                            << "ABC"s << 0;
        QTest::newRow("shorter") << "abc"s
                                 << "ABCD"s << -1;
        QTest::newRow("both empty") << ""s
                                    << ""s << 0;
        QTest::newRow("empty") << ""s
                               << "a"s << -1;
        QTest::newRow("differ before the length counts") << "b"s
                                                         << "abc"s << 1;
        QTest::newRow("far apart") << "a"s
                                   << "Z"s << -1;
        QTest::newRow("upper case is compared") << "a"s
                                                << "_"s << -1;
        QTest::newRow("bytes above 0x7F come first") << "\xFF"s
                                                     << "a"s << -1;
        QTest::newRow("no case beyond ASCII") << "\xC3\xA4"s
                                              << "\xC3\x84"s << 1;
    }

    void compare()
    {
        QFETCH(std::string, a);
        QFETCH(std::string, b);
        QFETCH(int, result);
        const ZvString first(a.c_str());
        const ZvString second(b.c_str());
        QCOMPARE(first.compare(second), result);
        QCOMPARE(second.compare(first), -result);
        QCOMPARE(first.compare(b.c_str()), result);
        QCOMPARE(second.compare(a.c_str()), -result);
        QCOMPARE(first.compare(first), 0);
    }

    void compareCountsNuls()
    {
        ZvString padded("abc");
        padded.resize(5);
        QCOMPARE(padded.compare("abc"), 1);
        QCOMPARE(padded.compare("abc\0\0"), 1);
        QCOMPARE(ZvString("abc").compare(padded), -1);
        QCOMPARE(padded.compare("ABD"), -1);
        ZvString same("ABC");
        same.resize(5);
        QCOMPARE(padded.compare(same), 0);
        same += 'x';
        QCOMPARE(padded.compare(same), -1);
    }

    void toQString()
    {
        QCOMPARE(ZvString("\xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E").toQString(), astral);
        QCOMPARE(withNul().toQString(), QString("ab"));
        QCOMPARE(ZvString().toQString(), QString());
        QCOMPARE(ZvString("a\xFF").toQString(), QString("a\uFFFD"));
    }

    void bytesComeBackFromQt()
    {
        const std::string bytes = "a\xC3\xA4 \xE2\x82\xAC \xF0\x9D\x84\x9E";
        ZvString text;
        text += ZvString(bytes.c_str()).toQString();
        QCOMPARE(units(text), bytes);
    }

    void diesThroughItsBase()
    {
        const std::unique_ptr<ZvAbstractString> base =
            std::make_unique<ZvString>("a text that is too long to lie in the string itself");
        QCOMPARE(base->size(), std::size_t(51));
    }
};

QTEST_APPLESS_MAIN(tst_ZvString)
#include "tst_ZvString.moc"
