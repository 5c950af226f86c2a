// A list of files after any calls, while another thread changes the directories that are scanned. When both
// have come to rest, the rows are those of a plain walk.

#include "DirectoryListModel.h"
#include "ModelComplaints.h"

#include "support/Background.h"
#include "support/FileTree.h"
#include "support/WalkOracle.h"
#include "support/rapidcheck.h"

#include <zvutil/ZvFilePath.h>

#include <QCoreApplication>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

/// What may be listed; one lies in another.
const Names places = {"a", "b", "c", "a/d"};
const Names folders = {"a", "b", "c", "a/d", "a/d/e", "b/f", "c/d"};
/// The last name begins with a byte order mark.
const Names files = {"x.txt", "y.bin", "z.TXT", "xy.txt", "w.txt", "\xEF\xBB\xBFx.txt"};

/// What the model was told. The directories themselves are on the disk.
struct Told
{
    Names places;
    Names types;
    std::string filter;
};

QString textOf(const std::string& text)
{
    return QString::fromStdString(text);
}

QStringList textsOf(const Names& names)
{
    QStringList texts;
    for (const std::string& name : names)
        texts.append(textOf(name));
    return texts;
}

/// A change of the tree. What it concerns may be missing.
struct Disturbance
{
    int kind;
    std::string folder;
    std::string file;
    std::string otherFolder;
    std::string otherFile;

    void happen(const fs::path& top) const
    {
        std::error_code ignored;
        const fs::path place = top / folder;
        switch (kind) {
        case 0:
        case 1:
            fs::create_directories(place, ignored);
            std::ofstream(place / file).put('x');
            break;
        case 2:
            fs::remove(place / file, ignored);
            break;
        case 3:
            fs::rename(place / file, top / otherFolder / otherFile, ignored);
            break;
        case 4:
            fs::rename(place, top / otherFolder, ignored);
            break;
        case 5:
            fs::remove_all(place, ignored);
            break;
        default:
            fs::create_directories(place, ignored);
            break;
        }
    }
};

constexpr int disturbances = 7;

std::ostream& operator<<(std::ostream& stream, const Disturbance& one)
{
    switch (one.kind) {
    case 0:
    case 1:
        return stream << "make " << one.folder << '/' << one.file;
    case 2:
        return stream << "remove " << one.folder << '/' << one.file;
    case 3:
        return stream << "rename " << one.folder << '/' << one.file << " to " << one.otherFolder
                      << '/' << one.otherFile;
    case 4:
        return stream << "rename " << one.folder << " to " << one.otherFolder;
    case 5:
        return stream << "remove " << one.folder;
    default:
        return stream << "make " << one.folder;
    }
}

/// A model, and a thread that changes what it lists.
class Scene
{
public:
    Scene() { renew({}); }

    zvtest::Model& model()
    {
        ++m_requests;
        return *m_model;
    }

    QString pathOf(const std::string& place) const { return m_tree.path(textOf(place)); }

    QList<zvutil::ZvFilePath> pathsOf(const Names& names) const
    {
        QList<zvutil::ZvFilePath> result;
        for (const std::string& name : names)
            result.append(zvutil::ZvFilePath(pathOf(name).toStdWString()));
        return result;
    }

    /// Destroys the model, as a rule in the midst of a scan, and makes another.
    void renew(const Told& told)
    {
        m_tester.reset();
        m_model = std::make_unique<zvtest::Model>(2, nullptr);
        m_tester.emplace(m_model.get(), zvtest::ModelComplaints::mode);
        m_scans = 0;
        m_requests = 1;
        QObject::connect(m_model.get(), &zvtest::Model::backgroundProcessStopped, m_model.get(),
                         [this] { ++m_scans; });
        if (!told.types.empty())
            model().setAllowedFileTypes(textsOf(told.types));
        if (!told.filter.empty())
            model().setFilterFixedString(textOf(told.filter));
        if (!told.places.empty())
            model().setDirectories(pathsOf(told.places));
    }

    void disturb(const std::vector<Disturbance>& changes)
    {
        m_other.post([top = zvtest::stdPath(m_tree.path()), changes] {
            for (const Disturbance& one : changes)
                one.happen(top);
        });
    }

    void check() const { RC_ASSERT(m_complaints.text() == ""); }

    /// Waits until nothing changes any more, and looks again.
    void checkAtRest(const Told& told)
    {
        m_other.deliverPending();
        model().reloadPaths();
        while (m_scans < m_requests) {
            QCoreApplication::processEvents();
            QThread::yieldCurrentThread();
        }
        check();
        RC_ASSERT(m_scans == m_requests);
        QStringList directories;
        for (const std::string& place : told.places)
            directories.append(pathOf(place));
        const QStringList rows = zvtest::rowsOf(*m_model);
        const QStringList expected =
            zvtest::expectedRows(directories, textsOf(told.types), textOf(told.filter));
        RC_ASSERT(rows.join('\n').toStdString() == expected.join('\n').toStdString());
        // A walk may look at its last entry twice, and where one listed place lies in another, both
        // have what is in it.
        if (told.places.size() == 1)
            RC_ASSERT(rows.size() - QSet<QString>(rows.begin(), rows.end()).size() <= 1);
    }

private:
    const zvtest::ModelComplaints m_complaints;
    const zvtest::FileTree m_tree;
    std::unique_ptr<zvtest::Model> m_model;
    std::optional<QAbstractItemModelTester> m_tester;
    int m_scans = 0;
    int m_requests = 0;
    // The last member, so that it ends before the tree.
    zvtest::Worker m_other;
};

