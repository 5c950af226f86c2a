// Splitting a URI: the library against a bare scan, the expression that defines the rules in two
// engines, and QUrl.

#include <zvutil/uri.h>

#include <QRegularExpression>
#include <QString>
#include <QUrl>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <regex>
#include <string>
#include <string_view>

namespace {

constexpr char filePath[] = "file:///C:\\Users\\me\\My Documents\\first plan.testplan";
constexpr char fullText[] =
    "https://user@server.example.com:8080/path/to/page.html?x=1&y=2#section";
constexpr char noMatch[] = "C:\\Users\\me\\some other file.txt";

constexpr char expression[] = "(file|http|https):(?:\\/\\/((?:([^@ ]*)@)?([^:\\/ ]*)(?::(\\d*))?))?"
                              "([^?# ]*)(?:\\?([^# ]*))?(?:#([^ ]*))?";

/// The least that gives the result: one allocation for the parts, one for the text, and one look at
/// each character.
struct BareSplit
{
    explicit BareSplit(std::string_view source)
        : text(source.size()
                   + 2 * static_cast<std::size_t>(std::count(source.begin(), source.end(), ' ')),
               '\0')
    {
        char* out = text.data();
        for (const char c : source) {
            if (c == ' ')
                out = std::copy_n("%20", 3, out);
            else
                *out++ = c == '\\' ? '/' : c;
        }
        scan();
    }

    void scan()
    {
        const std::string_view all = text;
        const std::size_t length = all.substr(0, 6) == "https:" ? 5
            : all.substr(0, 5) == "file:"                       ? 4
            : all.substr(0, 5) == "http:"                       ? 4
                                                                : 0;
        if (length == 0)
            return;
        scheme = all.substr(0, length);
        kind = length == 5 ? 3 : all[0] == 'f' ? 1 : 2;
        const char* const end = all.data() + all.size();
        const char* p = all.data() + length + 1;
        if (end - p >= 2 && p[0] == '/' && p[1] == '/')
            p = scanAuthority(p + 2, end);
        const char* next = std::find_if(p, end, [](char c) { return c == '?' || c == '#'; });
        path = between(p, next);
        if (next != end && *next == '?') {
            p = next + 1;
            next = std::find(p, end, '#');
            query = between(p, next);
        }
        if (next != end)
            fragment = between(next + 1, end);
    }

    const char* scanAuthority(const char* p, const char* end)
    {
        const char* const start = p;
        const char* next = std::find(p, end, '@');
        if (next != end) {
            userinfo = between(p, next);
            p = next + 1;
        }
        next = std::find_if(p, end, [](char c) { return c == ':' || c == '/'; });
        host = between(p, next);
        if (next != end && *next == ':') {
            p = next + 1;
            next = std::find_if(p, end, [](char c) { return c < '0' || c > '9'; });
            port = between(p, next);
        }
        authority = between(start, next);
        return next;
    }

    static std::string_view between(const char* begin, const char* end)
    {
        return {begin, static_cast<std::size_t>(end - begin)};
    }

    std::string text;
    std::string_view scheme, authority, userinfo, host, port, path, query, fragment;
    int kind = 0;
};

void library(benchmark::State& state, const char* text)
{
    const std::string argument = text;
    for (auto _ : state) {
        const zvutil::uri uri(argument);
        benchmark::DoNotOptimize(uri.path().data());
    }
}

void bareScan(benchmark::State& state, const char* text)
{
    const std::string argument = text;
    const zvutil::uri expected(argument);
    const BareSplit check(argument);
    if (check.text != expected.text() || check.host != expected.host()
        || check.path != expected.path() || check.fragment != expected.fragment())
        state.SkipWithError("the floor gives another result");
    for (auto _ : state) {
        const auto split = std::make_unique<BareSplit>(argument);
        benchmark::DoNotOptimize(split->path.data());
    }
}

std::string normalised(const std::string& text, const std::regex& backslash,
                       const std::regex& blank)
{
    return std::regex_replace(std::regex_replace(text, backslash, "/"), blank, "%20");
}

void regexPerParse(benchmark::State& state, const char* text)
{
    const std::string argument = text;
    for (auto _ : state) {
        const std::string result = normalised(argument, std::regex("\\\\"), std::regex(" "));
        const std::regex compiled(expression);
        std::smatch match;
        benchmark::DoNotOptimize(std::regex_match(result, match, compiled));
    }
}

void regexKept(benchmark::State& state, const char* text)
{
    const std::string argument = text;
    const std::regex backslash("\\\\");
    const std::regex blank(" ");
    const std::regex compiled(expression);
    for (auto _ : state) {
        const std::string result = normalised(argument, backslash, blank);
        std::smatch match;
        benchmark::DoNotOptimize(std::regex_match(result, match, compiled));
    }
}

void qRegularExpression(benchmark::State& state, const char* text)
{
    const QString argument = QString::fromUtf8(text);
    const QRegularExpression compiled(
        QRegularExpression::anchoredPattern(QString::fromLatin1(expression)));
    for (auto _ : state) {
        QString result = argument;
        result.replace(QLatin1Char('\\'), QLatin1Char('/'))
            .replace(QLatin1Char(' '), QLatin1String("%20"));
        const QRegularExpressionMatch match = compiled.match(result);
        for (int i = 1; i <= 8; ++i)
            benchmark::DoNotOptimize(match.capturedRef(i));
    }
}

void qUrl(benchmark::State& state, const char* text)
{
    const QString argument = QString::fromUtf8(text);
    for (auto _ : state) {
        const QUrl url(argument);
        benchmark::DoNotOptimize(url.scheme());
        benchmark::DoNotOptimize(url.host());
        benchmark::DoNotOptimize(url.path());
        benchmark::DoNotOptimize(url.query());
        benchmark::DoNotOptimize(url.fragment());
    }
}

/// Time per character has to stay the same, however long the text is.
void longText(benchmark::State& state)
{
    const auto length = static_cast<std::size_t>(state.range(0));
    const std::string argument = "http://" + std::string(length, 'a');
    for (auto _ : state) {
        const zvutil::uri uri(argument);
        benchmark::DoNotOptimize(uri.path().data());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void registerCase(const std::string& name, const char* text)
{
    const std::pair<const char*, void (*)(benchmark::State&, const char*)> contenders[] = {
        {"floor", &bareScan},
        {"library", &library},
        {"std::regex per parse", &regexPerParse},
        {"std::regex kept", &regexKept},
        {"QRegularExpression", &qRegularExpression},
        {"QUrl", &qUrl},
    };
    for (const auto& [contender, run] : contenders)
        benchmark::RegisterBenchmark((name + '/' + contender).c_str(), run, text);
}

const bool registered = [] {
    registerCase("file path", filePath);
    registerCase("full https", fullText);
    registerCase("no match", noMatch);
    for (const std::int64_t megabytes : {1, 8, 64}) {
        const std::string name = "long text/" + std::to_string(megabytes) + " MB";
        benchmark::RegisterBenchmark(name.c_str(), &longText)->Arg(megabytes << 20);
    }
    return true;
}();

} // namespace
