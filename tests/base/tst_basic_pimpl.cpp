#include <zvutil/basic_pimpl.h>

#include <QTest>

#include <memory>
#include <type_traits>
#include <utility>

using zvutil::basic_pimpl;

namespace {

/// An implementation that counts how many of its kind are alive.
struct Counted
{
    explicit Counted(int v)
        : value(v)
    {
        ++alive;
    }
    Counted(const Counted& other)
        : value(other.value)
    {
        ++alive;
    }
    Counted& operator=(const Counted&) = delete;
    ~Counted() { --alive; }

    int value;
    static inline int alive = 0;
};

using Holder = basic_pimpl<Counted>;

Holder makeHolder(int value)
{
    return Holder(std::make_unique<Counted>(value));
}

/// A value class on top, with the deep copy that all handles have.
class Handle
{
public:
    explicit Handle(int value)
        : m_impl(std::make_unique<Counted>(value))
    {
    }
    Handle(const Handle& other)
        : m_impl(std::make_unique<Counted>(other.m_impl.impl()))
    {
    }
    Handle(Handle&&) noexcept = default;
    Handle& operator=(Handle&&) noexcept = default;
    Handle& operator=(const Handle&) = delete;
    ~Handle() = default;

    int value() const { return m_impl.impl().value; }
    void setValue(int value) { m_impl.impl().value = value; }

private:
    Holder m_impl;
};

/// Looks, while it is destroyed, at what its holder holds by then.
struct Witness
{
    ~Witness()
    {
        if (holder)
            *seen = holder->impl().number;
    }

    int number = 0;
    const basic_pimpl<Witness>* holder = nullptr;
    int* seen = nullptr;
};

struct Throwing
{
    Throwing() { throw 1; }
};

static_assert(std::is_nothrow_move_constructible_v<Holder>);
static_assert(std::is_nothrow_move_assignable_v<Holder>);
static_assert(!std::is_copy_constructible_v<Holder>);
static_assert(!std::is_copy_assignable_v<Holder>);
static_assert(!std::is_default_constructible_v<Holder>);
static_assert(std::has_virtual_destructor_v<Holder>);
static_assert(sizeof(Holder) == 2 * sizeof(void*));

} // namespace

class tst_basic_pimpl : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QCOMPARE(Counted::alive, 0); }
    void cleanup() { QCOMPARE(Counted::alive, 0); }

    void constructionTakesTheImplementationOver()
    {
        auto implementation = std::make_unique<Counted>(7);
        const Counted* address = implementation.get();
        const Holder holder(std::move(implementation));
        QVERIFY(!implementation);
        QCOMPARE(&holder.impl(), address);
        QCOMPARE(holder.impl().value, 7);
    }

    void destructionDeletesTheImplementation()
    {
        {
            const Holder holder = makeHolder(1);
            QCOMPARE(Counted::alive, 1);
        }
        QCOMPARE(Counted::alive, 0);
    }

    void deletingThroughTheBaseDeletesTheImplementation()
    {
        struct Derived : Holder
        {
            using Holder::Holder;
        };
        std::unique_ptr<Holder> base = std::make_unique<Derived>(std::make_unique<Counted>(1));
        QCOMPARE(Counted::alive, 1);
        base.reset();
        QCOMPARE(Counted::alive, 0);
    }

    void throwingImplementationLeaksNothing()
    {
        QVERIFY_EXCEPTION_THROWN(basic_pimpl<Throwing>(std::make_unique<Throwing>()), int);
    }

    void accessIsToTheObjectItself()
    {
        Holder holder = makeHolder(1);
        holder.impl().value = 2;
        QCOMPARE(std::as_const(holder).impl().value, 2);
    }

    void moveConstructionShiftsThePointer()
    {
        Holder source = makeHolder(3);
        const Counted* address = &source.impl();
        const Holder target(std::move(source));
        QCOMPARE(&target.impl(), address);
        QCOMPARE(Counted::alive, 1);
    }

    void secondMoveHandsOnNull()
    {
        Holder source = makeHolder(3);
        const Holder first(std::move(source));
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move): that is the test
        Holder second(std::move(source));
        Holder third = makeHolder(4);
        third = std::move(second);
        QCOMPARE(Counted::alive, 1);
        QCOMPARE(first.impl().value, 3);
    }

    void moveAssignmentDestroysWhatWasHeld()
    {
        Holder source = makeHolder(1);
        Holder target = makeHolder(2);
        target = std::move(source);
        QCOMPARE(Counted::alive, 1);
        QCOMPARE(target.impl().value, 1);
    }

    void moveAssignmentTakesOverBeforeItDestroys()
    {
        int seen = -1;
        basic_pimpl<Witness> source(std::make_unique<Witness>());
        source.impl().number = 1;
        basic_pimpl<Witness> target(std::make_unique<Witness>());
        target.impl().number = 2;
        target.impl().holder = &target;
        target.impl().seen = &seen;
        target = std::move(source);
        QCOMPARE(seen, 1);
    }

    void moveAssignmentToAMovedFromObjectRevivesIt()
    {
        Holder target = makeHolder(1);
        const Holder taken(std::move(target));
        target = makeHolder(2);
        QCOMPARE(target.impl().value, 2);
        QCOMPARE(taken.impl().value, 1);
    }

    void selfMoveAssignmentDoesNothing()
    {
        Holder holder = makeHolder(5);
        Holder& same = holder;
        holder = std::move(same);
        QCOMPARE(holder.impl().value, 5);
    }

    void copyOfAHandleIsUnaffectedByItsSource()
    {
        Handle source(1);
        const Handle copy(source);
        source.setValue(2);
        QCOMPARE(copy.value(), 1);
        QCOMPARE(Counted::alive, 2);
    }

    void movedFromHandleCanBeDestroyedAndAssigned()
    {
        Handle source(1);
        const Handle target(std::move(source));
        source = Handle(3); // NOLINT(bugprone-use-after-move): that is the test
        QCOMPARE(source.value(), 3);
        QCOMPARE(target.value(), 1);
    }
};

QTEST_APPLESS_MAIN(tst_basic_pimpl)
#include "tst_basic_pimpl.moc"
