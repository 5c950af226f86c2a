#pragma once

#include <QDateTime>
#include <QFileSystemWatcher>
#include <QObject>
#include <QString>
#include <QTimer>

/// Reports when another program changes, replaces, creates or removes a file, once for all changes
/// within a tenth of a second.
class FileWatcher : public QObject
{
    Q_OBJECT

public:
    FileWatcher();

    /// Watches \p filename from now on, and no other file; an empty name ends the watch.
    void watch(const QString& filename);
    void stop();
    bool isWatching() const;

    /// Changes while \p ignore is true count as known at its end.
    void setIgnoring(bool ignore);

Q_SIGNALS:
    void changed(bool exists);

private:
    /// The properties by which two states of a file differ.
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
