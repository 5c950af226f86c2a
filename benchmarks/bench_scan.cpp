// Listing 200,000 files in 2,000 directories: the library against a count by the raw directory calls,
// which is the floor, against find, and against the iterators of the standard library and of Qt. The
// whole way leads to rows in a model. The clock stops when they are there: what was made goes behind it, for
// each contender. The peak is that of memory, in bytes for each file.

#include "support/Quick.h"
#include "support/memory.h"

#include <zvutil/ZvMultiDirectoryListModel.h>

#include "impl/models/ZvMultiDirectoryListModelProcess.h"
#include "impl/models/directory_walk.h"
#include "impl/models/found_files.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <system_error>
#include <thread>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

void makeApplication()
{
    static int count = 1;
    static char name[] = "bench_scan";
    static char* arguments[] = {name, nullptr};
    static QCoreApplication application(count, arguments);
}

/// A tree of directories with 100 files each, whose paths have 61 characters. It lies in memory,
/// since a disk may take minutes to make one.
class Tree
{
public:
    static const Tree& ofFiles(int files)
    {
        static std::map<int, std::unique_ptr<Tree>> trees;
        std::unique_ptr<Tree>& tree = trees[files];
        if (!tree)
            tree.reset(new Tree(files));
        return *tree;
    }

    ~Tree() { fs::remove_all(path()); }

    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    int files() const { return m_files; }
    std::string path() const { return m_dir.path().toStdString(); }

    /// One entry is passed over, and the last directory is listed.
    bool isCount(int count) const { return count >= m_files - 1 && count <= m_files + 1; }

private:
    explicit Tree(int files)
        : m_files(files)
        , m_dir(fs::exists("/dev/shm") ? QStringLiteral("/dev/shm/bench-XXXXXX")
                                       : QStringLiteral("bench-XXXXXX"))
    {
        m_dir.setAutoRemove(false);
        const auto pad = [](int number, std::size_t width) {
            const std::string digits = std::to_string(number);
            return std::string(width - digits.size(), '0') + digits;
        };
        const std::size_t rest = 61 - path().size() - 1 - 15 - 1 - 4;
        for (int i = 0; i < files; i += 100) {
            const std::string folder = path() + "/directory-" + pad(i / 100, 5);
            fs::create_directory(folder);
            const int descriptor = open(folder.c_str(), O_DIRECTORY | O_RDONLY);
            for (int k = 0; k < 100; ++k) {
                const std::string name = pad(k, rest) + ".txt";
                if (mknodat(descriptor, name.c_str(), S_IFREG | 0600, 0) != 0)
                    qFatal("there is no room for the files");
            }
            close(descriptor);
        }
    }

    int m_files;
    QTemporaryDir m_dir;
};

/// How many files were found, and what was made of them.
struct Found
{
    int files = 0;
    std::shared_ptr<const void> kept;
};

int countFiles(int folder)
{
    int count = 0;
    DIR* const directory = fdopendir(folder);
    while (const dirent* entry = readdir(directory)) {
        if (entry->d_type == DT_REG)
            ++count;
        else if (entry->d_type == DT_DIR && entry->d_name[0] != '.')
            count += countFiles(openat(dirfd(directory), entry->d_name, O_DIRECTORY | O_RDONLY));
    }
    closedir(directory);
    return count;
}

Found floorCount(const Tree& tree)
{
    return {countFiles(open(tree.path().c_str(), O_DIRECTORY | O_RDONLY)), nullptr};
}

Found findCount(const Tree& tree)
{
    QProcess find;
    find.setStandardOutputFile(QStringLiteral("/dev/null"));
    find.start(QStringLiteral("find"),
               {QString::fromStdString(tree.path()), QStringLiteral("-type"), QStringLiteral("f")});
    find.waitForFinished(-1);
    return {find.exitCode() == 0 ? tree.files() : 0, nullptr};
}

/// The first pass of a scan.
Found walkCount(const Tree& tree)
{
    std::error_code error;
    const std::wstring path = QString::fromStdString(tree.path()).toStdWString();
    zvutil::impl::directory_walk walk(path, error);
    const auto found = std::make_shared<zvutil::impl::found_files>();
    std::u16string name;
    int count = 0;
    while (!error && !walk.at_end()) {
        walk.increment(error);
        if (!walk.is_file(error))
            continue;
        name.clear();
        walk.append_name(name);
        found->add(walk.folder(), name);
        ++count;
    }
    return {count, found};
}

template <bool IsCached>
Found standardCount(const Tree& tree)
{
    int count = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree.path()))
        count += IsCached ? entry.is_regular_file() : fs::is_regular_file(entry.path()) ? 1 : 0;
    return {count, nullptr};
}

Found qtStrings(const Tree& tree)
{
    QDirIterator iterator(QString::fromStdString(tree.path()), QDir::Files,
                          QDirIterator::Subdirectories);
    const auto paths = std::make_shared<std::deque<QString>>();
    while (iterator.hasNext())
        paths->push_back(iterator.next());
    return {static_cast<int>(paths->size()), paths};
}

Found standardStrings(const Tree& tree)
{
    const auto paths = std::make_shared<std::deque<std::string>>();
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(tree.path())) {
        if (entry.is_regular_file())
            paths->push_back(entry.path().native());
    }
    return {static_cast<int>(paths->size()), paths};
}

/// A model, and the event loop that it needs.
class Listing
{
public:
    Listing()
    {
        QObject::connect(&m_model, &ZvMultiDirectoryListModel::backgroundProcessStopped, &m_model,
                         [this] { m_loop.quit(); });
        wait();
    }

