#include "impl/background/qt_stop_token.h"

#include <zvutil/signalling/basic_receiver.h>

#include <thread>
#include <utility>

namespace zvutil::libzvutil {

namespace {

/// A stop that is being delivered to an object on this thread. Deliveries nest, since a slot may
/// request another stop.
class Reception
{
public:
    explicit Reception(const qt_stop_token* token)
        : m_token(token)
        , m_outer(std::exchange(innermost, this))
    {
    }

    ~Reception() { innermost = m_outer; }

    Reception(const Reception&) = delete;
    Reception& operator=(const Reception&) = delete;

    static bool isUnderWay(const qt_stop_token* token)
    {
        const Reception* reception = innermost;
        while (reception && reception->m_token != token)
            reception = reception->m_outer;
        return reception != nullptr;
    }

private:
    static thread_local const Reception* innermost;

    const qt_stop_token* m_token;
    const Reception* m_outer;
};

thread_local const Reception* Reception::innermost = nullptr;

} // namespace

qt_stop_token::qt_stop_token(stop_token token, QObject* parent)
    : QObject(parent)
    , m_token(std::move(token))
{
    const std::shared_ptr<void> lifetime(nullptr, [gone = m_receiverGone](void*) { *gone = true; });
    auto emitTriggered = [this, lifetime] {
        const Reception reception(this);
        Q_EMIT triggered();
    };
    m_registration = m_token.connect_receiver(
        std::make_unique<signalling::basic_receiver<decltype(emitTriggered)>>(
            std::move(emitTriggered)));
}

qt_stop_token::~qt_stop_token()
{
    m_registration.reset();
    // Wait: a stop on another thread may hold the receiver, which uses this object.
    while (!*m_receiverGone && !Reception::isUnderWay(this))
        std::this_thread::yield();
}

} // namespace zvutil::libzvutil