class Step : public rc::state::Command<Told, Scene>
{
public:
    void run(const Told& before, Scene& scene) const override
    {
        act(before, scene);
        scene.check();
    }

protected:
    virtual void act(const Told& before, Scene& scene) const = 0;

    static std::string anyPlace() { return *rc::gen::elementOf(places); }
};

class AddPlace : public Step
{
public:
    void apply(Told& told) const override { told.places.push_back(m_place); }

    void show(std::ostream& stream) const override
    {
        stream << "add " << m_place << (m_hasTail ? ", with a NUL and more behind it" : "");
    }

protected:
    void act(const Told& /*before*/, Scene& scene) const override
    {
        fs::path path = zvtest::stdPath(scene.pathOf(m_place));
        if (m_hasTail)
            path += std::string("\0tail", 5);
        scene.model().addDirectory(path);
    }

private:
    std::string m_place = anyPlace();
    bool m_hasTail = *rc::gen::arbitrary<bool>();
};

class RemovePlace : public Step
{
public:
    void apply(Told& told) const override
    {
        told.places.erase(std::remove(told.places.begin(), told.places.end(), m_place),
                          told.places.end());
    }

    void show(std::ostream& stream) const override { stream << "remove " << m_place; }

protected:
    void act(const Told& /*before*/, Scene& scene) const override
    {
        scene.model().removeDirectory(scene.pathOf(m_place));
    }

private:
    std::string m_place = anyPlace();
};

class SetPlaces : public Step
{
public:
    void apply(Told& told) const override { told.places = m_places; }

    void show(std::ostream& stream) const override
    {
        stream << "set";
        for (const std::string& place : m_places)
            stream << ' ' << place;
    }

protected:
    void act(const Told& /*before*/, Scene& scene) const override
    {
        scene.model().setDirectories(scene.pathsOf(m_places));
    }

private:
    Names m_places = *rc::gen::container<Names>(rc::gen::elementOf(places));
};

class SetTypes : public Step
{
public:
    void apply(Told& told) const override { told.types = m_types; }

    void show(std::ostream& stream) const override
    {
        stream << "list types";
        for (const std::string& type : m_types)
            stream << ' ' << type;
    }

protected:
    void act(const Told& /*before*/, Scene& scene) const override
    {
        scene.model().setAllowedFileTypes(textsOf(m_types));
    }

private:
    Names m_types = *rc::gen::element(Names{}, Names{".txt"}, Names{".bin", ".txt"});
};

class SetFilter : public Step
{
public:
    void apply(Told& told) const override { told.filter = m_filter; }
    void show(std::ostream& stream) const override { stream << "filter \"" << m_filter << '"'; }

protected:
    void act(const Told& /*before*/, Scene& scene) const override
    {
        scene.model().setFilterFixedString(textOf(m_filter));
    }

private:
    std::string m_filter = *rc::gen::element<std::string>("", "", "x", "Y", "txt");
};

class Reload : public Step
{
public:
    void show(std::ostream& stream) const override { stream << "reload"; }

protected:
    void act(const Told& /*before*/, Scene& scene) const override { scene.model().reloadPaths(); }
};

class Renew : public Step
{
public:
    void show(std::ostream& stream) const override { stream << "destroy, and make another"; }

protected:
    void act(const Told& before, Scene& scene) const override { scene.renew(before); }
};

class HandleEvents : public Step
{
public:
    void show(std::ostream& stream) const override { stream << "handle events"; }

protected:
    void act(const Told& /*before*/, Scene& /*scene*/) const override
    {
        QCoreApplication::processEvents();
    }
};

class Disturb : public Step
{
public:
    void show(std::ostream& stream) const override
    {
        const char* separator = "";
        for (const Disturbance& one : m_changes) {
            stream << separator << one;
            separator = "; ";
        }
        if (m_changes.empty())
            stream << "disturb nothing";
    }

protected:
    void act(const Told& /*before*/, Scene& scene) const override { scene.disturb(m_changes); }

private:
    static Disturbance one()
    {
        return {*rc::gen::inRange(0, disturbances), *rc::gen::elementOf(folders),
                *rc::gen::elementOf(files), *rc::gen::elementOf(folders),
                *rc::gen::elementOf(files)};
    }

    std::vector<Disturbance> m_changes =
        *rc::gen::container<std::vector<Disturbance>>(rc::gen::exec(&Disturb::one));
};

class Rest : public Step
{
public:
    void show(std::ostream& stream) const override { stream << "rest"; }

protected:
    void act(const Told& before, Scene& scene) const override { scene.checkAtRest(before); }
};

} // namespace

class tst_ZvMultiDirectoryListModel_states : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rowsAreThoseOfAWalk()
    {
        QVERIFY(rc::check("the rows are those of a walk", [] {
            Scene scene;
            rc::state::check(
                Told(), scene,
                rc::state::gen::execOneOfWithArgs<
                    AddPlace, AddPlace, RemovePlace, SetPlaces, SetTypes, SetFilter, Reload, Renew,
                    HandleEvents, HandleEvents, Disturb, Disturb, Disturb, Rest, Rest>());
        }));
    }
};

QTEST_GUILESS_MAIN(tst_ZvMultiDirectoryListModel_states)
#include "tst_ZvMultiDirectoryListModel_states.moc"
