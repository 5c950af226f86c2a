#include <zvutil/ZvAbstractIterativeProcess.h>

#include "impl/background/handle_events.h"

#include <QTimerEvent>

ZvAbstractIterativeProcess::ZvAbstractIterativeProcess(QObject* parent)
    : QObject(parent)
{
    connect(this, &ZvAbstractIterativeProcess::startRequested, this,
            &ZvAbstractIterativeProcess::run, Qt::QueuedConnection);
    connect(this, &ZvAbstractIterativeProcess::stopRequested, this, [this] { m_stopFlag = true; });
}

ZvAbstractIterativeProcess::ZvAbstractIterativeProcess(int interval, QObject* parent)
    : ZvAbstractIterativeProcess(parent)
{
    connect(this, &ZvAbstractIterativeProcess::started, this,
            [this, interval] { m_timer.start(interval, this); });
    connect(this, &ZvAbstractIterativeProcess::finished, this, [this] {
        m_timer.stop();
        reportStatus();
    });
}

ZvAbstractIterativeProcess::~ZvAbstractIterativeProcess()
{
    if (m_timer.isActive())
        m_timer.stop();
}

void ZvAbstractIterativeProcess::start()
{
    Q_EMIT startRequested(QPrivateSignal());
}

void ZvAbstractIterativeProcess::stop()
{
    Q_EMIT stopRequested(QPrivateSignal());
}

void ZvAbstractIterativeProcess::restart()
{
    Q_EMIT stopRequested(QPrivateSignal());
    Q_EMIT restarted(QPrivateSignal());
    Q_EMIT startRequested(QPrivateSignal());
}

bool ZvAbstractIterativeProcess::running() const
{
    return m_isRunning;
}

void ZvAbstractIterativeProcess::reportStatus()
{
}

void ZvAbstractIterativeProcess::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == m_timer.timerId())
        reportStatus();
    else
        QObject::timerEvent(event);
}

void ZvAbstractIterativeProcess::run()
{
    // By contract: run() drops a start that arrives during a run. Runs don't nest, and none is
    // remembered.
    if (m_isRunning)
        return;
    m_stopFlag = false;
    m_isRunning = true;
    try {
        Q_EMIT started(QPrivateSignal());
        zvutil::impl::notice_waiting_events();
        while (!m_stopFlag && hasMoreWork()) {
            processStep();
            zvutil::impl::handle_events();
        }
    } catch (...) {
        // By contract: run() drops the exception without emitting finished() and leaves the timer
        // active. Callers don't handle what a step throws; a step that can fail reports that
        // itself.
        m_isRunning = false;
        return;
    }
    m_isRunning = false;
    Q_EMIT finished(QPrivateSignal());
}
