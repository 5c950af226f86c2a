#pragma once

#include <QLockFile>
#include <QObject>

#include <functional>
#include <memory>

class QSettings;
class QTimer;

namespace workbench {

/// Writes the session to its file soon after it has changed. Of several programs at once, the first owns the
/// session; the others write nothing but what they add to the recent files. GUI thread.
class SessionKeeper : public QObject
{
    Q_OBJECT

public:
    struct Writers
    {
        std::function<void(QSettings&)> saveAll; ///< puts the whole session into the settings
        std::function<void(QSettings&)> saveShared; ///< puts in only what programs share
        std::function<void(const QSettings&)> written; ///< called when the settings are in the file
    };

    SessionKeeper(Writers writers, QObject* parent);
    ~SessionKeeper() override;

    /// Takes the session for this program, unless another one has it. Returns whether this program owns it; a session
    /// that nobody can write is owned by each, so that each tells its user.
    bool own();
    /// Writes changes from now on.
    void start();

    /// Writes soon, together with other changes until then. Does nothing before `start` and after `stop`.
    void noteChange();
    /// Calls `noteChange` when \p widget is moved, resized, shown or hidden.
    void watch(QWidget& widget);
    void stop();

    /// Writes at once. Returns false if that fails.
    bool write();

Q_SIGNALS:
    /// Emitted when a change can't be written, once until it can be written again.
    void failed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Writers m_writers;
    QTimer* m_timer; // owned as a child
    std::unique_ptr<QLockFile> m_lock;
    bool m_isOwner = true;
    bool m_isStarted = false;
    bool m_hasFailed = false;
};

} // namespace workbench
