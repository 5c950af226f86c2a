#pragma once

#include <zvutil/zvutil_export.h>

#include <QObject>

namespace zvutil::libzvutil {

/// The base of what runs requests. It tells nothing and is there to be owned.
class ZVUTIL_EXPORT abstract_request_manager : public QObject
{
public:
    explicit abstract_request_manager(QObject* parent = nullptr);
    ~abstract_request_manager() override;
};

static_assert(sizeof(abstract_request_manager) == sizeof(QObject));

} // namespace zvutil::libzvutil
