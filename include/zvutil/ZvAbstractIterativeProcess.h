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
/// `start`, `stop` and `restart` may be called on any thread, everything else on the object's own.
/// The object must not be deleted during a run, for example from a slot that is called between
/// steps.
///
/// An exception of `hasMoreWork`, `processStep`, a slot of `started` or the handling of an event ends
/// the run: the exception is caught and dropped, `finished` isn't emitted, and with an interval
/// `reportStatus` is still called until another run finishes. A step that can fail
/// reports its failure by itself.
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
/// @since 0.1 @ingroup background
class ZVUTIL_EXPORT ZvAbstractIterativeProcess : public QObject
{
    Q_OBJECT

public:
    /// A process without an interval, which never calls `reportStatus`.
    /// @param parent owns the process; may be null
    explicit ZvAbstractIterativeProcess(QObject* parent = nullptr);
    /// A process that calls `reportStatus` during a run, and once more at its end.
    /// @param interval between two calls, in milliseconds
    /// @param parent owns the process; may be null
    ZvAbstractIterativeProcess(int interval, QObject* parent);
    /// Stops the timer; must not be called while a run is under way.
    ~ZvAbstractIterativeProcess() override;

    /// @return whether there is another step. Called before each one, unless a stop was requested.
    virtual bool hasMoreWork() = 0;
    /// Does one step.
    virtual void processStep() = 0;

    /// Posts the beginning of a run to the event loop of the object's thread and returns. If a run
    /// is under way when the event is handled, the start is dropped.
    void start();

    /// Ends the run that is under way after its current step. A start that still waits in the event
    /// loop isn't cancelled. A stop from another thread takes effect when the process next handles
    /// events.
    void stop();

    /// Stops and starts. By an event between two steps a new run follows the one that ends. From
    /// within a step, or by another thread, the start may be handled along with the other events
    /// before the old run has ended, and is then lost: wait for `finished` and call `start` to be
    /// sure of a new run.
    void restart();

    /// @return true from before `started` until before `finished`. Call it on the object's own
    /// thread.
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
    /// Called at each interval and at the end of a run, to show how far the work is. The base class
    /// does nothing.
    virtual void reportStatus();

    /// Calls `reportStatus` for the timer of the interval.
    /// @param event of this or any other timer of the object
    void timerEvent(QTimerEvent* event) override;

private:
    void run();

    bool m_stopFlag = false;
    bool m_isRunning = false;
    QBasicTimer m_timer;
};
