#include <zvutil/ZvNamedIcon.h>

#include <QTest>

#include <type_traits>
#include <utility>

using libzvutil::ZvNamedIcon;
using libzvutil::ZvString;

namespace {

static_assert(sizeof(ZvNamedIcon) == 2 * sizeof(ZvString));
static_assert(!std::is_polymorphic_v<ZvNamedIcon>);
static_assert(std::is_nothrow_move_constructible_v<ZvNamedIcon>);
static_assert(std::is_nothrow_move_assignable_v<ZvNamedIcon>);

void compare(const ZvNamedIcon& icon, const char* name, const char* path)
{
    QCOMPARE(icon.name().toQString(), QString::fromUtf8(name));
    QCOMPARE(icon.path().toQString(), QString::fromUtf8(path));
}

} // namespace

class tst_ZvNamedIcon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction()
    {
        compare(ZvNamedIcon(), "", "");
        compare(ZvNamedIcon("a", ":/b"), "a", ":/b");
    }

    void setPathChangesThePathAlone()
    {
        ZvNamedIcon icon;
        icon.setPath("x");
        compare(icon, "", "x");
        icon = ZvNamedIcon("a", "b");
        icon.setPath(ZvString("c"));
        compare(icon, "a", "c");
        icon.setPath(QString("\u00E4/\u20AC"));
        compare(icon, "a", "\xC3\xA4/\xE2\x82\xAC");
        icon.setPath(QString());
        compare(icon, "a", "");
    }

    void copiesShareNothing()
    {
        ZvNamedIcon source("a", "b");
        const ZvNamedIcon copy(source);
        ZvNamedIcon assigned;
        assigned = source;
        source.setPath("c");
        compare(copy, "a", "b");
        compare(assigned, "a", "b");
        const ZvNamedIcon& self = assigned;
        assigned = self;
        compare(assigned, "a", "b");
    }

    void moves()
    {
        ZvNamedIcon source("a", "b");
        ZvNamedIcon target(std::move(source));
        compare(target, "a", "b");
        source = std::move(target); // NOLINT(bugprone-use-after-move): that is the test
        compare(source, "a", "b");
    }
};

QTEST_APPLESS_MAIN(tst_ZvNamedIcon)
#include "tst_ZvNamedIcon.moc"
