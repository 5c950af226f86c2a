#include "impl/background/qt_stop_token.h"

#include <zvutil/signalling/basic_receiver.h>

#include <thread>
#include <utility>

namespace zvutil::libzvutil {

namespace {

/// A stop that reaches an object on this thread. Stops nest, since a slot may request another.
class emission
{
public:
    explicit emission(const qt_stop_token* token)
        : m_token(token)
        , m_outer(std::exchange(innermost, this))
    {
    }

    ~emission() { innermost = m_outer; }

    emission(const emission&) = delete;
    emission& operator=(const emission&) = delete;

    static bool is_running(const qt_stop_token* token)
    {
        const emission* current = innermost;
        while (current && current->m_token != token)
            current = current->m_outer;
        return current != nullptr;
    }

private:
    static thread_local const emission* innermost;

    const qt_stop_token* m_token;
    const emission* m_outer;
};

thread_local const emission* emission::innermost = nullptr;

} // namespace

qt_stop_token::qt_stop_token(stop_token token, QObject* parent)
    : QObject(parent)
    , m_token(std::move(token))
{
    const std::shared_ptr<void> lifetime(nullptr,
                                         [gone = m_receiver_gone](void*) { *gone = true; });
    auto emit_triggered = [this, lifetime] {
        const emission scope(this);
        Q_EMIT triggered();
    };
    m_registration = m_token.connect_receiver(
        std::make_unique<signalling::basic_receiver<decltype(emit_triggered)>>(
            std::move(emit_triggered)));
}

qt_stop_token::~qt_stop_token()
{
    m_registration.reset();
    // A stop on another thread may have got hold of the receiver, and with it of this object.
    while (!*m_receiver_gone && !emission::is_running(this))
        std::this_thread::yield();
}

} // namespace zvutil::libzvutil
