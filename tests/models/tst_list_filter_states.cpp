// Anything that can happen to a list filter and its source, in any order and at any moment of a pass.

#include "support/rapidcheck.h"

#include "impl/models/TextBackgroundListFilter.h"

#include <QCoreApplication>
#include <QRegExp>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QStringListModel>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>

namespace {

constexpr int maxBatch = 1000;
constexpr int maxRows = 2 * maxBatch + 1;
constexpr int maxRounds = 100'000;

bool matches(const QString& row, const QString& text)
{
    return QRegExp(u'*' + text + u'*', Qt::CaseSensitive, QRegExp::Wildcard).exactMatch(row);
}

/// When something happens: directly, or within a pass that is begun for it.
enum class Moment { Now, InTestOfRow, InEvents, AtReset, AtDelivery };

/// What the filter has reported when all is quiet.
enum class Result {
    All, ///< every row that matches
    None, ///< the pass began while the filter was paused
    Some, ///< the pass was cut off somewhere
};

struct Model
{
    QStringList rows;
    QString text;
    bool hasSource = false;
    bool hasOldSource = false;
    bool isPaused = false;
    Result result = Result::All;

    /// The filter has a reason to begin a pass.
    void beginPass() { result = isPaused ? Result::None : Result::All; }

    QList<int> expectedRows() const
    {
        QList<int> expected;
        for (int row = 0; hasSource && row < rows.size(); ++row) {
            if (matches(rows.at(row), text))
                expected.append(row);
        }
        return expected;
    }
};

class Source : public QStringListModel
{
public:
    using QStringListModel::QStringListModel;

    /// Inserts rows along with their texts.
    void insert(int row, const QStringList& texts)
    {
        beginInsertRows({}, row, row + texts.size() - 1);
        {
            const QSignalBlocker blocker(this);
            setStringList(stringList().mid(0, row) + texts + stringList().mid(row));
        }
        endInsertRows();
    }
};

class HookedFilter : public TextBackgroundListFilter
{
public:
    explicit HookedFilter(const std::function<void()>& tested)
        : TextBackgroundListFilter(0, nullptr)
        , m_tested(tested)
    {
    }

    bool acceptsRow(int row) override
    {
        const bool isAccepted = TextBackgroundListFilter::acceptsRow(row);
        // A copy, since this object may be deleted by it.
        const std::function<void()> tested = m_tested;
        tested();
        return isAccepted;
    }

private:
    std::function<void()> m_tested;
};

/// A filter and its source, with what the filter has reported since its last reset.
class Scene
{
public:
    Scene() { makeFilter(); }

    Source& source() { return *m_source; }
    Source& oldSource() { return *m_oldSource; }
    TextBackgroundListFilter& filter() { return *m_filter; }

    const QList<int>& rows() const { return m_rows; }
    /// What was reported and must not have been, or an empty text.
    const std::string& fault() const { return m_fault; }
    int resets() const { return m_resets; }
    QPair<int, int> progress() const { return m_progress; }

    void setText(const QString& text)
    {
        m_text = text;
        m_filter->setSearchString(text);
    }

    void setSource(const QStringList& rows)
    {
        m_oldSource = std::move(m_source);
        m_source = std::make_unique<Source>(rows);
        m_filter->setSourceModel(m_source.get());
    }

    void leaveSource()
    {
        m_oldSource = std::move(m_source);
        m_filter->setSourceModel(nullptr);
    }

    void destroySource() { m_source.reset(); }

    void sort(Qt::SortOrder order)
    {
        // Rows that wait are delivered by their old places, so a new pass is asked for.
        m_isSorted = true;
        m_source->sort(0, order);
        m_filter->setSearchString(m_text);
    }

    void destroyFilter() { m_filter.reset(); }

