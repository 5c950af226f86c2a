#include <zvutil/ModelTest.h>

#include <QScopeGuard>
#include <QSize>

#include <algorithm>

namespace {

/// Fetches rows; \p fetchingMore is true meanwhile.
void fetchMore(QAbstractItemModel& model, const QModelIndex& parent, bool& fetchingMore)
{
    const auto done = qScopeGuard([&fetchingMore] { fetchingMore = false; });
    fetchingMore = true;
    model.fetchMore(parent);
}

QVariant rowData(const QAbstractItemModel& model, int row, const QModelIndex& parent)
{
    return model.data(model.index(row, 0, parent));
}

} // namespace

ModelTest::ModelTest(QAbstractItemModel* model, QObject* parent)
    : QObject(parent)
    , m_model(model)
{
    using Model = QAbstractItemModel;
    connect(model, &Model::columnsAboutToBeInserted, this, &ModelTest::runAllTests);
    connect(model, &Model::columnsAboutToBeRemoved, this, &ModelTest::runAllTests);
    connect(model, &Model::columnsInserted, this, &ModelTest::runAllTests);
    connect(model, &Model::columnsRemoved, this, &ModelTest::runAllTests);
    connect(model, &Model::dataChanged, this, &ModelTest::runAllTests);
    connect(model, &Model::headerDataChanged, this, &ModelTest::runAllTests);
    connect(model, &Model::layoutAboutToBeChanged, this, &ModelTest::runAllTests);
    connect(model, &Model::layoutChanged, this, &ModelTest::runAllTests);
    connect(model, &Model::modelReset, this, &ModelTest::runAllTests);
    connect(model, &Model::rowsAboutToBeInserted, this, &ModelTest::runAllTests);
    connect(model, &Model::rowsAboutToBeRemoved, this, &ModelTest::runAllTests);
    connect(model, &Model::rowsInserted, this, &ModelTest::runAllTests);
    connect(model, &Model::rowsRemoved, this, &ModelTest::runAllTests);

    connect(model, &Model::layoutAboutToBeChanged, this, &ModelTest::layoutAboutToBeChanged);
    connect(model, &Model::layoutChanged, this, &ModelTest::layoutChanged);
    connect(model, &Model::rowsAboutToBeInserted, this, &ModelTest::rowsAboutToBeInserted);
    connect(model, &Model::rowsAboutToBeRemoved, this, &ModelTest::rowsAboutToBeRemoved);
    connect(model, &Model::rowsInserted, this, &ModelTest::rowsInserted);
    connect(model, &Model::rowsRemoved, this, &ModelTest::rowsRemoved);

    runAllTests();
}

ModelTest::~ModelTest() = default;

void ModelTest::runAllTests()
{
    if (m_fetchingMore)
        return;
    nonDestructiveBasicTest();
    rowCount();
    columnCount();
    hasIndex();
    index();
    parent();
    data();
}

