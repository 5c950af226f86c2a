#pragma once

#include <zvutil/libzvutil/abstract_request.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>

/// Adds up the sizes of files in the background.
class SizeRequest : public zvutil::libzvutil::abstract_request
{
    Q_OBJECT

public:
    explicit SizeRequest(const QStringList& files)
        : m_files(files)
    {
    }

Q_SIGNALS:
    void measured(qint64 bytes);

protected:
    void perform() override
    {
        qint64 bytes = 0;
        for (const QString& file : m_files) {
            // An abort comes from another thread, so it is an event of this one.
            QCoreApplication::processEvents();
            if (abort_requested()) {
                Q_EMIT failed("cancelled");
                return;
            }
            bytes += QFileInfo(file).size();
        }
        Q_EMIT measured(bytes);
        Q_EMIT completed();
    }

private:
    QStringList m_files;
};
