// Lexical work on paths of 58 characters: the library against the standard library's path, Boost's and
// Qt's file classes. The floor is the barest form with the same result: a handle with an allocation of its
// own, and a text in 16-bit units.

#include <zvutil/ZvFilePath.h>

#include <QDir>
#include <QFileInfo>
#include <QString>

#include <benchmark/benchmark.h>
#include <boost/filesystem/path.hpp>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace {

constexpr char text[] = "/home/me/Documents/projects/converter/plans/first.testplan";
constexpr char sameText[] = "/home/me/Documents/projects/converter/plans/first.testplan";
constexpr char otherText[] = "/home/me/Documents/projects/converter/plans/first.testplaX";
constexpr char baseText[] = "/home/me/Documents/projects/converter/schematics/board";
static_assert(sizeof(text) - 1 == 58);

/// What a handle can't do without.
struct Floor
{
    explicit Floor(std::u16string_view t)
        : text(std::make_unique<std::u16string>(t))
    {
    }
    explicit Floor(const char* t)
        : text(std::make_unique<std::u16string>(t, t + std::char_traits<char>::length(t)))
    {
    }

    std::unique_ptr<std::u16string> text;
};

template <typename Work>
void run(benchmark::State& state, Work work)
{
    for (auto _ : state) {
        auto result = work();
        benchmark::DoNotOptimize(result);
    }
}

template <typename Work>
void contend(const std::string& subject, const char* contender, Work work)
{
    benchmark::RegisterBenchmark((subject + '/' + contender).c_str(),
                                 [work](benchmark::State& state) { run(state, work); });
}

/// Of two texts that are equal up to the last character, or to the end.
void registerCompare(const std::string& subject, const char* second)
{
    using zvutil::ZvFilePath;
    contend(subject, "floor",
            [a = std::u16string(text, text + 58), b = std::u16string(second, second + 58)] {
                return a == b;
            });
    contend(subject, "library", [a = ZvFilePath(text), b = ZvFilePath(second)] { return a == b; });
    contend(
        subject, "std::filesystem::path",
        [a = std::filesystem::path(text), b = std::filesystem::path(second)] { return a == b; });
    contend(subject, "boost::filesystem::path",
            [a = boost::filesystem::path(text), b = boost::filesystem::path(second)] {
                return a == b;
            });
    contend(subject, "QFileInfo",
            [a = QFileInfo(QString::fromUtf8(text)), b = QFileInfo(QString::fromUtf8(second))] {
                return a == b;
            });
}

/// What can be asked of one path.
template <typename Library, typename Standard, typename Boost, typename Qt, typename FloorWork>
void registerPart(const std::string& subject, Library library, Standard standard, Boost boost,
                  Qt qt, FloorWork floor)
{
    contend(subject, "floor", [floor, f = std::u16string(text, text + 58)] { return floor(f); });
    contend(subject, "library", [library, p = zvutil::ZvFilePath(text)] { return library(p); });
    contend(subject, "std::filesystem::path",
            [standard, p = std::filesystem::path(text)] { return standard(p); });
    contend(subject, "boost::filesystem::path",
            [boost, p = boost::filesystem::path(text)] { return boost(p); });
    // As it is used: code that works with Qt keeps paths as QString and asks a QFileInfo made for that.
    contend(subject, "QFileInfo", [qt, p = QString::fromUtf8(text)] { return qt(p); });
}

void registerConstruct()
{
    contend("construct", "floor", [] { return Floor(text); });
    contend("construct", "library", [] { return zvutil::ZvFilePath(text); });
    contend("construct", "std::filesystem::path", [] { return std::filesystem::path(text); });
    contend("construct", "boost::filesystem::path", [] { return boost::filesystem::path(text); });
    contend("construct", "QFileInfo", [] { return QFileInfo(QString::fromUtf8(text)); });
}

void registerCopy()
{
    registerPart(
        "copy", [](const auto& p) { return zvutil::ZvFilePath(p); },
        [](const auto& p) { return std::filesystem::path(p); },
        [](const auto& p) { return boost::filesystem::path(p); },
        [](const auto& p) { return QFileInfo(p); },
        [](const std::u16string& f) { return Floor(std::u16string_view(f)); });
}

void registerCopyAssignment()
{
    contend("copy assignment", "library",
            [target = zvutil::ZvFilePath(), source = zvutil::ZvFilePath(text)]() mutable {
                target = source;
                return target.size();
            });
    contend("copy assignment", "std::filesystem::path",
            [target = std::filesystem::path(), source = std::filesystem::path(text)]() mutable {
                target = source;
                return target.native().size();
            });
}

void registerAppend()
{
    const auto append = [](const auto& p) {
        static const std::decay_t<decltype(p)> name("schematic.zvsch");
        auto result = p;
        result /= name;
        return result;
    };
    registerPart(
        "copy and append", append, append, append,
        [](const QString& p) {
            static const QString name = QStringLiteral("schematic.zvsch");
            return QDir(p).filePath(name);
        },
        [](const std::u16string& f) {
            Floor result{std::u16string_view(f)};
            result.text->reserve(f.size() + 16);
            *result.text += u'/';
            *result.text += u"schematic.zvsch";
            return result;
        });
}

void registerParts()
{
    registerPart(
        "filename", [](const auto& p) { return p.filename(); },
        [](const auto& p) { return p.filename(); }, [](const auto& p) { return p.filename(); },
        [](const QString& p) { return QFileInfo(p).fileName(); },
        [](const std::u16string& f) {
            return Floor(std::u16string_view(f).substr(f.rfind(u'/') + 1));
        });
    registerPart(
        "parent", [](const auto& p) { return p.parentPath(); },
        [](const auto& p) { return p.parent_path(); },
        [](const auto& p) { return p.parent_path(); },
        [](const QString& p) { return QFileInfo(p).path(); },
        [](const std::u16string& f) {
            return Floor(std::u16string_view(f).substr(0, f.rfind(u'/')));
        });
    registerPart(
        "extension", [](const auto& p) { return p.extension(); },
        [](const auto& p) { return p.extension(); }, [](const auto& p) { return p.extension(); },
        [](const QString& p) { return QFileInfo(p).suffix(); },
        [](const std::u16string& f) {
            return Floor(std::u16string_view(f).substr(f.rfind(u'.')));
        });
    registerPart(
        "relative",
        [base = zvutil::ZvFilePath(baseText)](const auto& p) { return p.lexicallyRelative(base); },
        [base = std::filesystem::path(baseText)](const auto& p) {
            return p.lexically_relative(base);
        },
        [base = boost::filesystem::path(baseText)](const auto& p) {
            return p.lexically_relative(base);
        },
        [base = QDir(QString::fromUtf8(baseText))](const auto& p) {
            return base.relativeFilePath(p);
        },
        [](const std::u16string& f) {
            Floor result(std::u16string_view(u"../.."));
            result.text->append(f, f.find(u"/plans"), std::u16string::npos);
            return result;
        });
}

const bool registered = [] {
    registerConstruct();
    registerCopy();
    registerCopyAssignment();
    registerCompare("compare, equal", sameText);
    registerCompare("compare, last differs", otherText);
    registerAppend();
    registerParts();
    return true;
}();

} // namespace
