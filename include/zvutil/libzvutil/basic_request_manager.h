#pragma once

#include <zvutil/details/delete_later.h>
#include <zvutil/impl/template_export.h>
#include <zvutil/libzvutil/abstract_request.h>
#include <zvutil/libzvutil/abstract_request_manager.h>

#include <memory>

namespace zvutil::libzvutil {

class background_impl;

/// A request manager whose requests `Impl` runs. `Impl` may live on any thread, and the event loop of
/// that thread deletes it.
/// @since 0.1 @ingroup background
template <typename Impl>
class basic_request_manager : public abstract_request_manager
{
public:
    /// Makes the implementation.
    /// @param parent owns the manager; may be null
    explicit basic_request_manager(QObject* parent = nullptr);
    /// Returns at once, without waiting for the running request.
    ~basic_request_manager() override;

    /// Queues a request and moves it to the thread on which the implementation runs it. Call on the
    /// thread on which the request lives now.
    /// @param request shared with its other owners; null is ignored
    void add(std::shared_ptr<abstract_request> request);

private:
    std::unique_ptr<Impl, details::delete_later> m_impl;
};

extern template class ZVUTIL_TEMPLATE_DECLARE basic_request_manager<background_impl>;

static_assert(sizeof(basic_request_manager<background_impl>) == sizeof(QObject) + sizeof(void*));

} // namespace zvutil::libzvutil
