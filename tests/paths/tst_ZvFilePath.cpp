#include "FilePathTexts.h"

#include <zvutil/ZvFilePath.h>

#include "support/Threads.h"

#include <QTest>

#include <string_view>
#include <type_traits>
#include <utility>

using zvtest::path;
using zvtest::text;
using zvtest::utf8;
using zvutil::StandardPath;
using zvutil::ZvFilePath;
using namespace std::string_view_literals;

namespace {

template <typename Left, typename Right = Left, typename = void>
constexpr bool hasOtherOrder = false;

template <typename Left, typename Right>
constexpr bool hasOtherOrder<Left, Right,
                             std::void_t<decltype(std::declval<Left>() > std::declval<Right>())>> =
    true;

static_assert(hasOtherOrder<int> && !hasOtherOrder<ZvFilePath>);
static_assert(sizeof(ZvFilePath) == 2 * sizeof(void*));
static_assert(!std::is_polymorphic_v<ZvFilePath>);
static_assert(std::is_nothrow_move_constructible_v<ZvFilePath>);
static_assert(std::is_nothrow_move_assignable_v<ZvFilePath>);
static_assert(!std::is_constructible_v<ZvFilePath, QString>);
static_assert(int(StandardPath::AppData) == 0 && int(StandardPath::Documents) == 1
              && int(StandardPath::CommonAppData) == 2);

} // namespace

class tst_ZvFilePath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void copyIsDeep()
    {
        ZvFilePath source(L"a");
        const ZvFilePath copy(source);
        source /= ZvFilePath(L"b");
        QCOMPARE(text(copy), utf8("a"));
    }

    void copyAssignment()
    {
        ZvFilePath target(L"a");
        const ZvFilePath source(L"b\0c"sv);
        target = source;
        QCOMPARE(target.size(), std::size_t(3));
        QCOMPARE(text(source).size(), 3);
        const ZvFilePath& same = target;
        target = same;
        QCOMPARE(target.size(), std::size_t(3));
    }

    void movedFromPathCanBeAssignedEitherWay()
    {
        ZvFilePath first(L"a");
        ZvFilePath second(std::move(first));
        const ZvFilePath copied(L"c");
        first = copied; // NOLINT(bugprone-use-after-move): that is the test
        QCOMPARE(text(first), utf8("c"));
        ZvFilePath third(std::move(second));
        second = std::move(first);
        QCOMPARE(text(second), utf8("c"));
        QCOMPARE(text(third), utf8("a"));
    }

    void selfMoveAssignmentDoesNothing()
    {
        ZvFilePath p(L"a");
        ZvFilePath& same = p;
        p = std::move(same);
        QCOMPARE(text(p), utf8("a"));
    }

    void compares_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<int>("order");
        const auto row = [](const char* name, const char* left, const char* right, int order) {
            QTest::newRow(name) << utf8(left) << utf8(right) << order;
        };
        row("empty", "", "", 0);
        row("empty and name", "", "a", -1);
        row("same", "a\\b", "a\\b", 0);
        row("either separator", "a/b", "a\\b", 0);
        row("run of separators", "a\\\\b", "a\\b", 0);
        row("run of mixed separators", "a\\/\\b", "a/b", 0);
        row("runs of different length before different names", "a\\\\c", "a\\b", 1);
        row("run against a name", "a\\\\b", "a\\bb", -1);
        row("trailing separator", "a", "a\\", -1);
        row("trailing runs", "a\\", "a\\\\/", 0);
        row("case", "a\\B", "a\\b", -1);
        row("case first", "A", "a", -1);
        row("nothing is resolved", "a\\.\\b", "a\\b", -1);
        row("separator is less than anything", "a\\b", "a b", -1);
        row("separator is less than what sorts before it", "a\\b", "a!b", -1);
        row("prefix", "ab", "abc", -1);
        row("units as numbers", "a\xEF\xBF\xBF", "az", 1);
        row("units above ASCII", "z", "ä", -1);
        row("units of two bytes", "ä", "€", -1);
        row("units of two bytes by the higher one", "\xC7\xBF", "\xC8\x80", -1);
        row("root names by their units", "\\\\z", "\\\\ä", -1);
        row("root names by units of two bytes", "\\\\ä", "\\\\€", -1);
        row("drives count case", "c:", "C:", 1);
        row("drives by letter", "C:\\z", "D:\\a", -1);
        row("root name separators count", "\\\\srv", "//srv", 1);
        row("root name separators count before all", "//srv\\z", "\\\\srv\\a", -1);
        row("shorter server", "\\\\srv\\z", "\\\\srvx\\a", -1);
        row("no root name is less", "z", "C:a", -1);
        row("root directory is greater", "C:z", "C:\\a", -1);
        row("root directory is greater without root name", "z", "\\a", -1);
        row("root directories of any length", "C:\\\\a", "C:/a", 0);
        row("root directory alone", "\\", "//", 0);
        row("device prefixes", "\\\\?\\a", "\\\\.\\a", 1);
        row("device prefix and two separators", "\\??\\\\a", "\\??\\a", -1);
        row("three separators are a root directory", "\\\\\\a", "\\a", 0);
        row("four separators are a root directory", "\\\\\\\\a", "\\a", 0);
        row("no digit is a drive", "1:\\a", "1:\\\\a", 0);
        row("long and equal", "C:\\Users\\me\\Documents\\project\\first\\plan.testplan",
            "C:/Users/me//Documents/project/first/plan.testplan", 0);
        row("long, different at the end", "C:\\Users\\me\\Documents\\project\\first\\plan.testplaa",
            "C:\\Users\\me\\Documents\\project\\first\\plan.testplan", -1);
    }

    void compares()
    {
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(int, order);
        const ZvFilePath l = path(left);
        const ZvFilePath r = path(right);
        QCOMPARE(l == r, order == 0);
        QCOMPARE(r == l, order == 0);
        QCOMPARE(l != r, order != 0);
        QCOMPARE(l < r, order < 0);
        QCOMPARE(r<l, order> 0);
    }

    void metaTypeIsRegisteredUnderBothNames()
    {
        const int id = qMetaTypeId<ZvFilePath>();
        QCOMPARE(QMetaType::type("zvutil::ZvFilePath"), id);
        QCOMPARE(QMetaType::type("ZvFilePath"), id);
        QCOMPARE(QMetaType::typeName(id), "zvutil::ZvFilePath");
        const QMetaType::TypeFlags flags = QMetaType::typeFlags(id);
        QCOMPARE(flags,
                 QMetaType::NeedsConstruction | QMetaType::NeedsDestruction
                     | QMetaType::WasDeclaredAsMetaType);
    }

    void metaTypeBuildsAnEmptyPathFromNothing()
    {
        const int id = QMetaType::type("ZvFilePath");
        auto* created = static_cast<ZvFilePath*>(QMetaType::create(id, nullptr));
        QVERIFY(created->isEmpty());
        QMetaType::destroy(id, created);
        const ZvFilePath source(L"a");
        created = static_cast<ZvFilePath*>(QMetaType::create(id, &source));
        QCOMPARE(text(*created), utf8("a"));
        QMetaType::destroy(id, created);
    }
};

QTEST_GUILESS_MAIN(tst_ZvFilePath)
#include "tst_ZvFilePath.moc"
