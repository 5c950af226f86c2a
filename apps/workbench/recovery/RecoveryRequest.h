#pragma once

#include <zvutil/libzvutil/abstract_request.h>

#include <functional>

namespace workbench {

/// Writes a recovery copy in the background. Fails with sentences for the user; a copy that isn't wanted any more is no
/// failure.
class RecoveryRequest : public zvutil::libzvutil::abstract_request
{
    Q_OBJECT

public:
    /// \p write may throw `FileError`, `Stopped` and `std::exception`.
    explicit RecoveryRequest(std::function<void()> write);

    /// Calls \p write. Returns an empty text, or why it failed.
    static QString reasonOf(const std::function<void()>& write);

protected:
    void perform() override;

private:
    std::function<void()> m_write;
};

} // namespace workbench
