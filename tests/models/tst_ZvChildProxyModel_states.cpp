// A branch of a tree after any changes of the tree, compared with a model of both.

#include "ModelComplaints.h"
#include "Trees.h"

#include "support/rapidcheck.h"

#include <QAbstractItemModelTester>
#include <QTest>

#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using zvtest::ModelComplaints;
using zvtest::MovableTree;
using zvtest::Proxy;
using zvtest::Signals;

constexpr int depth = 3;

/// The rows that lead to a row of the tree; an empty one means the invisible top.
using Path = std::vector<int>;

struct Node
{
    std::string text;
    bool isRoot = false;
    std::vector<Node> children;
};

void fill(Node& parent, int levels)
{
    for (int row = 0; levels > 0 && row < 3; ++row) {
        parent.children.push_back({parent.text + std::to_string(row), false, {}});
        fill(parent.children.back(), levels - 1);
    }
}

/// What source and branch have to be. The root is where its mark is.
struct Tree
{
    Tree() { fill(top, depth); }

    Node top;
    int inserted = 0;
    bool hasSource = true;
};

template <typename SomeNode>
SomeNode* find(SomeNode& top, const Path& path)
{
    SomeNode* node = &top;
    for (const int row : path) {
        if (row >= static_cast<int>(node->children.size()))
            return nullptr;
        node = &node->children[static_cast<std::size_t>(row)];
    }
    return node;
}

void appendPaths(std::vector<Path>& paths, const Node& node, const Path& path)
{
    paths.push_back(path);
    for (std::size_t row = 0; row < node.children.size(); ++row) {
        Path below = path;
        below.push_back(static_cast<int>(row));
        appendPaths(paths, node.children[row], below);
    }
}

/// All rows, and the top as the first.
std::vector<Path> paths(const Tree& tree)
{
    std::vector<Path> result;
    appendPaths(result, tree.top, {});
    return result;
}

std::optional<Path> rootOf(const Tree& tree)
{
    for (const Path& path : paths(tree)) {
        if (find(tree.top, path)->isRoot)
            return path;
    }
    return std::nullopt;
}

bool beginsWith(const Path& path, const Path& above)
{
    return path.size() >= above.size() && std::equal(above.begin(), above.end(), path.begin());
}

/// Whether what lies directly below a row belongs to the branch; without a root that is the top level.
bool isInBranch(const Tree& tree, const Path& parent)
{
    const std::optional<Path> root = rootOf(tree);
    return root ? beginsWith(parent, *root) : parent.empty();
}

std::string shown(const Node& node)
{
    std::string text;
    for (const Node& child : node.children) {
        const std::string below = shown(child);
        text += (text.empty() ? "" : " ") + child.text;
        if (!below.empty())
            text += " (" + below + ")";
    }
    return text;
}

/// What the branch announces of a change.
enum class Announced { Nothing, Change, Reset, Anything };

Announced announcedIf(bool isChange)
{
    return isChange ? Announced::Change : Announced::Nothing;
}

/// A source, a branch of it, and what is followed of both.
class Scene
{
public:
    Scene() { renewSource(); }

    MovableTree& source() { return *m_source; }

    QModelIndex at(const Path& path) const
    {
        QModelIndex index;
        for (const int row : path)
            index = m_source->index(row, 0, index);
        return index;
    }

    void setRoot(const Path& path) { m_proxy.setRootModelIndex(at(path)); }
    void destroySource() { m_source.reset(); }

    void renewSource()
    {
        auto source = std::make_unique<MovableTree>(depth);
        m_proxy.setSourceModel(source.get());
        m_source = std::move(source);
    }

    void hold(const Path& path)
    {
        const QModelIndex index = at(path);
        m_held.emplace_back(m_proxy.mapFromSource(index), index);
        RC_ASSERT(m_held.back().first.isValid());
    }

    /// Qt's tester refuses the rows without indexes of a model without a root.
    void endTester() { m_tester.reset(); }

    void beginStep() { m_signals.emplace(m_proxy); }

