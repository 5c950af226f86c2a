#pragma once

#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvMultiDirectoryListModel.h>

#include <zv_logging/host.h>

#include <QAbstractItemModelTester>
#include <QSemaphore>
#include <QTest>

#include <atomic>
#include <string>

namespace zvtest {

class Model : public ZvMultiDirectoryListModel
{
public:
    using ZvMultiDirectoryListModel::setDirectories;
    using ZvMultiDirectoryListModel::ZvMultiDirectoryListModel;

    int rows() const { return rowCount({}); }

    /// The scan, asked for while one of its signals is handled by this model.
    QObject* scan() const { return sender(); }
};

inline QStringList rowsOf(const QAbstractItemModel& model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows.append(model.index(row, 0).data().toString());
    return rows;
}

/// A model that is watched, by Qt's checker and by a journal of its signals: `(` and `)` for start
/// and end of a scan, `r` for a reset, which the model has done before others hear of the start,
/// and the number of rows that are inserted, each behind a blank.
class Watched
{
public:
    explicit Watched(long long batchSize = 1000)
        : model(batchSize, nullptr)
        , m_tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal)
    {
        QObject::connect(&model, &Model::backgroundProcessStarted, &model, [this] { note("("); });
        QObject::connect(&model, &Model::backgroundProcessStopped, &model, [this] {
            note(")");
            ++scans;
        });
        QObject::connect(&model, &Model::modelReset, &model, [this] { note("r"); });
        QObject::connect(&model, &Model::rowsInserted, &model,
                         [this](const QModelIndex& parent, int first, int last) {
                             if (parent.isValid() || last != model.rows() - 1)
                                 note("wrong");
                             note(QByteArray::number(last - first + 1));
                         });
    }

    /// Waits for the end of as many scans as there have been requests, the first included.
    bool settles(int requests)
    {
        return QTest::qWaitFor([this, requests] { return scans >= requests; }, 240'000);
    }

    Model model;
    QByteArray journal;
    int scans = 0;

private:
    void note(const QByteArray& what) { journal += (journal.isEmpty() ? "" : " ") + what; }

    QAbstractItemModelTester m_tester;
};

/// The scan of a model that has just been made, told by its first signal.
inline QObject* scanOf(Model& model)
{
    QObject* scan = nullptr;
    // Not with the model as context, since it would be its own sender then.
    QObject context;
    QObject::connect(&model, &Model::backgroundProcessStopped, &context,
                     [&] { scan = model.scan(); });
    return QTest::qWaitFor([&scan] { return scan != nullptr; }, 240'000) ? scan : nullptr;
}

/// Holds the scan at a line of its log until it is let go.
class Hold
{
public:
    /// Holds the scan at the \p count-th time that it writes \p line.
    Hold(const std::string& line, int count)
        : m_left(count)
    {
        zvutil::logging::host::setObserver([this, line](const std::string& call) {
            if (call == "write 1 FileView: " + line && --m_left == 0) {
                m_reached.release();
                m_mayGoOn.acquire();
            }
        });
    }

    ~Hold() { zvutil::logging::host::setObserver({}); }

    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    void waitUntilReached() { m_reached.acquire(); }
    void letGo() { m_mayGoOn.release(); }

private:
    std::atomic<int> m_left;
    QSemaphore m_reached;
    QSemaphore m_mayGoOn;
};

using Change = void (*)(Model& model, const QString& path);

} // namespace zvtest

Q_DECLARE_METATYPE(zvtest::Change)
