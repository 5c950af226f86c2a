#include "Receivers.h"

#include <zvutil/libzvutil/GenericTrigger.h>
#include <zvutil/signalling/basic_receiver.h>
#include <zvutil/stop_source.h>

#include <QMetaMethod>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

using zvtest::Receiver;
using zvtest::receiverOf;
using zvtest::Registration;
using zvutil::stop_source;
using zvutil::stop_token;
using zvutil::details::stop_source_impl;
using zvutil::libzvutil::GenericTrigger;
using zvutil::signalling::abstract_receiver;
using zvutil::signalling::basic_receiver;
using zvutil::signalling::parameterised_abstract_receiver;

namespace {

/// Tells when it is destroyed.
class Watched : public Receiver
{
public:
    explicit Watched(int& destroyed)
        : m_destroyed(destroyed)
    {
    }

    ~Watched() override { ++m_destroyed; }

    void receive() override { }

private:
    int& m_destroyed;
};

} // namespace

class tst_stop_source : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shapes()
    {
        static_assert(std::is_base_of_v<abstract_receiver, Receiver>);
        static_assert(std::is_base_of_v<Receiver, basic_receiver<std::function<void()>>>);
        static_assert(std::is_abstract_v<Receiver>);
        static_assert(std::has_virtual_destructor_v<abstract_receiver>);
        static_assert(sizeof(abstract_receiver) == sizeof(void*));
        static_assert(
            std::is_base_of_v<std::enable_shared_from_this<stop_source_impl>, stop_source_impl>);
        static_assert(std::is_copy_constructible_v<stop_token>);
        static_assert(std::is_nothrow_move_constructible_v<stop_token>);
        const stop_source_impl fresh;
        QVERIFY(fresh.flag && !*fresh.flag);
        QVERIFY(fresh.receivers.empty());
    }

    void receiverIsHandedItsArguments()
    {
        std::string told;
        const auto tell = [&told](int number, std::string text) {
            told = std::to_string(number) + text;
        };
        basic_receiver<decltype(tell), int, std::string> receiver(tell);
        parameterised_abstract_receiver<int, std::string>& base = receiver;
        base.receive(7, "x");
        QCOMPARE(told, std::string("7x"));
    }

    void onlyTheFirstStopCounts()
    {
        const stop_source source;
        const stop_token token = source.get_token();
        int calls = 0;
        const Registration registration = token.connect_receiver(receiverOf([&] {
            // The flag comes first.
            QVERIFY(token.stop_requested());
            ++calls;
        }));
        QVERIFY(!token.stop_requested());
        QVERIFY(!source.stop_requested());
        QVERIFY(source.request_stop());
        QVERIFY(token.stop_requested());
        QVERIFY(source.stop_requested());
        QCOMPARE(calls, 1);
        QVERIFY(!source.request_stop());
        QCOMPARE(calls, 1);
        QVERIFY(token.stop_requested());
    }

    void withoutAFlagThereIsNoStop()
    {
        stop_source_impl impl;
        impl.flag.reset();
        QVERIFY(!impl.request_stop());
        QVERIFY(!impl.stop_requested());
    }

    void stateThatNobodySharesCanStop()
    {
        stop_source_impl impl;
        int calls = 0;
        const Registration receiver = receiverOf([&] { ++calls; });
        impl.receivers.push_back(receiver);
        QVERIFY(impl.request_stop());
        QCOMPARE(calls, 1);
    }

    void copiesAreTheSameSource()
    {
        auto source = std::make_unique<stop_source>();
        const stop_source copy = *source;
        const stop_token token = source->get_token();
        source.reset();
        QVERIFY(copy.request_stop());
        QVERIFY(token.stop_requested());
    }

    void receiversRunInTheOrderOfTheirConnection()
    {
        const stop_source source;
        std::vector<int> order;
        std::vector<Registration> registrations;
        registrations.reserve(1'000);
        for (int i = 0; i < 1'000; ++i)
            registrations.push_back(source.get_token().connect_receiver(
                receiverOf([&order, i] { order.push_back(i); })));
        QVERIFY(source.request_stop());
        QCOMPARE(order.size(), std::size_t(1'000));
        QVERIFY(std::is_sorted(order.begin(), order.end()));
    }

    void droppedRegistrationIsSkipped()
    {
        const stop_source source;
        const stop_token token = source.get_token();
        std::vector<int> called;
        int destroyed = 0;
        const Registration first = token.connect_receiver(receiverOf([&] { called.push_back(1); }));
        Registration second = token.connect_receiver(std::make_unique<Watched>(destroyed));
        const Registration third = token.connect_receiver(receiverOf([&] { called.push_back(3); }));
        second.reset();
        QCOMPARE(destroyed, 1);
        QVERIFY(source.request_stop());
        QCOMPARE(called, (std::vector{1, 3}));
    }

    void registrationIsTheOnlyStrongReference()
    {
        const stop_source source;
        const Registration registration = source.get_token().connect_receiver(receiverOf([] {}));
        QCOMPARE(registration.use_count(), 1L);
        QVERIFY(source.request_stop());
        QCOMPARE(registration.use_count(), 1L);
    }

    void tokenOutlivesItsSource_data()
    {
        QTest::addColumn<bool>("stopped");
        QTest::newRow("stopped") << true;
        QTest::newRow("not stopped") << false;
    }

    void tokenOutlivesItsSource()
    {
        QFETCH(bool, stopped);
        auto source = std::make_unique<stop_source>();
        const stop_token token = source->get_token();
        if (stopped)
            source->request_stop();
        source.reset();
        QCOMPARE(token.stop_requested(), stopped);
        int destroyed = 0;
        QVERIFY(!token.connect_receiver(std::make_unique<Watched>(destroyed)));
        QCOMPARE(destroyed, 1);
    }

    void registrationOutlivesItsSource()
    {
        auto source = std::make_unique<stop_source>();
        int destroyed = 0;
        Registration registration =
            source->get_token().connect_receiver(std::make_unique<Watched>(destroyed));
        source.reset();
        QCOMPARE(destroyed, 0);
        registration.reset();
        QCOMPARE(destroyed, 1);
    }

    void defaultTokenBelongsToNoSource()
    {
        const stop_token token;
        QVERIFY(!token.stop_requested());
        int destroyed = 0;
        QVERIFY(!token.connect_receiver(std::make_unique<Watched>(destroyed)));
        QCOMPARE(destroyed, 1);
    }

    void noReceiverIsNoHarm()
    {
        const stop_source source;
        QVERIFY(!source.get_token().connect_receiver(nullptr));
        QVERIFY(source.request_stop());
    }

    void receiverThatComesAfterTheStopIsNotCalled()
    {
        const stop_source source;
        QVERIFY(source.request_stop());
        int calls = 0;
        const Registration registration =
            source.get_token().connect_receiver(receiverOf([&] { ++calls; }));
        QVERIFY(registration);
        QVERIFY(!source.request_stop());
        QCOMPARE(calls, 0);
    }

    void receiverThatComesDuringTheStopIsNotCalled()
    {
        const stop_source source;
        const stop_token token = source.get_token();
        int calls = 0;
        std::vector<Registration> late;
        const Registration first = token.connect_receiver(receiverOf([&] {
            // Enough of them to have the container move what it can.
            for (int i = 0; i < 10'000; ++i)
                late.push_back(token.connect_receiver(receiverOf([&] { ++calls; })));
        }));
        const Registration second = token.connect_receiver(receiverOf([&] { calls += 100'000; }));
        QVERIFY(source.request_stop());
        QCOMPARE(calls, 100'000);
    }

    void receiverMayEndOthersItselfAndTheSource()
    {
        auto source = std::make_unique<stop_source>();
        const stop_token token = source->get_token();
        Registration first;
        Registration second;
        int calls = 0;
        first = token.connect_receiver(receiverOf([&] {
            ++calls;
            source.reset();
            second.reset();
            first.reset();
        }));
        second = token.connect_receiver(receiverOf([&] { calls += 10; }));
        const Registration third = token.connect_receiver(receiverOf([&] { calls += 100; }));
        QVERIFY(source->request_stop());
        QCOMPARE(calls, 101);
        QVERIFY(!first);
        QVERIFY(token.stop_requested());
    }

    void receiverMayAskAgain()
    {
        const stop_source source;
        std::vector<bool> answers;
        const Registration registration = source.get_token().connect_receiver(
            receiverOf([&] { answers.push_back(source.request_stop()); }));
        QVERIFY(source.request_stop());
        QCOMPARE(answers, std::vector{false});
    }

    void receiverThatThrowsEndsTheWalk()
    {
        const stop_source source;
        const stop_token token = source.get_token();
        int calls = 0;
        const Registration first = token.connect_receiver(
            receiverOf([] { throw std::runtime_error("from the receiver"); }));
        const Registration second = token.connect_receiver(receiverOf([&] { ++calls; }));
        QVERIFY_EXCEPTION_THROWN(source.request_stop(), std::runtime_error);
        QCOMPARE(calls, 0);
        QCOMPARE(first.use_count(), 1L);
        QVERIFY(token.stop_requested());
        QVERIFY(!source.request_stop());
    }

    void triggerHasOneSignalAndOneSlot()
    {
        const QMetaObject& meta = GenericTrigger::staticMetaObject;
        QCOMPARE(meta.className(), "zvutil::libzvutil::GenericTrigger");
        QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
        const QMetaMethod signal = meta.method(meta.methodOffset());
        QCOMPARE(signal.methodSignature(), QByteArray("signal()"));
        QCOMPARE(signal.methodType(), QMetaMethod::Signal);
        const QMetaMethod trigger = meta.method(meta.methodOffset() + 1);
        QCOMPARE(trigger.methodSignature(), QByteArray("trigger()"));
        QCOMPARE(trigger.methodType(), QMetaMethod::Slot);
        QCOMPARE(trigger.access(), QMetaMethod::Public);
        static_assert(sizeof(GenericTrigger) == sizeof(QObject));
        QObject parent;
        QCOMPARE((new GenericTrigger(&parent))->parent(), &parent);
    }
};

QTEST_GUILESS_MAIN(tst_stop_source)
#include "tst_stop_source.moc"
