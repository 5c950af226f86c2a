#pragma once

#include "shell/Session.h"

#include <QObject>

#include <optional>

class QSettings;

namespace workbench {

class SessionKeeper;
class Workbench;

/// Keeps a window from one start to the next: its files, the places of its panels, and what these remember.
class WindowSession : public QObject
{
    Q_OBJECT

public:
    enum class Use { Keep, Look };

    explicit WindowSession(Workbench& window);

    /// Gives the window what it had when it was last closed. From then on the session is kept as it changes, unless the
    /// window only takes a look at it.
    void restore(Use use);

    /// Closes all documents, and remembers what was open before. Returns false if one stays open.
    bool closeDocuments();

    SessionKeeper& keeper();

private:
    Session now();
    void nameWindows();
    void save(QSettings& settings);

    Workbench& m_window;
    SessionKeeper* m_keeper; // owned as a child
    std::optional<Session> m_last; // of a window whose documents have been closed
};

} // namespace workbench
