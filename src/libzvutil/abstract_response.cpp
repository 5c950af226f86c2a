#include <zvutil/libzvutil/abstract_response.h>

#include <zvutil/libzvutil/abstract_request.h>

#include "impl/background/handle_events.h"
#include "impl/background/qt_stop_token.h"
#include "impl/background/string_metatype.h"

#include <QPointer>
#include <QtAlgorithms>

namespace zvutil::libzvutil {

abstract_response::abstract_response(abstract_request* request)
    : m_trigger(new GenericTrigger)
    , m_request_id(request ? request->id() : uuid("unknown"))
{
    impl::register_string_metatype();
    if (!request)
        return;
    connect(request, &abstract_request::started, this, [this] {
        m_status = request_started;
        Q_EMIT started();
    });
    connect(request, &abstract_request::completed, this, [this] {
        m_status = request_completed;
        Q_EMIT completed();
    });
    connect(request, &abstract_request::failed, this, [this](const std::string& errorMessage) {
        m_status = request_failed;
        Q_EMIT failed(errorMessage);
    });
    connect(request, &abstract_request::finished, this, &abstract_response::finished);
    connect(m_trigger.get(), &GenericTrigger::signal, request, &abstract_request::abort);
}

abstract_response::~abstract_response()
{
    // ~qt_stop_token blocks while another thread emits triggered() at this object, so destroy the
    // tokens before the members.
    qDeleteAll(findChildren<qt_stop_token*>(QString(), Qt::FindDirectChildrenOnly));
}

void abstract_response::attachStopToken(stop_token token)
{
    const qt_stop_token* const attached = new qt_stop_token(token, this);
    connect(attached, &qt_stop_token::triggered, this, &abstract_response::abort);
    // Connect first, then check: a stop requested in between is seen by at least one of the two,
    // and a second abort is harmless.
    if (token.stop_requested())
        m_trigger->trigger();
}

const uuid& abstract_response::requestID() const
{
    return m_request_id;
}

request_status abstract_response::status() const
{
    return m_status;
}

void abstract_response::wait()
{
    // Guard this object: a slot of its signals may delete it.
    const QPointer<const abstract_response> self(this);
    impl::notice_waiting_events();
    while (self && m_status != request_completed && m_status != request_failed)
        impl::handle_events();
}

void abstract_response::abort()
{
    m_trigger->trigger();
}

} // namespace zvutil::libzvutil
