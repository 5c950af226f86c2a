#include <zvutil/experimental/unique_destroyable_ptr.h>

#include <QTest>

#include <type_traits>
#include <utility>

using zvutil::experimental::unique_destroyable_ptr;

namespace {

/// Counts who is destroyed in which way.
class Destroyable
{
public:
    explicit Destroyable(int v = 0)
        : value(v)
    {
    }
    Destroyable(const Destroyable&) = delete;
    Destroyable& operator=(const Destroyable&) = delete;
    virtual ~Destroyable() { ++deleted; }

    virtual void destroy()
    {
        ++destroyed;
        delete this;
    }

    int value;
    static inline int destroyed = 0;
    static inline int deleted = 0;
};

using Handle = unique_destroyable_ptr<Destroyable>;

/// Overrides destroy and never deletes, as an object does that lives elsewhere.
class Kept final : public Destroyable
{
public:
    void destroy() override
    {
        ++calls;
        if (holder)
            seen = holder->get();
    }

    int calls = 0;
    const Handle* holder = nullptr;
    const Destroyable* seen = nullptr;
};

struct Incomplete;

static_assert(sizeof(Handle) == sizeof(void*));
static_assert(sizeof(unique_destroyable_ptr<Incomplete>) == sizeof(void*));
static_assert(std::is_same_v<Handle, unique_destroyable_ptr<Destroyable, void>>);
static_assert(std::is_nothrow_move_constructible_v<Handle>);
static_assert(std::is_nothrow_move_assignable_v<Handle>);
static_assert(!std::is_copy_constructible_v<Handle>);
static_assert(!std::is_copy_assignable_v<Handle>);
static_assert(!std::is_convertible_v<Destroyable*, Handle>);

} // namespace

class tst_unique_destroyable_ptr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        Destroyable::destroyed = 0;
        Destroyable::deleted = 0;
    }

    void holdsNullAtFirst()
    {
        const Handle none;
        const Handle null = nullptr;
        QVERIFY(!none && !none.get());
        QVERIFY(!null && !null.get());
    }

    void nullDoesNothingWhenDestroyed()
    {
        {
            const Handle none;
            const Handle null(static_cast<Destroyable*>(nullptr));
        }
        QCOMPARE(Destroyable::destroyed, 0);
    }

    void givesAccess()
    {
        const Handle handle(new Destroyable(3));
        QVERIFY(handle);
        QCOMPARE(handle->value, 3);
        QCOMPARE((*handle).value, 3);
        QCOMPARE(handle.get(), &*handle);
    }

    void destructionCallsDestroyAndNothingElse()
    {
        {
            const Handle handle(new Destroyable);
        }
        QCOMPARE(Destroyable::destroyed, 1);
        QCOMPARE(Destroyable::deleted, 1);
        Kept object;
        {
            const Handle handle(&object);
        }
        QCOMPARE(object.calls, 1);
        QCOMPARE(Destroyable::deleted, 1);
    }

    void movingLeavesNull()
    {
        Handle source(new Destroyable(1));
        const Destroyable* const object = source.get();
        Handle target(std::move(source));
        QVERIFY(!source); // NOLINT(bugprone-use-after-move): that is the test
        QCOMPARE(target.get(), object);
        Handle third;
        third = std::move(target);
        QVERIFY(!target); // NOLINT(bugprone-use-after-move): that is the test
        QCOMPARE(third.get(), object);
        QCOMPARE(Destroyable::destroyed, 0);
    }

    void moveAssignmentDestroysWhatWasHeld()
    {
        Handle target(new Destroyable(1));
        target = Handle(new Destroyable(2));
        QCOMPARE(Destroyable::destroyed, 1);
        QCOMPARE(target->value, 2);
    }

    void selfMoveAssignmentDoesNothing()
    {
        Handle handle(new Destroyable(5));
        Handle& same = handle;
        handle = std::move(same);
        QCOMPARE(Destroyable::destroyed, 0);
        QCOMPARE(handle->value, 5);
    }

    void resetDestroysAndSetsNull()
    {
        Handle handle(new Destroyable);
        handle.reset();
        QVERIFY(!handle);
        QCOMPARE(Destroyable::destroyed, 1);
        handle.reset();
        QCOMPARE(Destroyable::destroyed, 1);
    }

    void resetTakesOverBeforeItDestroys()
    {
        Kept first;
        Kept second;
        Handle handle(&first);
        first.holder = &handle;
        handle.reset(&second);
        QCOMPARE(first.calls, 1);
        QCOMPARE(first.seen, static_cast<const Destroyable*>(&second));
        handle = nullptr;
        QCOMPARE(second.calls, 1);
    }
};

QTEST_APPLESS_MAIN(tst_unique_destroyable_ptr)
#include "tst_unique_destroyable_ptr.moc"
