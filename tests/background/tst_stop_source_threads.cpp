// Stops that several threads request and hear of.

#include "Receivers.h"

#include <zvutil/libzvutil/GenericTrigger.h>
#include <zvutil/stop_source.h>

#include <QCoreApplication>
#include <QTest>

#include <array>
#include <atomic>
#include <memory>
#include <thread>
#include <vector>

using zvtest::Receiver;
using zvtest::receiverOf;
using zvtest::Registration;
using zvutil::stop_source;
using zvutil::stop_token;
using zvutil::libzvutil::GenericTrigger;

namespace {

/// Counts its calls, and its end, in a place of its own that outlives it.
class Counted : public Receiver
{
public:
    struct Place
    {
        std::atomic<int> calls{0};
        std::atomic<int> ends{0};
    };

    explicit Counted(Place& place)
        : m_place(place)
    {
    }

    ~Counted() override { ++m_place.ends; }

    void receive() override { ++m_place.calls; }

private:
    Place& m_place;
};

} // namespace

class tst_stop_source_threads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneOfManyThreadsWins()
    {
        for (int round = 0; round < 200; ++round) {
            const stop_source source;
            const stop_token token = source.get_token();
            std::atomic<int> calls{0};
            std::atomic<int> winners{0};
            std::atomic<bool> go{false};
            const Registration registration = token.connect_receiver(receiverOf([&] { ++calls; }));
            std::vector<std::thread> threads;
            threads.reserve(4);
            for (int i = 0; i < 4; ++i)
                threads.emplace_back([&, mine = source] {
                    while (!go)
                        std::this_thread::yield();
                    if (mine.request_stop())
                        ++winners;
                });
            go = true;
            while (!token.stop_requested())
                std::this_thread::yield();
            for (std::thread& thread : threads)
                thread.join();
            QCOMPARE(winners.load(), 1);
            QCOMPARE(calls.load(), 1);
        }
    }

    void receiverRunsOnTheThreadThatStops()
    {
        const stop_source source;
        std::thread::id where;
        const Registration registration = source.get_token().connect_receiver(
            receiverOf([&] { where = std::this_thread::get_id(); }));
        std::thread::id expected;
        std::thread stopping([&] {
            expected = std::this_thread::get_id();
            source.request_stop();
        });
        stopping.join();
        QCOMPARE(where, expected);
    }

    void registrationsGoWhileTheStopIsRequested()
    {
        for (int round = 0; round < 200; ++round) {
            const stop_source source;
            std::array<Counted::Place, 50> places;
            std::vector<Registration> registrations;
            registrations.reserve(places.size());
            for (Counted::Place& place : places)
                registrations.push_back(
                    source.get_token().connect_receiver(std::make_unique<Counted>(place)));
            std::thread stopping([&] { source.request_stop(); });
            registrations.clear();
            stopping.join();
            // Whichever thread let go of it last, each has gone, though the source is there yet.
            for (const Counted::Place& place : places) {
                QVERIFY(place.calls <= 1);
                QCOMPARE(place.ends.load(), 1);
            }
        }
    }

    void triggerEmitsOnTheCallersThread()
    {
        GenericTrigger trigger;
        QObject receiver;
        std::vector<std::thread::id> direct;
        std::vector<std::thread::id> carried;
        connect(&trigger, &GenericTrigger::signal,
                [&] { direct.push_back(std::this_thread::get_id()); });
        connect(&trigger, &GenericTrigger::signal, &receiver,
                [&] { carried.push_back(std::this_thread::get_id()); });
        std::thread::id other;
        std::thread caller([&] {
            other = std::this_thread::get_id();
            trigger.trigger();
        });
        caller.join();
        QCOMPARE(direct, std::vector{other});
        QVERIFY(carried.empty());
        QCoreApplication::processEvents();
        QCOMPARE(carried, std::vector{std::this_thread::get_id()});

        trigger.trigger();
        QCOMPARE(carried.size(), std::size_t(2));
    }
};

QTEST_GUILESS_MAIN(tst_stop_source_threads)
#include "tst_stop_source_threads.moc"
