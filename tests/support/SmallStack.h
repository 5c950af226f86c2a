#pragma once

#include <QThread>

#include <memory>

namespace zvtest {

/// Runs \p work on a thread whose stack is too small for one frame per element of a deep document, or per
/// character of a long text.
template <typename Work>
void onSmallStack(Work work)
{
    const std::unique_ptr<QThread> thread(QThread::create(work));
    thread->setStackSize(512 * 1024);
    thread->start();
    thread->wait();
}

} // namespace zvtest
