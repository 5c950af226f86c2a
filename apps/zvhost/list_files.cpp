// A module for `zvhost --files`: lists directories through the model, as an application would.

#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvMultiDirectoryListModel.h>

#include <HostSupport/ComConstruct.h>

#include <QByteArray>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QList>
#include <QStringList>

#include <cstddef>
#include <cstdio>

namespace {

/// Prints rows as they arrive, and a summary to standard error.
class Listing : public ZvMultiDirectoryListModel
{
public:
    Listing(const QStringList& types, const QString& filter,
            const QList<zvutil::ZvFilePath>& directories)
    {
        connect(this, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex& /*parent*/, int first, int last) { print(first, last); });
        connect(this, &ZvMultiDirectoryListModel::backgroundProcessStopped, this, [this] {
            if (--m_scansLeft == 0)
                m_loop.quit();
        });
        setAllowedFileTypes(types);
        setFilterFixedString(filter);
        m_timer.start();
        setDirectories(directories);
    }

    void run()
    {
        m_loop.exec();
        const double total = milliseconds();
        const int rows = rowCount(QModelIndex());
        std::fflush(stdout);
        std::fprintf(stderr, "rows: %d, batches: %d", rows, m_batches);
        if (rows > 0)
            std::fprintf(stderr, ", first row after %.1f ms", m_firstRow);
        std::fprintf(stderr, ", all after %.1f ms\n", total);
    }

private:
    void print(int first, int last)
    {
        if (m_batches++ == 0)
            m_firstRow = milliseconds();
        for (int row = first; row <= last; ++row) {
            const QByteArray line =
                data(index(row, 0, QModelIndex()), Qt::DisplayRole).toString().toUtf8() + '\n';
            std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
        }
    }

    double milliseconds() const { return static_cast<double>(m_timer.nsecsElapsed()) / 1e6; }

    QEventLoop m_loop;
    QElapsedTimer m_timer;
    // The model scans once over no directories when it is created, and once for each of three
    // settings.
    int m_scansLeft = 4;
    int m_batches = 0;
    double m_firstRow = 0;
};

/// Prints the files below directories. The words after the first are the types, with commas between
/// them, the filter, and the directories.
COMERROR listFiles(int wordCount, char** words, YRef<MessageHandler> /*messages*/,
                   const ScpParseContext& /*context*/)
{
    constexpr int firstDirectory = 3;
    if (wordCount < firstDirectory)
        return COM_FAILED;
    QList<zvutil::ZvFilePath> directories;
    for (int i = firstDirectory; i < wordCount; ++i)
        directories.append(zvutil::ZvFilePath(QString::fromUtf8(words[i]).toStdWString()));
    const QStringList types =
        QString::fromUtf8(words[1]).split(QLatin1Char(','), Qt::SkipEmptyParts);
    Listing(types, QString::fromUtf8(words[2]), directories).run();
    return COM_OK;
}

const ComConstruct filesCommand("zvhost_files", &listFiles, 0);

} // namespace
