#pragma once

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

/// Tells when somebody else changes a file: once for what comes within a tenth of a second, and also
/// when the file is replaced or comes and goes.
class FileWatcher : public QObject
{
    Q_OBJECT

public:
    FileWatcher();

    /// Watches this file from now on, and no other. Nothing is watched where the name is empty.
    void watch(const QString& filename);
    void stop();
    bool isWatching() const;

    /// What happens while \p ignore is true is taken for known at its end.
    void setIgnoring(bool ignore);

Q_SIGNALS:
    void changed(bool exists);

private:
    /// What tells one state of a file from another.
    struct State
    {
        bool exists = false;
        qint64 size = 0;
        QDateTime modified;
    };

    State look() const;
    void watchAgain();
    void report();

    QString m_filename;
    QFileSystemWatcher m_watcher;
    QTimer m_delay;
    State m_known;
    bool m_isIgnoring = false;
};
