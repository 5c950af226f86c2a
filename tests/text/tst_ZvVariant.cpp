#include <zvutil/ZvVariant.h>

#include <QString>
#include <QTest>
#include <QVariant>

#include <functional>
#include <string>
#include <type_traits>
#include <utility>

using libzvutil::ZvVariant;
using zvutil::ZvBasicString;
using namespace std::string_literals;

Q_DECLARE_METATYPE(std::function<ZvVariant()>)

namespace {

static_assert(sizeof(ZvVariant) == 2 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<ZvVariant>);
static_assert(std::is_nothrow_move_constructible_v<ZvVariant>);
// A move is assigned as a copy.
static_assert(!std::is_nothrow_move_assignable_v<ZvVariant>);

/// Knows of two types: that of the value and that of its `QVariant`.
void compareExactly(const QVariant& actual, const QVariant& expected)
{
    QCOMPARE(actual.userType(), expected.userType());
    QCOMPARE(actual, expected);
}

} // namespace

class tst_ZvVariant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction_data()
    {
        using Make = std::function<ZvVariant()>;
        QTest::addColumn<Make>("make");
        QTest::addColumn<QVariant>("expected");
        const auto row = [](const char* name, const Make& make, const QVariant& expected) {
            QTest::newRow(name) << make << expected;
        };
        const QVariant nothing;
        row(
            "nothing", [] { return ZvVariant(); }, nothing);
        row(
            "int", [] { return ZvVariant(1); }, QVariant(1));
        row(
            "zero", [] { return ZvVariant(0); }, QVariant(0));
        row(
            "least int", [] { return ZvVariant(-2147483647 - 1); }, QVariant(-2147483647 - 1));
        row(
            "double", [] { return ZvVariant(1.5); }, QVariant(1.5));
        row(
            "whole double", [] { return ZvVariant(1.0); }, QVariant(1.0));
        row(
            "pointer", [] { return ZvVariant("x"); }, QVariant("x"));
        row(
            "UTF-8", [] { return ZvVariant("\xC3\xA4\xF0\x9D\x84\x9E"); },
            QVariant(QString::fromUtf8("\xC3\xA4\xF0\x9D\x84\x9E")));
        row(
            "no UTF-8", [] { return ZvVariant("\xFF"); }, QVariant("\uFFFD"));
        row(
            "null pointer", [] { return ZvVariant(static_cast<const char*>(nullptr)); },
            QVariant(QString()));
        row(
            "standard string", [] { return ZvVariant("x"s); }, QVariant("x"));
        row(
            "standard string with a NUL", [] { return ZvVariant("x\0y"s); }, QVariant("x"));
        row(
            "encoded string", [] { return ZvVariant(ZvBasicString<char>("\xC3\xA4")); },
            QVariant("\u00E4"));
        row(
            "wide pointer", [] { return ZvVariant(L"x"); }, QVariant(true));
        row(
            "empty wide pointer", [] { return ZvVariant(L""); }, QVariant(true));
        row(
            "null wide pointer", [] { return ZvVariant(static_cast<const wchar_t*>(nullptr)); },
            QVariant(false));
        row(
            "wide string", [] { return ZvVariant(L"x"s); }, QVariant(true));
        row(
            "empty wide string", [] { return ZvVariant(std::wstring()); }, QVariant(true));
        row(
            "QVariant", [] { return ZvVariant(QVariant(QByteArray("x"))); },
            QVariant(QByteArray("x")));
        row(
            "invalid QVariant", [] { return ZvVariant(QVariant()); }, nothing);
        row(
            "null QVariant of a type", [] { return ZvVariant(QVariant(QVariant::Int)); },
            QVariant(QVariant::Int));
    }

    void construction()
    {
        QFETCH(std::function<ZvVariant()>, make);
        QFETCH(QVariant, expected);
        const ZvVariant value = make();
        compareExactly(value.data(), expected);
        QCOMPARE(value.data().isValid(), expected.isValid());
        QCOMPARE(value.data().isNull(), expected.isNull());

        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const ZvVariant copy(value);
        compareExactly(copy.data(), expected);
        QVERIFY(&copy.data() != &value.data());

        ZvVariant assigned(1.5);
        const QVariant* const place = &assigned.data();
        QVERIFY(&(assigned = value) == &assigned);
        compareExactly(assigned.data(), expected);
        QVERIFY(&(assigned = expected) == &assigned);
        compareExactly(assigned.data(), expected);
        QVERIFY(&assigned.data() == place);
    }

    void copiesShareNothing()
    {
        ZvVariant source("abc");
        const ZvVariant copy(source);
        source = QVariant(1);
        compareExactly(copy.data(), QVariant("abc"));
        compareExactly(source.data(), QVariant(1));
    }

    void assignmentToItself()
    {
        ZvVariant value("abc");
        const ZvVariant& self = value;
        value = self;
        compareExactly(value.data(), QVariant("abc"));
        value = value.data();
        compareExactly(value.data(), QVariant("abc"));
    }

    void moves()
    {
        ZvVariant source("abc");
        const QVariant* const place = &source.data();
        ZvVariant target(std::move(source));
        QVERIFY(&target.data() == place);
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        const ZvVariant empty(std::move(source));

        // Assigned as a copy: the source keeps its value.
        ZvVariant other;
        // NOLINTNEXTLINE(performance-move-const-arg)
        other = std::move(target);
        compareExactly(other.data(), QVariant("abc"));
        compareExactly(target.data(), other.data()); // NOLINT(bugprone-use-after-move)
    }
};

QTEST_APPLESS_MAIN(tst_ZvVariant)
#include "tst_ZvVariant.moc"
