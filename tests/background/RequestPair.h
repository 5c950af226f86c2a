#pragma once

#include "support/Background.h"

#include <QChildEvent>
#include <QCoreApplication>
#include <QMetaMethod>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace zvtest {

/// A request and its response, on two threads or on one.
class Pair
{
public:
    explicit Pair(bool onTwoThreads, Request::Work work = &Request::complete)
        : m_request(std::make_shared<Request>(std::move(work)))
        , m_response(m_request.get())
    {
        record(*m_request, m_onRequest);
        record(m_response, m_onResponse);
        if (onTwoThreads) {
            m_worker.emplace();
            m_request->moveToThread(m_worker->thread());
        }
    }

    ~Pair() { destroyRequest(); }

    Request& request() { return *m_request; }
    zvutil::libzvutil::abstract_response& response() { return m_response; }

    void start()
    {
        onRequestsThread([this] { m_request->start(); });
    }

    void abort()
    {
        onRequestsThread([this] { m_request->abort(); });
    }

    void emitCompleted()
    {
        onRequestsThread([this] { Q_EMIT m_request->completed(); });
    }

    void emitFailed(const std::string& message)
    {
        onRequestsThread([this, message] { Q_EMIT m_request->failed(message); });
    }

    void destroyRequest()
    {
        onRequestsThread([this] { m_request.reset(); });
    }

    template <typename Work>
    void onRequestsThread(Work work)
    {
        if (m_worker)
            m_worker->run(work);
        else
            work();
    }

    /// What happened on the request's side.
    Lines requestLines()
    {
        deliverPending();
        return m_onRequest.lines();
    }

    /// What happened on the response's side, all of it delivered.
    Lines responseLines()
    {
        deliverPending();
        return m_onResponse.lines();
    }

    /// Has both sides handle what was sent to them.
    void deliverPending()
    {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
            if (m_worker)
                m_worker->deliverPending();
        }
        QCoreApplication::processEvents();
    }

private:
    Journal m_onRequest;
    Journal m_onResponse;
    std::optional<Worker> m_worker;
    std::shared_ptr<Request> m_request;
    zvutil::libzvutil::abstract_response m_response;
};

inline void leaveOpen(Request& /*request*/)
{
}

inline Request::Work failing(std::string message)
{
    return [message = std::move(message)](Request& request) { Q_EMIT request.failed(message); };
}

inline int abortsIn(const Lines& lines)
{
    return static_cast<int>(std::count(lines.begin(), lines.end(), "aborted"));
}

inline QByteArrayList signaturesOf(const QMetaObject& meta, QMetaMethod::MethodType type)
{
    QByteArrayList result;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == type)
            result += meta.method(i).methodSignature();
    }
    return result;
}

/// Does something when it gets a child, which is when a token is being attached.
class InterruptedResponse : public zvutil::libzvutil::abstract_response
{
public:
    using zvutil::libzvutil::abstract_response::abstract_response;

    std::function<void()> onChild;

protected:
    void childEvent(QChildEvent* event) override
    {
        if (event->added() && onChild)
            onChild();
    }
};

} // namespace zvtest
