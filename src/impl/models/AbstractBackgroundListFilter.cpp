#include "impl/models/AbstractBackgroundListFilter.h"

#include "impl/background/handle_events.h"

#include <QScopeGuard>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstddef>

namespace {

constexpr std::chrono::milliseconds defaultInterval{50};
constexpr std::size_t batchSize = 1000;

// The signal names its argument type so; a static initialiser registers that name while the library
// loads.
const int metaType =
    qRegisterMetaType<AbstractBackgroundListFilter::ModelIndexVectorPtr>("ModelIndexVectorPtr");

} // namespace

AbstractBackgroundListFilter::AbstractBackgroundListFilter(int interval, QObject* parent)
    : QObject(parent)
    , m_timer(new QTimer(this))
{
    m_timer->setInterval(interval);
    connect(this, &AbstractBackgroundListFilter::reset, this,
            &AbstractBackgroundListFilter::beginDelivery);
    connect(m_timer, &QTimer::timeout, this, &AbstractBackgroundListFilter::deliverAccepted);
    connect(this, &AbstractBackgroundListFilter::searchCriteriaChanged, this,
            &AbstractBackgroundListFilter::recheck);
}

AbstractBackgroundListFilter::AbstractBackgroundListFilter(QObject* parent)
    : AbstractBackgroundListFilter(static_cast<int>(defaultInterval.count()), parent)
{
}

AbstractBackgroundListFilter::~AbstractBackgroundListFilter() = default;

void AbstractBackgroundListFilter::setSourceModel(QAbstractItemModel* model)
{
    m_sourceState = source_changing;
    if (m_source)
        disconnect(m_source, nullptr, this, nullptr);
    m_source = model;
    if (model)
        connectSource();
    sourceHasChanged();
}

void AbstractBackgroundListFilter::connectSource()
{
    using Model = QAbstractItemModel;
    using Filter = AbstractBackgroundListFilter;
    const Model* const model = m_source;
    connect(model, &Model::columnsAboutToBeInserted, this, &Filter::sourceIsChanging);
    connect(model, &Model::columnsAboutToBeMoved, this, &Filter::sourceIsChanging);
    connect(model, &Model::columnsAboutToBeRemoved, this, &Filter::sourceIsChanging);
    connect(model, &Model::modelAboutToBeReset, this, &Filter::sourceIsChanging);
    connect(model, &Model::rowsAboutToBeInserted, this, &Filter::sourceIsChanging);
    connect(model, &Model::rowsAboutToBeMoved, this, &Filter::sourceIsChanging);
    connect(model, &Model::rowsAboutToBeRemoved, this, &Filter::sourceIsChanging);
    connect(model, &Model::columnsInserted, this, &Filter::sourceHasChanged);
    connect(model, &Model::columnsMoved, this, &Filter::sourceHasChanged);
    connect(model, &Model::columnsRemoved, this, &Filter::sourceHasChanged);
    connect(model, &Model::dataChanged, this, &Filter::sourceHasChanged);
    connect(model, &Model::modelReset, this, &Filter::sourceHasChanged);
    connect(model, &Model::rowsInserted, this, &Filter::sourceHasChanged);
    connect(model, &Model::rowsMoved, this, &Filter::sourceHasChanged);
    connect(model, &Model::rowsRemoved, this, &Filter::sourceHasChanged);
    // m_source is null when destroyed() is emitted, so the pass begins without a source.
    connect(model, &QObject::destroyed, this, &Filter::sourceHasChanged);
}

QAbstractItemModel* AbstractBackgroundListFilter::sourceModel() const
{
    return m_source;
}

void AbstractBackgroundListFilter::setPaused(bool paused)
{
    m_enabled = !paused;
    // By contract: setPaused(false) doesn't continue a pass that was cut off. A pass begins only
    // for new criteria or a change of the source.
    if (m_enabled)
        recheck();
}

void AbstractBackgroundListFilter::pause()
{
    m_enabled = false;
}

bool AbstractBackgroundListFilter::isPaused() const
{
    return !m_enabled;
}

bool AbstractBackgroundListFilter::isSourceDirty() const
{
    return m_sourceState != source_clean;
}

int AbstractBackgroundListFilter::sourceState() const
{
    return m_sourceState;
}

void AbstractBackgroundListFilter::sourceIsChanging()
{
    m_sourceState = source_changing;
}

void AbstractBackgroundListFilter::sourceHasChanged()
{
    m_sourceState = source_changed;
    // Drop the accepted rows: a delivery may come before the next pass, and the source may be
    // destroyed.
    m_pending.clear();
    recheck();
}

void AbstractBackgroundListFilter::beginDelivery()
{
    m_examined = 0;
    m_sourceState = source_clean;
    m_pending.clear();
    if (!m_timer->isActive())
        m_timer->start();
}

void AbstractBackgroundListFilter::deliverAccepted()
{
    const QPointer<AbstractBackgroundListFilter> self(this);
    Q_EMIT progress(m_examined, m_source ? m_source->rowCount(QModelIndex()) : 0);
    if (!self)
        return;
    const auto count = static_cast<std::ptrdiff_t>(std::min(m_pending.size(), batchSize));
    if (count == 0) {
        if (!m_inPass)
            m_timer->stop();
        return;
    }
    const auto end = m_pending.begin() + count;
    const auto indexes = std::make_shared<std::vector<QModelIndex>>(m_pending.begin(), end);
    m_pending.erase(m_pending.begin(), end);
    Q_EMIT accepted(indexes);
}

void AbstractBackgroundListFilter::recheck()
{
    invokePass(Qt::AutoConnection);
}

void AbstractBackgroundListFilter::invokePass(Qt::ConnectionType type)
{
    QMetaObject::invokeMethod(
        this, [this] { runGuarded(); }, type);
}

void AbstractBackgroundListFilter::runGuarded()
{
    if (m_inPass)
        return;
    const QPointer<AbstractBackgroundListFilter> self(this);
    const auto done = qScopeGuard([&self] {
        if (self)
            self->m_inPass = false;
    });
    m_inPass = true;
    runPass();
}

void AbstractBackgroundListFilter::runPass()
{
    if (m_sourceState == source_changing || (m_sourceState == source_clean && !criteriaPending()))
        return;
    const QPointer<AbstractBackgroundListFilter> self(this);
    searchStarted();
    Q_EMIT reset();
    if (!self || !examineRows())
        return;
    // Queue the next pass, so that the stack unwinds first.
    if (criteriaPending() || m_sourceState != source_clean)
        invokePass(Qt::QueuedConnection);
}

/// Tests the rows. Returns false if this object was destroyed meanwhile.
bool AbstractBackgroundListFilter::examineRows()
{
    const QPointer<AbstractBackgroundListFilter> self(this);
    const int count = m_source ? m_source->rowCount(QModelIndex()) : 0;
    zvutil::impl::notice_waiting_events();
    for (int row = 0; row < count && mayGoOn(); ++row) {
        const bool isAccepted = acceptsRow(row);
        if (!self)
            return false;
        // Check the source again: the test may have changed or destroyed it, and then the row isn't
        // valid.
        if (isAccepted && m_source && m_sourceState == source_clean)
            m_pending.push_back(m_source->index(row, 0, QModelIndex()));
        zvutil::impl::handle_events();
        if (!self)
            return false;
        ++m_examined;
    }
    return true;
}

bool AbstractBackgroundListFilter::mayGoOn()
{
    return !criteriaPending() && m_sourceState == source_clean && m_enabled;
}