    /// Does something at that moment of a pass, or after it if the pass has no such moment, and waits
    /// until all is quiet. Returns whether the pass had it.
    bool perform(Moment moment, const std::function<void()>& action)
    {
        bool isReached = true;
        if (moment == Moment::Now) {
            action();
        } else {
            m_moment = moment;
            m_action = action;
            post([this] { setText(m_text); });
            // The event loop knows this event before the pass begins.
            post([this, moment] {
                if (moment == Moment::InEvents && m_depth > 1)
                    reach(moment);
            });
            settle();
            isReached = !m_action;
            reach(m_moment);
        }
        if (!m_filter)
            makeFilter();
        settle();
        return isReached;
    }

private:
    void makeFilter()
    {
        using Filter = AbstractBackgroundListFilter;
        m_filter = std::make_unique<HookedFilter>([this] { reach(Moment::InTestOfRow); });
        m_text.clear();
        QObject::connect(m_filter.get(), &Filter::reset, &m_context, [this] { noticeReset(); });
        QObject::connect(
            m_filter.get(), &Filter::accepted, &m_context,
            [this](const Filter::ModelIndexVectorPtr& indexes) { noticeAccepted(*indexes); });
        QObject::connect(m_filter.get(), &Filter::progress, &m_context,
                         [this](int value, int maximum) {
                             m_progress = {value, maximum};
                         });
        m_filter->setSourceModel(m_source.get());
    }

    /// Posts an event within which \p action is done; another one that is handled then is nested.
    void post(const std::function<void()>& action)
    {
        QMetaObject::invokeMethod(
            &m_context,
            [this, action] {
                const QScopedValueRollback<int> depth(m_depth, m_depth + 1);
                action();
            },
            Qt::QueuedConnection);
    }

    void settle()
    {
        int rounds = 0;
        do
            QCoreApplication::processEvents();
        while (m_filter && m_filter->findChild<QTimer*>()->isActive() && ++rounds < maxRounds);
        if (rounds == maxRounds)
            m_fault = "the filter doesn't come to rest";
    }

    void reach(Moment moment)
    {
        if (m_action && m_moment == moment)
            std::exchange(m_action, nullptr)();
    }

    void noticeReset()
    {
        ++m_resets;
        m_rows.clear();
        m_passText = m_text;
        m_isSorted = false;
        reach(Moment::AtReset);
    }

    void noticeAccepted(const std::vector<QModelIndex>& indexes)
    {
        if (indexes.empty() || indexes.size() > std::size_t(maxBatch))
            m_fault = "a delivery has " + std::to_string(indexes.size()) + " rows";
        for (const QModelIndex& index : indexes)
            noticeAccepted(index);
        reach(Moment::AtDelivery);
    }

    void noticeAccepted(const QModelIndex& index)
    {
        const bool isOfSource = m_source && index.model() == m_source.get() && index.column() == 0
            && index.row() >= 0 && index.row() < m_source->rowCount();
        if (!isOfSource)
            m_fault = "an index isn't of the source";
        else if (!m_isSorted && !matches(index.data().toString(), m_passText))
            m_fault = "a row doesn't match";
        else if (!m_rows.isEmpty() && m_rows.last() >= index.row())
            m_fault = "a row comes twice, or too late";
        m_rows.append(index.row());
    }

    QObject m_context;
    std::unique_ptr<Source> m_source;
    std::unique_ptr<Source> m_oldSource;
    std::unique_ptr<HookedFilter> m_filter;
    QString m_text;
    QString m_passText; ///< the text when the last pass began
    bool m_isSorted = false; ///< since the last pass began
    QList<int> m_rows;
    QPair<int, int> m_progress;
    int m_resets = 0;
    std::string m_fault;
    int m_depth = 0; ///< of events that are being handled
    Moment m_moment = Moment::Now;
    std::function<void()> m_action;
};

rc::Gen<std::string> searchText()
{
    return rc::gen::resize(3,
                           rc::gen::container<std::string>(rc::gen::weightedElement<char>(
                               {{6, 'a'}, {6, 'b'}, {1, '*'}, {1, '?'}})));
}

rc::Gen<std::string> rowText()
{
    return rc::gen::resize(5, rc::gen::container<std::string>(rc::gen::element('a', 'b')));
}

QStringList someRows()
{
    QStringList rows;
    for (const std::string& row :
         *rc::gen::resize(6, rc::gen::container<std::vector<std::string>>(rowText())))
        rows.append(QString::fromStdString(row));
    return rows;
}

/// Something that happens. Derived classes say what it makes of the model, and do it.
class Happening : public rc::state::Command<Model, Scene>
{
public:
    void apply(Model& model) const override
    {
        if (m_moment != Moment::Now)
            model.beginPass();
        change(model);
    }

