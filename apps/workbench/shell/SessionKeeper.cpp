#include "shell/SessionKeeper.h"

#include "common/private_files.h"
#include "shell/Session.h"

#include <HostSupport/saving.h>

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QSettings>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <utility>

namespace workbench {

namespace {

constexpr std::chrono::seconds delay{1};

} // namespace

SessionKeeper::SessionKeeper(Writers writers, QObject* parent)
    : QObject(parent)
    , m_writers(std::move(writers))
    , m_timer(new QTimer(this))
{
    m_timer->setObjectName(QStringLiteral("sessionTimer"));
    m_timer->setSingleShot(true);
    m_timer->setInterval(delay);
    connect(m_timer, &QTimer::timeout, this, [this] {
        const bool hadFailed = std::exchange(m_hasFailed, !write());
        if (m_hasFailed && !hadFailed)
            Q_EMIT failed();
    });
}

SessionKeeper::~SessionKeeper() = default;

bool SessionKeeper::own()
{
    const QFileInfo file(sessionFile());
    QDir().mkpath(file.path());
    m_lock = std::make_unique<QLockFile>(file.path() + QStringLiteral("/workbench.owner"));
    // The lock of a running program never becomes stale; that of one that has crashed is taken over.
    m_lock->setStaleLockTime(0);
    m_isOwner = m_lock->tryLock(0) || m_lock->error() != QLockFile::LockFailedError;
    return m_isOwner;
}

void SessionKeeper::start()
{
    m_isStarted = true;
}

void SessionKeeper::noteChange()
{
    if (m_isStarted && !m_timer->isActive())
        m_timer->start();
}

void SessionKeeper::watch(QWidget& widget)
{
    widget.installEventFilter(this);
}

void SessionKeeper::stop()
{
    m_isStarted = false;
    m_timer->stop();
}

bool SessionKeeper::write()
{
    m_timer->stop();
    const QString file = sessionFile();
    QDir().mkpath(QFileInfo(file).path());
    makePrivateFile(file);
    QSettings settings(file, host::settingsFormat());
    (m_isOwner ? m_writers.saveAll : m_writers.saveShared)(settings);
    if (!host::write(settings))
        return false;
    m_writers.written(settings);
    // What has been taken over from the file is no change.
    m_timer->stop();
    return true;
}

bool SessionKeeper::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        noteChange();
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace workbench