    void check(const Tree& tree, Announced announced)
    {
        const QStringList names = m_signals->names();
        RC_LOG() << "announced: " << names.join(", ").toStdString() << '\n';
        const int resets = names.count("reset");
        if (announced == Announced::Nothing)
            RC_ASSERT(names.isEmpty());
        else if (announced != Announced::Anything)
            RC_ASSERT((resets > 0) == (announced == Announced::Reset));
        if (announced == Announced::Change)
            RC_ASSERT_FALSE(names.isEmpty());
        checkRows(tree);
        checkHeld(resets > 0 || !tree.hasSource);
        RC_ASSERT(m_complaints.text() == "");
    }

private:
    void checkRows(const Tree& tree)
    {
        const std::optional<Path> root = rootOf(tree);
        if (!root) {
            const int rows = tree.hasSource ? static_cast<int>(tree.top.children.size()) : 0;
            RC_ASSERT(m_proxy.rowCount({}) == rows);
            RC_ASSERT_FALSE(m_proxy.index(0, 0, {}).isValid());
            return;
        }
        RC_ASSERT(zvtest::shown(m_proxy).toStdString() == shown(*find(tree.top, *root)));
        if (!m_tester)
            m_tester.emplace(&m_proxy, ModelComplaints::mode);
    }

    /// Each persistent index of the branch is where that of the source is, until a reset.
    void checkHeld(bool isReset)
    {
        for (const auto& [here, there] : m_held) {
            if (isReset)
                RC_ASSERT_FALSE(here.isValid());
            else
                RC_ASSERT(QModelIndex(here) == m_proxy.mapFromSource(there));
        }
        if (isReset)
            m_held.clear();
    }

    const ModelComplaints m_complaints;
    std::unique_ptr<MovableTree> m_source;
    Proxy m_proxy;
    std::optional<QAbstractItemModelTester> m_tester;
    std::optional<Signals> m_signals;
    std::vector<std::pair<QPersistentModelIndex, QPersistentModelIndex>> m_held;
};

std::ostream& operator<<(std::ostream& stream, const Path& path)
{
    stream << "top";
    for (const int row : path)
        stream << '/' << row;
    return stream;
}

class Step : public rc::state::Command<Tree, Scene>
{
public:
    void run(const Tree& before, Scene& scene) const override
    {
        const Tree after = nextState(before);
        if (!rootOf(after))
            scene.endTester();
        scene.beginStep();
        act(scene);
        scene.check(after, announced(before));
    }

protected:
    virtual void act(Scene& scene) const = 0;
    virtual Announced announced(const Tree& before) const = 0;

    static Path anyPath(const Tree& tree) { return *rc::gen::elementOf(paths(tree)); }

    /// Every other time in the branch, if there is one, since it is small.
    static Path anyPathNearRoot(const Tree& tree)
    {
        const std::optional<Path> root = rootOf(tree);
        if (!root || *rc::gen::arbitrary<bool>())
            return anyPath(tree);
        std::vector<Path> branch;
        appendPaths(branch, *find(tree.top, *root), *root);
        return *rc::gen::elementOf(branch);
    }

    static int anyRow(const Tree& tree, const Path& parent)
    {
        const auto count = static_cast<int>(find(tree.top, parent)->children.size());
        return *rc::gen::inRange(0, count + 1);
    }

    static bool isRow(const Tree& tree, const Path& parent, int row)
    {
        const Node* const node = find(tree.top, parent);
        return node && row < static_cast<int>(node->children.size());
    }

    static bool isPlace(const Tree& tree, const Path& parent, int row)
    {
        const Node* const node = find(tree.top, parent);
        return node && row <= static_cast<int>(node->children.size());
    }

    static Path below(Path parent, int row)
    {
        parent.push_back(row);
        return parent;
    }
};

class Insert : public Step
{
public:
    explicit Insert(const Tree& tree)
        : m_parent(anyPathNearRoot(tree))
        , m_row(anyRow(tree, m_parent))
    {
    }

    void checkPreconditions(const Tree& tree) const override
    {
        RC_PRE(tree.hasSource && isPlace(tree, m_parent, m_row));
    }

    void apply(Tree& tree) const override
    {
        Node& parent = *find(tree.top, m_parent);
        parent.children.insert(parent.children.begin() + m_row,
                               Node{"n" + std::to_string(++tree.inserted), false, {}});
    }