    void run(const Model& before, Scene& scene) const override
    {
        const bool isReached = scene.perform(m_moment, [&] { perform(scene); });
        RC_ASSERT(isReached == has(before, m_moment));
        const Model after = nextState(before);
        RC_ASSERT(scene.fault() == std::string());
        RC_ASSERT(!scene.filter().isSourceDirty());
        RC_ASSERT(!scene.filter().criteriaPending());
        RC_ASSERT(scene.filter().isPaused() == after.isPaused);
        const QList<int> expected = after.expectedRows();
        if (after.result == Result::All) {
            const int all = after.hasSource ? after.rows.size() : 0;
            RC_ASSERT(scene.rows() == expected);
            RC_ASSERT(scene.progress() == qMakePair(all, all));
        } else if (after.result == Result::None) {
            RC_ASSERT(scene.rows() == QList<int>());
        } else {
            RC_ASSERT(scene.rows() == expected.mid(0, scene.rows().size()));
        }
    }

    void show(std::ostream& stream) const override
    {
        static const char* const moments[] = {"", " in the test of a row",
                                              " in the events of a pass", " at a reset",
                                              " at a delivery"};
        stream << description() << moments[static_cast<int>(m_moment)];
    }

protected:
    /// Returns whether a pass that begins now has such a moment.
    static bool has(const Model& model, Moment moment)
    {
        switch (moment) {
        case Moment::InTestOfRow:
        case Moment::InEvents:
            return !model.isPaused && model.hasSource && !model.rows.isEmpty();
        case Moment::AtDelivery:
            return !model.isPaused && !model.expectedRows().isEmpty();
        default:
            return true;
        }
    }

    bool isNow() const { return m_moment == Moment::Now; }

    virtual std::string description() const = 0;
    virtual void change(Model& model) const = 0;
    virtual void perform(Scene& scene) const = 0;

private:
    Moment m_moment = *rc::gen::element(Moment::Now, Moment::InTestOfRow, Moment::InEvents,
                                        Moment::AtReset, Moment::AtDelivery);
};

class SetText : public Happening
{
    QString m_text = QString::fromStdString(*searchText());

    std::string description() const override { return "text " + m_text.toStdString(); }

    void change(Model& model) const override
    {
        model.text = m_text;
        model.beginPass();
    }

    void perform(Scene& scene) const override { scene.setText(m_text); }
};

/// Something that happens to the source.
class SourceHappening : public Happening
{
public:
    void checkPreconditions(const Model& model) const override { RC_PRE(model.hasSource); }
};

class InsertRows : public SourceHappening
{
public:
    explicit InsertRows(const Model& model)
        : m_row(*rc::gen::inRange(0, model.rows.size() + 1))
        , m_rows(*rc::gen::weightedElement<bool>({{39, false}, {1, true}}) ? manyRows()
                                                                           : someRows())
    {
    }

    void checkPreconditions(const Model& model) const override
    {
        SourceHappening::checkPreconditions(model);
        RC_PRE(m_row <= model.rows.size() && model.rows.size() + m_rows.size() <= maxRows);
        RC_PRE(!m_rows.isEmpty());
    }

private:
    /// More than one delivery takes.
    static QStringList manyRows()
    {
        QStringList rows;
        for (int row = 0; row < maxBatch + 1; ++row)
            rows.append("a");
        return rows;
    }

