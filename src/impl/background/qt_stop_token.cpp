#include "impl/background/qt_stop_token.h"

#include <zvutil/signalling/basic_receiver.h>

#include <thread>
#include <utility>

namespace zvutil::libzvutil {

namespace {

/// A stop that is being delivered to an object on this thread. Deliveries nest, since a slot may
/// request another stop.
class delivery
{
public:
    explicit delivery(const qt_stop_token* token)
        : m_token(token)
        , m_outer(std::exchange(innermost, this))
    {
    }

    ~delivery() { innermost = m_outer; }

    delivery(const delivery&) = delete;
    delivery& operator=(const delivery&) = delete;

    static bool is_running(const qt_stop_token* token)
    {
        const delivery* current = innermost;
        while (current && current->m_token != token)
            current = current->m_outer;
        return current != nullptr;
    }

private:
    static thread_local const delivery* innermost;

    const qt_stop_token* m_token;
    const delivery* m_outer;
};

thread_local const delivery* delivery::innermost = nullptr;

} // namespace

qt_stop_token::qt_stop_token(stop_token token, QObject* parent)
    : QObject(parent)
    , m_token(std::move(token))
{
    const std::shared_ptr<void> lifetime(nullptr,
                                         [gone = m_receiver_gone](void*) { *gone = true; });
    auto emit_triggered = [this, lifetime] {
        const delivery scope(this);
        Q_EMIT triggered();
    };
    m_registration = m_token.connect_receiver(
        std::make_unique<signalling::basic_receiver<decltype(emit_triggered)>>(
            std::move(emit_triggered)));
}

qt_stop_token::~qt_stop_token()
{
    m_registration.reset();
    // Wait: a stop on another thread may hold the receiver, which uses this object.
    while (!*m_receiver_gone && !delivery::is_running(this))
        std::this_thread::yield();
}

} // namespace zvutil::libzvutil
