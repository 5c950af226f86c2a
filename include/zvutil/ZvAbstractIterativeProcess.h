#pragma once

#include <zvutil/zvutil_export.h>

#include <QBasicTimer>
#include <QObject>

class QTimerEvent;

/// Long work on the thread of the user interface, cut into steps between which events are handled.
///
/// A subclass says what a step is. The steps run on the object's own thread, from its event loop;
/// after each one all waiting events are handled once, so whatever they call may run between any
/// two steps, also `stop` and `restart`. A step should be short, since nothing else happens
/// meanwhile.
///
/// `start`, `stop` and `restart` may be called on any thread, all else on the object's own. It must
/// not be deleted while it runs, from a slot that is called between steps for example.
///
/// An exception that `hasMoreWork`, `processStep`, a slot of `started` or the handling of an event
/// lets out ends the run: it is caught and dropped, `finished` isn't emitted, and where there is an
/// interval `reportStatus` goes on being called, until another run finishes. A step that can fail
/// has to tell so by itself.
///
/// @code{.cpp}
/// #include <QLabel>
///
/// #include <cstddef>
/// #include <utility>
/// #include <vector>
///
/// class Summation : public ZvAbstractIterativeProcess
/// {
/// public:
///     explicit Summation(std::vector<double> numbers)
///         : m_numbers(std::move(numbers))
///     {
///     }
///
///     bool hasMoreWork() override { return m_next < m_numbers.size(); }
///     void processStep() override { sum += m_numbers[m_next++]; }
///
///     double sum = 0;
///
/// private:
///     std::vector<double> m_numbers;
///     std::size_t m_next = 0;
/// };
///
/// /// Returns at once; the label shows the sum when the event loop has run all steps.
/// void showSum(Summation& summation, QLabel* label)
/// {
///     QObject::connect(&summation, &ZvAbstractIterativeProcess::finished, label,
///                      [&summation, label] { label->setNum(summation.sum); });
///     summation.start();
/// }
/// @endcode
class ZVUTIL_EXPORT ZvAbstractIterativeProcess : public QObject
{
    Q_OBJECT

public:
    /// A process that never calls `reportStatus`.
    explicit ZvAbstractIterativeProcess(QObject* parent = nullptr);
    /// While it runs, `reportStatus` is called every \p interval milliseconds, and once more at the
    /// end of each run.
    ZvAbstractIterativeProcess(int interval, QObject* parent);
    ~ZvAbstractIterativeProcess() override;

    /// Whether there is another step. Asked before each one, unless a stop was requested.
    virtual bool hasMoreWork() = 0;
    /// Does one step.
    virtual void processStep() = 0;

    /// Has a run begin when the event loop comes to it, never at once. If a run is under way by
    /// then, nothing happens, now or later.
    void start();

    /// Ends the run that is under way, behind its current step. A start that is still waiting in
    /// the event loop isn't taken back. From another thread it takes effect when the process next
    /// handles events.
    void stop();

    /// Stops and starts. By an event between two steps a new run follows the one that ends. From
    /// within a step, or by another thread, the start may be handled along with the other events
    /// before the old run has ended, and is then lost: wait for `finished` and call `start` to be
    /// sure of a new run.
    void restart();

    /// True from before `started` until before `finished`. On the object's own thread.
    bool running() const;

Q_SIGNALS:
    /// A run has ended, also by `stop`.
    void finished(QPrivateSignal);
    /// `restart` was called. Emitted on the thread that calls it.
    void restarted(QPrivateSignal);
    /// A run begins.
    void started(QPrivateSignal);
    /// `start` or `restart` was called. Emitted on the thread that calls it.
    void startRequested(QPrivateSignal);
    /// `stop` or `restart` was called. Emitted on the thread that calls it.
    void stopRequested(QPrivateSignal);

protected:
    /// Shows how far the work is. Does nothing here.
    virtual void reportStatus();

    void timerEvent(QTimerEvent* event) override;

private:
    void run();

    bool m_stopFlag = false;
    bool m_isRunning = false;
    QBasicTimer m_timer;
};
