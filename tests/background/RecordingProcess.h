#pragma once

#include <zvutil/ZvAbstractIterativeProcess.h>

#include <QCoreApplication>
#include <QTest>

#include <functional>
#include <string>
#include <vector>

namespace zvtest {

using Events = std::vector<std::string>;

/// Records all that happens to a process of a number of steps. What is set runs within.
class Process : public ZvAbstractIterativeProcess
{
public:
    explicit Process(int steps)
        : m_left(steps)
    {
        record();
    }

    Process(int steps, int interval)
        : ZvAbstractIterativeProcess(interval, nullptr)
        , m_left(steps)
    {
        record();
    }

    bool hasMoreWork() override
    {
        if (onQuestion)
            onQuestion();
        return m_left > 0;
    }

    void processStep() override
    {
        --m_left;
        events.push_back("step");
        if (onStep)
            onStep();
    }

    void reportStatus() override
    {
        events.push_back(running() ? "report" : "last report");
        if (onReport)
            onReport();
    }

    void setSteps(int steps) { m_left = steps; }

    Events events;
    std::function<void()> onQuestion;
    std::function<void()> onStep;
    std::function<void()> onReport;

private:
    void record()
    {
        const auto with = [this](const char* name) {
            return [this, name] {
                events.push_back(std::string(name) + (running() ? ", running" : ""));
            };
        };
        connect(this, &ZvAbstractIterativeProcess::finished, this, with("finished"));
        connect(this, &ZvAbstractIterativeProcess::restarted, this, with("restarted"));
        connect(this, &ZvAbstractIterativeProcess::started, this, with("started"));
        connect(this, &ZvAbstractIterativeProcess::startRequested, this, with("startRequested"));
        connect(this, &ZvAbstractIterativeProcess::stopRequested, this, with("stopRequested"));
    }

    int m_left;
};

/// Has the event loop deliver what is queued.
inline void deliver()
{
    QCoreApplication::processEvents();
}

} // namespace zvtest
