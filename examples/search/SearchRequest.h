#pragma once

#include <zvutil/libzvutil/abstract_request.h>

#include <QByteArray>
#include <QElapsedTimer>
#include <QString>

class QFile;

/// Searches the text files of a directory and all below it.
///
/// A file is text if there is no NUL in its first 4 KB. Lines above 64 KB are searched in pieces.
/// Links aren't followed; what can't be read is counted and passed over. It fails if there is no
/// such directory, and with "cancelled" when it is aborted.
class SearchRequest : public zvutil::libzvutil::abstract_request
{
    Q_OBJECT

public:
    /// \p text is searched for as UTF-8, case counts.
    SearchRequest(const QString& directory, const QString& text);

Q_SIGNALS:
    /// Line \p number of \p file, counted from 1, contains the text.
    void found(QString file, int number, QString line);
    /// Emitted a few times a second, and at the end.
    void progress(int searched, int unreadable);

protected:
    void perform() override;

private:
    bool searchFile(const QString& name);
    void searchLines(QFile& file);
    bool isToEnd();

    QString m_directory;
    QByteArray m_text;
    QElapsedTimer m_sinceProgress;
    int m_searched = 0;
    int m_unreadable = 0;
};