    void show(std::ostream& stream) const override
    {
        stream << "insert " << m_row << " of " << m_parent;
    }

protected:
    void act(Scene& scene) const override { scene.source().insert(scene.at(m_parent), m_row); }

    Announced announced(const Tree& before) const override
    {
        return announcedIf(isInBranch(before, m_parent));
    }

private:
    Path m_parent;
    int m_row;
};

class Remove : public Step
{
public:
    explicit Remove(const Tree& tree)
        : m_parent(anyPathNearRoot(tree))
        , m_row(anyRow(tree, m_parent))
    {
    }

    void checkPreconditions(const Tree& tree) const override
    {
        RC_PRE(tree.hasSource && isRow(tree, m_parent, m_row));
    }

    void apply(Tree& tree) const override
    {
        Node& parent = *find(tree.top, m_parent);
        parent.children.erase(parent.children.begin() + m_row);
    }

    void show(std::ostream& stream) const override
    {
        stream << "remove " << m_row << " of " << m_parent;
    }

protected:
    void act(Scene& scene) const override { scene.source().remove(scene.at(m_parent), m_row); }

    Announced announced(const Tree& before) const override
    {
        const std::optional<Path> root = rootOf(before);
        if (root && beginsWith(*root, below(m_parent, m_row)))
            return Announced::Reset;
        return announcedIf(isInBranch(before, m_parent));
    }

private:
    Path m_parent;
    int m_row;
};

class Move : public Step
{
public:
    explicit Move(const Tree& tree)
        : m_from(anyPathNearRoot(tree))
        , m_row(anyRow(tree, m_from))
        , m_to(anyPathNearRoot(tree))
        , m_place(anyRow(tree, m_to))
    {
    }

    void checkPreconditions(const Tree& tree) const override
    {
        RC_PRE(tree.hasSource && isRow(tree, m_from, m_row) && isPlace(tree, m_to, m_place));
        RC_PRE(!beginsWith(m_to, below(m_from, m_row)));
        RC_PRE(m_from != m_to || (m_place != m_row && m_place != m_row + 1));
    }

    void apply(Tree& tree) const override
    {
        Node& from = *find(tree.top, m_from);
        Node moved = std::move(from.children[static_cast<std::size_t>(m_row)]);
        from.children.erase(from.children.begin() + m_row);
        Path to = m_to;
        if (to.size() > m_from.size() && beginsWith(to, m_from) && to[m_from.size()] > m_row)
            --to[m_from.size()];
        std::vector<Node>& target = find(tree.top, to)->children;
        const int place = m_from == m_to && m_place > m_row ? m_place - 1 : m_place;
        target.insert(target.begin() + place, std::move(moved));
    }

    void show(std::ostream& stream) const override
    {
        stream << "move " << m_row << " of " << m_from << " to " << m_place << " of " << m_to;
    }

protected:
    void act(Scene& scene) const override
    {
        RC_ASSERT(scene.source().move(scene.at(m_from), m_row, scene.at(m_to), m_place));
    }

    Announced announced(const Tree& before) const override
    {
        const bool isFromHere = isInBranch(before, m_from);
        if (isFromHere != isInBranch(before, m_to))
            return Announced::Reset;
        return announcedIf(isFromHere);
    }

private:
    Path m_from;
    int m_row;
    Path m_to;
    int m_place;
};

class Rename : public Step
{
public:
    explicit Rename(const Tree& tree)
        : m_path(anyPathNearRoot(tree))
    {
    }

    void checkPreconditions(const Tree& tree) const override
    {
        RC_PRE(tree.hasSource && !m_path.empty() && find(tree.top, m_path) != nullptr);
    }

    void apply(Tree& tree) const override { find(tree.top, m_path)->text += '!'; }
    void show(std::ostream& stream) const override { stream << "rename " << m_path; }

protected:
    void act(Scene& scene) const override { scene.source().rename(scene.at(m_path)); }

    Announced announced(const Tree& before) const override
    {
        const std::optional<Path> root = rootOf(before);
        return announcedIf(root && *root != m_path && beginsWith(m_path, *root));
    }

private:
    Path m_path;
};

class Reverse : public Step
{
public:
    explicit Reverse(const Tree& tree)
        : m_path(anyPathNearRoot(tree))
    {
    }

    void checkPreconditions(const Tree& tree) const override
    {
        RC_PRE(tree.hasSource && find(tree.top, m_path) != nullptr);
    }

