// Converting texts: the library against the standard library's converters, made for each call, and
// against QString, which is the floor.

#include <zvutil/ZvBasicString.h>

#include <QByteArray>
#include <QString>

#include <benchmark/benchmark.h>

#include <codecvt>
#include <cstddef>
#include <locale>
#include <string>

namespace {

using zvutil::ZvBasicString;

/// One text in all units.
struct Sample
{
    QString qt;
    QByteArray utf8;
    std::u16string units16;
    std::u32string units32;
    std::wstring wide;
};

constexpr std::size_t megabyte = std::size_t(1) << 20;

Sample sampleOf(const QString& text)
{
    return {text, text.toUtf8(), text.toStdU16String(), text.toStdU32String(), text.toStdWString()};
}

QString repeated(const QString& text)
{
    return text.repeated(static_cast<int>(megabyte) / text.size());
}

const Sample& shortText()
{
    static const Sample sample = sampleOf(QStringLiteral("C:\\plans\\first.zvsch"));
    return sample;
}

const Sample& megabyteOfAscii()
{
    static const Sample sample =
        sampleOf(repeated(QStringLiteral("Test plan 12, step 4: the relay opens within 5 ms.\n")));
    return sample;
}

/// No surrogates: the standard converters don't take them.
const Sample& megabyteOfMixedText()
{
    static const Sample sample = sampleOf(
        repeated(QStringLiteral("Pr\u00FCfplan 12, Schritt 4: Relais \u00F6ffnet nach \u2264 5 ms, "
                                "3,3 V \u00B1 2 %, \u7EE7\u7535\u5668\u6D4B\u8BD5, 48 \u20AC.\n")));
    return sample;
}

template <typename Convert, typename Expected>
void run(benchmark::State& state, Convert convert, const Expected& expected)
{
    if (!(convert() == expected))
        state.SkipWithError("another result");
    for (auto _ : state)
        benchmark::DoNotOptimize(convert());
}

// 16-bit units to UTF-8.

void library16To8(benchmark::State& state, const Sample& sample)
{
    const ZvBasicString<char16_t> text(sample.units16);
    run(
        state, [&] { return text.toString(); }, sample.utf8.toStdString());
}

void converter16To8(benchmark::State& state, const Sample& sample)
{
    const auto convert = [&] {
        return std::wstring_convert<std::codecvt_utf8<char16_t>, char16_t>().to_bytes(
            sample.units16);
    };
    run(state, convert, sample.utf8.toStdString());
}

void qt16To8(benchmark::State& state, const Sample& sample)
{
    run(
        state, [&] { return sample.qt.toUtf8(); }, sample.utf8);
}

// Wide text to UTF-8.

void libraryWideTo8(benchmark::State& state, const Sample& sample)
{
    const ZvBasicString<wchar_t> text(sample.wide);
    run(
        state, [&] { return text.toString(); }, sample.utf8.toStdString());
}

void converterWideTo8(benchmark::State& state, const Sample& sample)
{
    const auto convert = [&] {
        return std::wstring_convert<std::codecvt_utf8<wchar_t>, wchar_t>().to_bytes(sample.wide);
    };
    run(state, convert, sample.utf8.toStdString());
}

// 7-bit text to 16-bit units. Two converters are laid down, of which the first isn't to be had.

void library8To16(benchmark::State& state, const Sample& sample)
{
    const ZvBasicString<char> text(sample.utf8.constData());
    run(
        state, [&] { return text.toU16String(); }, sample.units16);
}

void converter8To16(benchmark::State& state, const Sample& sample)
{
    const std::string bytes = sample.utf8.toStdString();
    const auto convert = [&] {
        return std::wstring_convert<std::codecvt_utf8_utf16<char16_t>, char16_t>().from_bytes(
            bytes);
    };
    run(state, convert, sample.units16);
}

void qt8To16(benchmark::State& state, const Sample& sample)
{
    run(
        state, [&] { return QString::fromUtf8(sample.utf8); }, sample.qt);
}

// 32-bit to 16-bit units, with two converters.

void library32To16(benchmark::State& state, const Sample& sample)
{
    const ZvBasicString<char32_t> text(sample.units32);
    run(
        state, [&] { return text.toU16String(); }, sample.units16);
}

void converter32To16(benchmark::State& state, const Sample& sample)
{
    const auto convert = [&] {
        const std::string bytes =
            std::wstring_convert<std::codecvt_utf8<char32_t>, char32_t>().to_bytes(sample.units32);
        return std::wstring_convert<std::codecvt_utf8_utf16<char16_t>, char16_t>().from_bytes(
            bytes);
    };
    run(state, convert, sample.units16);
}

void qt32To16(benchmark::State& state, const Sample& sample)
{
    run(
        state, [&] { return QString::fromStdU32String(sample.units32); }, sample.qt);
}

using Contender = void (*)(benchmark::State&, const Sample&);

void registerCase(const std::string& name, const Sample& (*sample)(), Contender library,
                  Contender converter, Contender floor)
{
    const std::pair<const char*, Contender> contenders[] = {
        {"floor", floor},
        {"library", library},
        {"std::wstring_convert", converter},
    };
    for (const auto& [contender, run] : contenders)
        benchmark::RegisterBenchmark(
            (name + '/' + contender).c_str(),
            [run = run, sample](benchmark::State& state) { run(state, sample()); });
}

void registerSample(const std::string& name, const Sample& (*sample)())
{
    registerCase(name + ", 16 to 8", sample, &library16To8, &converter16To8, &qt16To8);
    registerCase(name + ", wide to 8", sample, &libraryWideTo8, &converterWideTo8, &qt16To8);
    registerCase(name + ", 32 to 16", sample, &library32To16, &converter32To16, &qt32To16);
}

const bool registered = [] {
    registerSample("20 units", &shortText);
    registerSample("1 MB ASCII", &megabyteOfAscii);
    registerSample("1 MB mixed", &megabyteOfMixedText);
    // Only 7-bit text converts from bytes.
    registerCase("20 units, 8 to 16", &shortText, &library8To16, &converter8To16, &qt8To16);
    registerCase("1 MB ASCII, 8 to 16", &megabyteOfAscii, &library8To16, &converter8To16, &qt8To16);
    return true;
}();

} // namespace
