#include "SearchRequest.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>

namespace {

constexpr qint64 bytesLookedAt = 4'096;
constexpr qint64 longestLine = 65'536;
constexpr qint64 bytesBetweenEvents = 1'048'576;
constexpr qint64 millisecondsBetweenReports = 100;

} // namespace

SearchRequest::SearchRequest(const QString& directory, const QString& text)
    : m_directory(directory)
    , m_text(text.toUtf8())
{
}

void SearchRequest::perform()
{
    if (!QDir(m_directory).exists()) {
        Q_EMIT failed("there is no directory " + m_directory.toStdString());
        return;
    }
    m_sinceProgress.start();
    QDirIterator files(m_directory, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                       QDirIterator::Subdirectories);
    while (files.hasNext() && !isToEnd()) {
        if (searchFile(files.next()))
            ++m_searched;
        else
            ++m_unreadable;
    }
    Q_EMIT progress(m_searched, m_unreadable);
    if (abort_requested())
        Q_EMIT failed("cancelled");
    else
        Q_EMIT completed();
}

/// Whether the file could be read.
bool SearchRequest::searchFile(const QString& name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    if (!file.peek(bytesLookedAt).contains('\0'))
        searchLines(file);
    return file.error() == QFileDevice::NoError;
}

void SearchRequest::searchLines(QFile& file)
{
    int number = 1;
    qint64 bytes = 0;
    for (;;) {
        const QByteArray line = file.readLine(longestLine);
        if (line.isEmpty())
            return;
        if (line.contains(m_text))
            Q_EMIT found(file.fileName(), number, QString::fromUtf8(line).trimmed());
        if (line.endsWith('\n'))
            ++number;
        bytes += line.size();
        if (bytes >= bytesBetweenEvents) {
            bytes = 0;
            if (isToEnd())
                return;
        }
    }
}

/// Reports now and then, and handles events: an abort is one of them.
bool SearchRequest::isToEnd()
{
    if (m_sinceProgress.elapsed() >= millisecondsBetweenReports) {
        m_sinceProgress.start();
        Q_EMIT progress(m_searched, m_unreadable);
    }
    QCoreApplication::processEvents();
    return abort_requested();
}
