#pragma once

#include <zvutil/zvutil_export.h>

#include <QObject>

namespace zvutil::libzvutil {

/// The base of request managers, without operations: a type to own them by.
/// @since 0.1 @ingroup background
class ZVUTIL_EXPORT abstract_request_manager : public QObject
{
public:
    /// A manager without requests.
    /// @param parent owns the manager; may be null
    explicit abstract_request_manager(QObject* parent = nullptr);
    /// Does what the subclass does.
    ~abstract_request_manager() override;
};

static_assert(sizeof(abstract_request_manager) == sizeof(QObject));

} // namespace zvutil::libzvutil