    std::string description() const override
    {
        return std::to_string(m_rows.size()) + " rows inserted at " + std::to_string(m_row);
    }

    void change(Model& model) const override
    {
        for (int i = 0; i < m_rows.size(); ++i)
            model.rows.insert(m_row + i, m_rows.at(i));
        model.beginPass();
    }

    void perform(Scene& scene) const override { scene.source().insert(m_row, m_rows); }

    int m_row;
    QStringList m_rows;
};

/// Something that happens to some rows.
class RowsHappening : public SourceHappening
{
public:
    explicit RowsHappening(const Model& model)
        : m_first(*rc::gen::inRange(0, std::max(model.rows.size(), 1)))
        , m_count(*rc::gen::inRange(1, 4))
    {
    }

    void checkPreconditions(const Model& model) const override
    {
        SourceHappening::checkPreconditions(model);
        RC_PRE(m_first + m_count <= model.rows.size());
    }

protected:
    std::string place() const
    {
        return std::to_string(m_count) + " rows at " + std::to_string(m_first);
    }

    int m_first;
    int m_count;
};

class RemoveRows : public RowsHappening
{
public:
    using RowsHappening::RowsHappening;

private:
    std::string description() const override { return place() + " removed"; }

    void change(Model& model) const override
    {
        model.rows.erase(model.rows.begin() + m_first, model.rows.begin() + m_first + m_count);
        model.beginPass();
    }

    void perform(Scene& scene) const override { scene.source().removeRows(m_first, m_count); }
};

class MoveRows : public RowsHappening
{
public:
    explicit MoveRows(const Model& model)
        : RowsHappening(model)
        , m_destination(*rc::gen::inRange(0, model.rows.size() + 1))
    {
    }

    void checkPreconditions(const Model& model) const override
    {
        RowsHappening::checkPreconditions(model);
        RC_PRE(m_destination <= model.rows.size());
        RC_PRE(m_destination < m_first || m_destination > m_first + m_count);
    }

private:
    std::string description() const override
    {
        return place() + " moved to " + std::to_string(m_destination);
    }

    void change(Model& model) const override
    {
        const auto begin = model.rows.begin();
        if (m_destination < m_first)
            std::rotate(begin + m_destination, begin + m_first, begin + m_first + m_count);
        else
            std::rotate(begin + m_first, begin + m_first + m_count, begin + m_destination);
        model.beginPass();
    }

    void perform(Scene& scene) const override
    {
        scene.source().moveRows({}, m_first, m_count, {}, m_destination);
    }

    int m_destination;
};

class ChangeRow : public RowsHappening
{
public:
    using RowsHappening::RowsHappening;

    void checkPreconditions(const Model& model) const override
    {
        RowsHappening::checkPreconditions(model);
        // Nothing would be reported.
        RC_PRE(model.rows.at(m_first) != m_text);
    }

private:
    std::string description() const override
    {
        return "row " + std::to_string(m_first) + " changed to " + m_text.toStdString();
    }

    void change(Model& model) const override
    {
        model.rows[m_first] = m_text;
        model.beginPass();
    }

    void perform(Scene& scene) const override
    {
        scene.source().setData(scene.source().index(m_first), m_text);
    }

    QString m_text = QString::fromStdString(*rowText());
};

class ResetRows : public SourceHappening
{
    QStringList m_rows = someRows();

    std::string description() const override
    {
        return "reset to " + std::to_string(m_rows.size()) + " rows";
    }

    void change(Model& model) const override
    {
        model.rows = m_rows;
        model.beginPass();
    }

    void perform(Scene& scene) const override { scene.source().setStringList(m_rows); }
};

class Sort : public SourceHappening
{
    Qt::SortOrder m_order = *rc::gen::element(Qt::AscendingOrder, Qt::DescendingOrder);

