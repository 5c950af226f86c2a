#pragma once

#include <zvutil/details/delete_later.h>
#include <zvutil/impl/template_export.h>
#include <zvutil/libzvutil/abstract_request.h>
#include <zvutil/libzvutil/abstract_request_manager.h>

#include <memory>

namespace zvutil::libzvutil {

class background_impl;

/// A request manager in front of `Impl`, which runs the requests. `Impl` lives where it likes, and
/// is deleted by the event loop of the thread that it lives on.
template <typename Impl>
class basic_request_manager : public abstract_request_manager
{
public:
    explicit basic_request_manager(QObject* parent = nullptr);
    /// Returns at once, without waiting for a request that is running.
    ~basic_request_manager() override;

    /// Queues \p request, which comes to live where the implementation runs it. Any thread, as long
    /// as the request lives on it now. Null is ignored.
    void add(std::shared_ptr<abstract_request> request);

private:
    std::unique_ptr<Impl, details::delete_later> m_impl;
};

extern template class ZVUTIL_TEMPLATE_DECLARE basic_request_manager<background_impl>;

static_assert(sizeof(basic_request_manager<background_impl>) == sizeof(QObject) + sizeof(void*));

} // namespace zvutil::libzvutil