    int list(const Tree& tree)
    {
        m_model.addDirectory(tree.path().c_str());
        wait();
        return m_model.rowCount(QModelIndex());
    }

private:
    void wait() { m_loop.exec(); }

    ZvMultiDirectoryListModel m_model;
    QEventLoop m_loop;
};

Found rows(const Tree& tree)
{
    const auto listing = std::make_shared<Listing>();
    return {listing->list(tree), listing};
}

int fileCount()
{
    return zvbench::isQuick() ? 2'000 : 200'000;
}

double secondsOf(const std::function<void()>& work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

void contend(const std::string& name, Found (*work)(const Tree&), bool hasPeak)
{
    benchmark::RegisterBenchmark(name.c_str(), [work, hasPeak](benchmark::State& state) {
        makeApplication();
        const Tree& tree = Tree::ofFiles(fileCount());
        for (auto _ : state) {
            const zvbench::PeakMemory peak;
            Found found;
            state.SetIterationTime(secondsOf([&] { found = work(tree); }));
            if (!tree.isCount(found.files))
                state.SkipWithError("not all files were found");
            if (hasPeak)
                state.counters["peak"] = static_cast<double>(peak.bytes()) / tree.files();
        }
    })->UseManualTime();
}

/// The time of the whole way for each file, by how many there are.
void perFile(benchmark::State& state)
{
    makeApplication();
    const int files = zvbench::isQuick() ? 2'000 : static_cast<int>(state.range(0));
    const Tree& tree = Tree::ofFiles(files);
    for (auto _ : state) {
        Found found;
        state.SetIterationTime(secondsOf([&] { found = rows(tree); }) / files);
    }
}

double processorSecondsOf(const std::function<void()>& work)
{
    const std::clock_t begin = std::clock();
    work();
    return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

/// The processor time of the second pass for each file, without the model.
void changeOfFilter(benchmark::State& state, const char* text)
{
    makeApplication();
    const Tree& tree = Tree::ofFiles(fileCount());
    ZvMultiDirectoryListModelProcess process(1000);
    process.addDirectory(QString::fromStdString(tree.path()).toStdWString());
    for (auto _ : state) {
        const double taken = processorSecondsOf(
            [&process, text] { process.setFilterFixedString(QString::fromLatin1(text)); });
        state.SetIterationTime(taken / tree.files());
    }
}

/// What a row takes by itself: its text in a `QString`, that in a `QVariant`, that in a list, which is dropped
/// when it has 1,000 of them. The texts lie one behind the other.
void makeRows(const std::vector<int>& lengths, const std::u16string& texts)
{
    QList<QVariant> rows;
    const char16_t* text = texts.data();
    for (const int length : lengths) {
        rows.append(QVariant());
        rows.last() = QVariant(QString(reinterpret_cast<const QChar*>(text), length));
        text += length;
        benchmark::DoNotOptimize(rows.last());
        if (rows.size() == 1'000)
            rows.clear();
    }
}

/// The processor time of that for each file, in the second pass as well.
void rowsAlone(benchmark::State& state)
{
    const Tree& tree = Tree::ofFiles(fileCount());
    std::vector<int> lengths;
    std::u16string texts;
    QDirIterator files(QString::fromStdString(tree.path()), QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const std::u16string path = files.next().toStdU16String();
        lengths.push_back(static_cast<int>(path.size()));
        texts += path;
    }
    makeRows(lengths, texts);
    for (auto _ : state) {
        const double taken = processorSecondsOf([&] { makeRows(lengths, texts); });
        state.SetIterationTime(taken / static_cast<double>(lengths.size()));
    }
}

/// How long the end of a model takes that is in the middle of a scan.
void destruction(benchmark::State& state)
{
    makeApplication();
    const Tree& tree = Tree::ofFiles(fileCount());
    for (auto _ : state) {
        auto model = std::make_unique<ZvMultiDirectoryListModel>();
        model->addDirectory(tree.path().c_str());
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        state.SetIterationTime(secondsOf([&model] { model.reset(); }));
    }
}

const bool registered = [] {
    contend("walk/floor", &floorCount, true);
    contend("walk/library", &walkCount, true);
    contend("walk/find", &findCount, false);
    contend("walk/std, cached type", &standardCount<true>, false);
    contend("walk/std, status()", &standardCount<false>, false);
    contend("walk/std, strings kept", &standardStrings, true);
    contend("list/floor", &floorCount, true);
    contend("list/library", &rows, true);
    contend("list/find", &findCount, false);
    contend("list/QDirIterator", &qtStrings, true);
    for (const int files : {20'000, 200'000, 2'000'000})
        benchmark::RegisterBenchmark(("each file of/" + std::to_string(files)).c_str(), &perFile)
            ->Arg(files)
            ->UseManualTime()
            ->Iterations(1);
    const auto filter = [](const std::string& name, const char* text) {
        benchmark::RegisterBenchmark(
            name.c_str(), [text](benchmark::State& state) { changeOfFilter(state, text); })
            ->UseManualTime()
            ->Iterations(1);
    };
    filter("filter, each file/no hit", "nowhere");
    filter("filter, each file/all hits", ".TXT");
    filter("filter, each file/no filter", "");
    benchmark::RegisterBenchmark("filter, each file/rows alone", &rowsAlone)
        ->UseManualTime()
        ->Iterations(1);
    benchmark::RegisterBenchmark("destruction/library", &destruction)
        ->UseManualTime()
        ->Iterations(1);
    return true;
}();

} // namespace