    std::string description() const override
    {
        return m_order == Qt::AscendingOrder ? "sorted" : "sorted from the end";
    }

    void change(Model& model) const override
    {
        std::sort(model.rows.begin(), model.rows.end(), [this](const QString& a, const QString& b) {
            return m_order == Qt::AscendingOrder ? a < b : b < a;
        });
        model.beginPass();
    }

    void perform(Scene& scene) const override { scene.sort(m_order); }
};

class SetSource : public Happening
{
    QStringList m_rows = someRows();

    std::string description() const override
    {
        return "another source of " + std::to_string(m_rows.size()) + " rows";
    }

    void change(Model& model) const override
    {
        model.hasOldSource = model.hasSource;
        model.hasSource = true;
        model.rows = m_rows;
        model.beginPass();
    }

    void perform(Scene& scene) const override { scene.setSource(m_rows); }
};

class LeaveSource : public SourceHappening
{
    std::string description() const override { return "no source"; }

    void change(Model& model) const override
    {
        model.hasOldSource = true;
        model.hasSource = false;
        model.beginPass();
    }

    void perform(Scene& scene) const override { scene.leaveSource(); }
};

class DestroySource : public SourceHappening
{
    std::string description() const override { return "source destroyed"; }

    void change(Model& model) const override
    {
        model.hasSource = false;
        model.beginPass();
    }

    void perform(Scene& scene) const override { scene.destroySource(); }
};

/// The filter hears no more of the source that it had before.
class ChangeOldSource : public Happening
{
public:
    void checkPreconditions(const Model& model) const override
    {
        RC_PRE(model.hasOldSource);
        RC_PRE(isNow());
    }

    void run(const Model& before, Scene& scene) const override
    {
        const int resets = scene.resets();
        Happening::run(before, scene);
        RC_ASSERT(scene.resets() == resets);
    }

private:
    std::string description() const override { return "the old source changed"; }
    void change(Model& /*model*/) const override { }
    void perform(Scene& scene) const override { scene.oldSource().setStringList({"a", "b"}); }
};

class Pause : public Happening
{
    bool m_isShort = *rc::gen::arbitrary<bool>();

    std::string description() const override { return "paused"; }

    void change(Model& model) const override
    {
        if (!isNow() && !model.isPaused)
            model.result = Result::Some;
        model.isPaused = true;
    }

    void perform(Scene& scene) const override
    {
        if (m_isShort)
            scene.filter().pause();
        else
            scene.filter().setPaused(true);
    }
};

/// What has been cut off stays so until there is a reason for a pass.
class Resume : public Happening
{
    std::string description() const override { return "resumed"; }

    void change(Model& model) const override
    {
        // The pass that is begun for it may find something from then on.
        if (!isNow() && model.isPaused)
            model.result = Result::Some;
        model.isPaused = false;
    }

    void perform(Scene& scene) const override { scene.filter().setPaused(false); }
};

class DestroyFilter : public Happening
{
    std::string description() const override { return "filter destroyed, and another made"; }

    void change(Model& model) const override
    {
        model.text.clear();
        model.isPaused = false;
        model.beginPass();
    }

    void perform(Scene& scene) const override { scene.destroyFilter(); }
};

} // namespace

class tst_list_filter_states : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    }

    void cleanupTestCase() { qInstallMessageHandler(nullptr); }

    void reportsWhatMatchesWhateverHappens()
    {
        QVERIFY(rc::check("the rows are those that match", [] {
            Scene scene;
            rc::state::check(
                Model(), scene,
                rc::state::gen::execOneOfWithArgs<SetText, InsertRows, RemoveRows, MoveRows,
                                                  ChangeRow, ResetRows, Sort, SetSource,
                                                  LeaveSource, DestroySource, ChangeOldSource,
                                                  Pause, Resume, DestroyFilter>());
        }));
    }
};

QTEST_GUILESS_MAIN(tst_list_filter_states)
#include "tst_list_filter_states.moc"
