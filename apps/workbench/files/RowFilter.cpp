#include "files/RowFilter.h"

#include <QElapsedTimer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace workbench {

namespace {

constexpr std::chrono::milliseconds reportInterval{100};
constexpr std::chrono::milliseconds maxStepDuration{2};
constexpr int rowsPerClockCheck = 64;

/// Returns the time until the next rows are delivered. A view needs time for all its rows whenever
/// it gets new ones, so the interval grows with their number.
std::chrono::milliseconds deliveryInterval(int rowsDelivered)
{
    constexpr int rowsPerMillisecond = 4'000;
    return std::max(reportInterval, std::chrono::milliseconds(rowsDelivered / rowsPerMillisecond));
}

} // namespace

void RowFilter::Deleter::operator()(RowFilter* filter) const
{
    if (!filter->running()) {
        delete filter;
        return;
    }
    connect(filter, &ZvAbstractIterativeProcess::finished, filter, &QObject::deleteLater);
    filter->setSource(nullptr);
}

RowFilter::Owner RowFilter::make()
{
    return Owner(new RowFilter);
}

RowFilter::RowFilter()
    : ZvAbstractIterativeProcess(static_cast<int>(reportInterval.count()), nullptr)
{
    m_delivery.setSingleShot(true);
    connect(&m_delivery, &QTimer::timeout, this, &RowFilter::deliver);
}

RowFilter::~RowFilter() = default;

void RowFilter::setSource(QAbstractItemModel* source)
{
    if (m_source)
        disconnect(m_source, nullptr, this, nullptr);
    m_source = source;
    if (source) {
        connect(source, &QAbstractItemModel::rowsInserted, this,
                [this](const QModelIndex&, int first) { appended(first); });
        connect(source, &QAbstractItemModel::modelReset, this, &RowFilter::begin);
        connect(source, &QAbstractItemModel::rowsRemoved, this, &RowFilter::begin);
        connect(source, &QAbstractItemModel::rowsMoved, this, &RowFilter::begin);
        connect(source, &QAbstractItemModel::layoutChanged, this, &RowFilter::begin);
        connect(source, &QAbstractItemModel::dataChanged, this, &RowFilter::begin);
    }
    begin();
}

void RowFilter::setPattern(const QString& text)
{
    m_pattern = NamePattern(text);
    begin();
}

void RowFilter::pause()
{
    m_isPaused = true;
    deliver();
}

bool RowFilter::isPaused() const
{
    return m_isPaused;
}

bool RowFilter::isDone() const
{
    return m_next >= rowCount() && m_pending.empty();
}

int RowFilter::lookedAt() const
{
    return m_next;
}

int RowFilter::different() const
{
    return m_different;
}

bool RowFilter::hasMoreWork()
{
    return !m_isPaused && m_next < rowCount();
}

void RowFilter::processStep()
{
    QElapsedTimer clock;
    clock.start();
    const int rows = rowCount();
    do {
        const int end = std::min(rows, m_next + rowsPerClockCheck);
        for (; m_next < end; ++m_next)
            examine(m_next);
    } while (m_next < rows && std::chrono::milliseconds(clock.elapsed()) < maxStepDuration);
    deliverSoon();
}

void RowFilter::reportStatus()
{
    Q_EMIT progress();
}

int RowFilter::rowCount() const
{
    return m_source ? m_source->rowCount() : 0;
}

void RowFilter::begin()
{
    m_next = 0;
    m_different = 0;
    m_delivered = 0;
    m_isPaused = false;
    m_pending.clear();
    m_previous.clear();
    m_delivery.stop();
    Q_EMIT begun();
    // A filter that is running ignores this call, and continues from the first row.
    start();
}

void RowFilter::appended(int first)
{
    if (first < m_next)
        begin();
    else
        start();
}

void RowFilter::examine(int row)
{
    const QString path = m_source->data(m_source->index(row, 0)).toString();
    if (row > 0 && path == m_previous)
        return;
    m_previous = path;
    ++m_different;
    if (m_pattern.matches(fileNameOf(path)))
        m_pending.push_back(row);
}

void RowFilter::deliver()
{
    m_delivery.stop();
    if (m_pending.empty())
        return;
    m_delivered += int(m_pending.size());
    Q_EMIT found(std::exchange(m_pending, {}));
    Q_EMIT progress();
}

void RowFilter::deliverSoon()
{
    if (m_delivered == 0)
        deliver();
    else if (!m_pending.empty() && !m_delivery.isActive())
        m_delivery.start(deliveryInterval(m_delivered));
}

} // namespace workbench