void ModelTest::nonDestructiveBasicTest()
{
    const QModelIndex none;
    m_model->canFetchMore(none);
    fetchMore(*m_model, none, m_fetchingMore);
    m_model->flags(none);
    m_model->hasChildren(none);
    m_model->hasIndex(0, 0, none);
    m_model->headerData(0, Qt::Horizontal);
    m_model->index(0, 0, none);
    m_model->itemData(none);
    m_model->match(none, -1, QVariant(), 1, Qt::MatchStartsWith | Qt::MatchWrap);
    m_model->mimeTypes();
    m_model->parent(none);
    m_model->setData(none, QVariant(), -1);
    m_model->setHeaderData(-1, Qt::Horizontal, QVariant());
    m_model->setHeaderData(999'999, Qt::Horizontal, QVariant());
    m_model->sibling(0, 0, none);
    m_model->span(none);
    m_model->supportedDropActions();
}

void ModelTest::rowCount()
{
    const QModelIndex top = m_model->index(0, 0);
    m_model->rowCount(top);
    const QModelIndex child = m_model->index(0, 0, top);
    if (child.isValid())
        m_model->rowCount(child);
}

void ModelTest::columnCount()
{
    m_model->index(0, 0, m_model->index(0, 0));
}

void ModelTest::hasIndex()
{
    m_model->rowCount();
    m_model->columnCount();
}

void ModelTest::index()
{
    const int rows = m_model->rowCount();
    const int columns = m_model->columnCount();
    if (rows == 0)
        return;
    m_model->index(rows, columns);
    for (int i = 0; i < 3; ++i)
        m_model->index(0, 0);
}

void ModelTest::parent()
{
    if (m_model->rowCount() == 0)
        return;
    const QModelIndex top = m_model->index(0, 0);
    m_model->parent(top);
    if (m_model->rowCount(top) > 0)
        m_model->parent(m_model->index(0, 0, top));
    const QModelIndex second = m_model->index(0, 1);
    if (m_model->rowCount(second) > 0)
        m_model->index(0, 0, second);
    checkChildren(QModelIndex(), 0);
}

void ModelTest::checkChildren(const QModelIndex& parent, int currentDepth)
{
    constexpr int deepest = 10;
    if (m_model->canFetchMore(parent))
        fetchMore(*m_model, parent, m_fetchingMore);
    const int rows = m_model->rowCount(parent);
    const int columns = m_model->columnCount(parent);
    for (int row = 0; row < rows; ++row) {
        if (m_model->canFetchMore(parent))
            fetchMore(*m_model, parent, m_fetchingMore);
        for (int column = 0; column < columns; ++column) {
            for (int i = 0; i < 3; ++i)
                m_model->index(row, column, parent);
            const QModelIndex cell = m_model->index(row, column, parent);
            m_model->parent(cell);
            // By contract: currentDepth counts every descent of this call, not only the nested
            // ones, and is never lowered. So no model is too deep for the walk.
            if (m_model->hasChildren(cell) && currentDepth < deepest)
                checkChildren(cell, ++currentDepth);
            m_model->index(row, column, parent);
        }
    }
}

void ModelTest::data()
{
    if (m_model->rowCount() == 0)
        return;
    const QModelIndex top = m_model->index(0, 0);
    for (const int role :
         {Qt::ToolTipRole, Qt::StatusTipRole, Qt::WhatsThisRole, Qt::SizeHintRole, Qt::FontRole})
        m_model->data(top, role);
    const QVariant alignment = m_model->data(top, Qt::TextAlignmentRole);
    if (alignment.isValid())
        alignment.toUInt();
    m_model->data(top, Qt::BackgroundRole);
    m_model->data(top, Qt::ForegroundRole);
    const QVariant checkState = m_model->data(top, Qt::CheckStateRole);
    if (checkState.isValid())
        checkState.toInt();
}

void ModelTest::layoutAboutToBeChanged()
{
    constexpr int most = 100;
    const int rows = std::min(m_model->rowCount(), most);
    for (int row = 0; row < rows; ++row)
        m_changing.append(m_model->index(row, 0));
}

void ModelTest::layoutChanged()
{
    for (const QPersistentModelIndex& index : qAsConst(m_changing))
        m_model->index(index.row(), index.column(), index.parent());
    m_changing.clear();
}

void ModelTest::rowsAboutToBeInserted(QModelIndex parent, int start, int /*end*/)
{
    m_insert.push({parent, m_model->rowCount(parent), rowData(*m_model, start - 1, parent),
                   rowData(*m_model, start, parent)});
}

void ModelTest::rowsInserted(QModelIndex /*parent*/, int /*start*/, int /*end*/)
{
    // A test that was attached between the two signals receives only this one.
    if (!m_insert.isEmpty())
        m_insert.pop();
}

void ModelTest::rowsAboutToBeRemoved(QModelIndex parent, int start, int end)
{
    m_remove.push({parent, m_model->rowCount(parent), rowData(*m_model, start - 1, parent),
                   rowData(*m_model, end + 1, parent)});
}

void ModelTest::rowsRemoved(QModelIndex /*parent*/, int /*start*/, int /*end*/)
{
    if (!m_remove.isEmpty())
        m_remove.pop();
}