    void apply(Tree& tree) const override
    {
        std::vector<Node>& children = find(tree.top, m_path)->children;
        std::reverse(children.begin(), children.end());
    }

    void show(std::ostream& stream) const override { stream << "reverse " << m_path; }

protected:
    void act(Scene& scene) const override { scene.source().reverse(scene.at(m_path)); }

    /// A change above the root counts as well.
    Announced announced(const Tree& before) const override
    {
        const std::optional<Path> root = rootOf(before);
        return announcedIf(isInBranch(before, m_path) || (root && beginsWith(*root, m_path)));
    }

private:
    Path m_path;
};

class ResetSource : public Step
{
public:
    void checkPreconditions(const Tree& tree) const override { RC_PRE(tree.hasSource); }

    void apply(Tree& tree) const override
    {
        const int inserted = tree.inserted;
        tree = Tree();
        tree.inserted = inserted;
    }

    void show(std::ostream& stream) const override { stream << "reset the source"; }

protected:
    void act(Scene& scene) const override { scene.source().reset(depth); }
    Announced announced(const Tree& /*before*/) const override { return Announced::Reset; }
};

class SetRoot : public Step
{
public:
    explicit SetRoot(const Tree& tree)
        : m_path(anyPath(tree))
    {
    }

    void checkPreconditions(const Tree& tree) const override
    {
        RC_PRE(tree.hasSource && find(tree.top, m_path) != nullptr);
    }

    void apply(Tree& tree) const override
    {
        if (const std::optional<Path> root = rootOf(tree))
            find(tree.top, *root)->isRoot = false;
        find(tree.top, m_path)->isRoot = !m_path.empty();
    }

    void show(std::ostream& stream) const override { stream << "set the root " << m_path; }

protected:
    void act(Scene& scene) const override { scene.setRoot(m_path); }
    Announced announced(const Tree& /*before*/) const override { return Announced::Reset; }

private:
    Path m_path;
};

class Hold : public Step
{
public:
    explicit Hold(const Tree& tree)
        : m_path(anyPathNearRoot(tree))
    {
    }

    void checkPreconditions(const Tree& tree) const override
    {
        const std::optional<Path> root = rootOf(tree);
        // In parentheses, since RC_PRE looks at both sides of what it sees.
        RC_PRE((root && *root != m_path && beginsWith(m_path, *root)));
        RC_PRE(find(tree.top, m_path) != nullptr);
    }

    void show(std::ostream& stream) const override { stream << "hold " << m_path; }

protected:
    void act(Scene& scene) const override { scene.hold(m_path); }
    Announced announced(const Tree& /*before*/) const override { return Announced::Nothing; }

private:
    Path m_path;
};

class DestroySource : public Step
{
public:
    void checkPreconditions(const Tree& tree) const override { RC_PRE(tree.hasSource); }

    void apply(Tree& tree) const override
    {
        tree = Tree();
        tree.hasSource = false;
    }

    void show(std::ostream& stream) const override { stream << "destroy the source"; }

protected:
    void act(Scene& scene) const override { scene.destroySource(); }
    Announced announced(const Tree& /*before*/) const override { return Announced::Anything; }
};

class RenewSource : public Step
{
public:
    void apply(Tree& tree) const override { tree = Tree(); }
    void show(std::ostream& stream) const override { stream << "set another source"; }

protected:
    void act(Scene& scene) const override { scene.renewSource(); }
    Announced announced(const Tree& /*before*/) const override { return Announced::Reset; }
};

} // namespace

class tst_ZvChildProxyModel_states : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void branchIsThatOfTheSourceAfterEachChange()
    {
        QVERIFY(rc::check("the branch is that of the source", [] {
            Scene scene;
            rc::state::check(
                Tree(), scene,
                rc::state::gen::execOneOfWithArgs<Insert, Insert, Remove, Move, Move, Move, Rename,
                                                  Reverse, SetRoot, SetRoot, Hold, Hold, Hold,
                                                  ResetSource, DestroySource, RenewSource>());
        }));
    }
};

QTEST_GUILESS_MAIN(tst_ZvChildProxyModel_states)
#include "tst_ZvChildProxyModel_states.moc"
