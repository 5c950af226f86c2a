#include <zvutil/ZvMultiDirectoryListModel.h>

#include <zvutil/ZvFilePath.h>

#include "impl/models/ZvMultiDirectoryListModelProcess.h"
#include "impl/models/row_batches.h"
#include "impl/paths/path_text.h"
#include "impl/text/narrow_text.h"
#include "impl/text/wide_text.h"

#include <QThread>

#include <memory>
#include <string>
#include <string_view>

namespace {

constexpr long long defaultBatchSize = 1000;

std::wstring wideText(std::wstring_view units)
{
    std::wstring text;
    zvutil::impl::append_wide_units(text, units);
    return text;
}

} // namespace

struct ZVUTIL_NO_EXPORT ZvMultiDirectoryListModel::ZvMultiDirectoryListModelImpl
{
    ZvMultiDirectoryListModelImpl(ZvMultiDirectoryListModel& model, long long batchSize);
    ZvMultiDirectoryListModelImpl(const ZvMultiDirectoryListModelImpl&) = delete;
    ZvMultiDirectoryListModelImpl& operator=(const ZvMultiDirectoryListModelImpl&) = delete;
    ~ZvMultiDirectoryListModelImpl();

    QThread thread;
    zvutil::impl::row_batches paths;
    ZvMultiDirectoryListModelProcess process;
};

ZvMultiDirectoryListModel::ZvMultiDirectoryListModelImpl::ZvMultiDirectoryListModelImpl(
    ZvMultiDirectoryListModel& model, long long batchSize)
    : process(batchSize)
{
    using Process = ZvMultiDirectoryListModelProcess;
    process.moveToThread(&thread);
    connect(&process, &Process::nextBatch, &model, &ZvMultiDirectoryListModel::nextBatch);
    connect(&thread, &QThread::started, &process, &Process::startScan);
    connect(&process, &Process::started, &model,
            [&model] { Q_EMIT model.backgroundProcessStarted(QPrivateSignal()); });
    connect(&process, &Process::stopped, &model,
            [&model] { Q_EMIT model.backgroundProcessStopped(QPrivateSignal()); });
    thread.start(QThread::InheritPriority);
}

ZvMultiDirectoryListModel::ZvMultiDirectoryListModelImpl::~ZvMultiDirectoryListModelImpl()
{
    process.requestEnd();
    thread.quit();
    thread.wait();
}

ZvMultiDirectoryListModel::ZvMultiDirectoryListModel(QObject* parent)
    : ZvMultiDirectoryListModel(defaultBatchSize, parent)
{
}

ZvMultiDirectoryListModel::ZvMultiDirectoryListModel(long long batchSize, QObject* parent)
    : QAbstractListModel(parent)
    , m_impl(std::make_unique<ZvMultiDirectoryListModelImpl>(*this, batchSize))
{
    connect(this, &ZvMultiDirectoryListModel::backgroundProcessStarted, this,
            [this] { reset([] {}); });
}

ZvMultiDirectoryListModel::~ZvMultiDirectoryListModel() = default;

void ZvMultiDirectoryListModel::addDirectory(const QString& directory)
{
    m_impl.impl().process.addDirectory(wideText(directory.toStdWString()));
}

void ZvMultiDirectoryListModel::addDirectory(const zvutil::ZvFilePath& directory)
{
    addDirectory(directory.c_str());
}

void ZvMultiDirectoryListModel::addDirectory(const std::filesystem::path& directory)
{
    addDirectory(zvutil::impl::path_text(directory).c_str());
}

void ZvMultiDirectoryListModel::addDirectory(const char* directory)
{
    m_impl.impl().process.addDirectory(zvutil::impl::decode_narrow(directory));
}

void ZvMultiDirectoryListModel::addDirectory(const wchar_t* directory)
{
    m_impl.impl().process.addDirectory(wideText(directory));
}

void ZvMultiDirectoryListModel::removeDirectory(const QString& directory)
{
    m_impl.impl().process.removeDirectory(wideText(directory.toStdWString()));
}

void ZvMultiDirectoryListModel::removeDirectory(const zvutil::ZvFilePath& directory)
{
    removeDirectory(directory.c_str());
}

void ZvMultiDirectoryListModel::removeDirectory(const std::filesystem::path& directory)
{
    removeDirectory(zvutil::impl::path_text(directory).c_str());
}

void ZvMultiDirectoryListModel::removeDirectory(const char* directory)
{
    m_impl.impl().process.removeDirectory(zvutil::impl::decode_narrow(directory));
}

void ZvMultiDirectoryListModel::removeDirectory(const wchar_t* directory)
{
    m_impl.impl().process.removeDirectory(wideText(directory));
}

void ZvMultiDirectoryListModel::setAllowedFileTypes(const QStringList& types)
{
    reset([&] { m_impl.impl().process.setAllowedFileTypes(types); });
}

void ZvMultiDirectoryListModel::setFilterFixedString(const QString& text)
{
    reset([&] { m_impl.impl().process.setFilterFixedString(text); });
}

void ZvMultiDirectoryListModel::reloadPaths()
{
    reset([this] { m_impl.impl().process.reloadPaths(); });
}

void ZvMultiDirectoryListModel::setDirectories(const QList<zvutil::ZvFilePath>& directories)
{
    m_impl.impl().process.setDirectories(directories);
}

int ZvMultiDirectoryListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_impl.impl().paths.size();
}

QVariant ZvMultiDirectoryListModel::data(const QModelIndex& index, int role) const
{
    const bool isShown = role == Qt::DisplayRole || role == Qt::ToolTipRole;
    return index.isValid() && isShown ? m_impl.impl().paths.value(index.row()) : QVariant();
}

void ZvMultiDirectoryListModel::nextBatch(const QList<QVariant>& batch)
{
    if (batch.isEmpty())
        return;
    zvutil::impl::row_batches& paths = m_impl.impl().paths;
    beginInsertRows(QModelIndex(), paths.size(), paths.size() + batch.size() - 1);
    paths.append(batch);
    endInsertRows();
}

template <typename Change>
void ZvMultiDirectoryListModel::reset(Change change)
{
    beginResetModel();
    m_impl.impl().paths.clear();
    change();
    endResetModel();
}
