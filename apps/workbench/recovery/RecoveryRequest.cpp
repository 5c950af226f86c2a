#include "recovery/RecoveryRequest.h"

#include "documents/ProgressBox.h"

#include <zvworkbench/FileError.h>

#include <exception>
#include <new>
#include <utility>

namespace workbench {

RecoveryRequest::RecoveryRequest(std::function<void()> write)
    : m_write(std::move(write))
{
}

QString RecoveryRequest::reasonOf(const std::function<void()>& write)
{
    try {
        write();
    } catch (const Stopped&) {
        return {};
    } catch (const FileError& error) {
        return error.reason();
    } catch (const std::bad_alloc&) {
        return tr("There is not enough memory.");
    } catch (const std::exception& error) {
        return QString::fromUtf8(error.what());
    }
    return {};
}

void RecoveryRequest::perform()
{
    const QString reason = reasonOf(m_write);
    // Free the content before the request ends: it may be the last part of a large one.
    m_write = nullptr;
    if (reason.isEmpty())
        Q_EMIT completed();
    else
        Q_EMIT failed(reason.toStdString());
}

} // namespace workbench
