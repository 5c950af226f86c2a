#include <zvutil/libzvutil/basic_request_manager.h>

#include <zvutil/libzvutil/background_impl.h>

#include <utility>

namespace zvutil::libzvutil {

template <typename Impl>
basic_request_manager<Impl>::basic_request_manager(QObject* parent)
    : abstract_request_manager(parent)
    , m_impl(new Impl)
{
}

template <typename Impl>
basic_request_manager<Impl>::~basic_request_manager() = default;

template <typename Impl>
void basic_request_manager<Impl>::add(std::shared_ptr<abstract_request> request)
{
    m_impl->add(std::move(request));
}

template class ZVUTIL_TEMPLATE_DEFINE basic_request_manager<background_impl>;

} // namespace zvutil::libzvutil
