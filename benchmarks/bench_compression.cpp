// Whole files packed and unpacked: the library against the same three steps written out, which are its
// floor. Beside the time it tells the peak of memory, relative to the larger of source and result.

#include "support/memory.h"

#include <zvutil/ZvCompression.h>
#include <zvutil/ZvFilePath.h>

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdint>
#include <random>
#include <string>

namespace {

/// Some text that packs to about a third.
QByteArray sampleText()
{
    constexpr int size = 64 << 20;
    std::minstd_rand random(1);
    QByteArray text;
    text.reserve(size + 16);
    while (text.size() < size) {
        text += QByteArray::number(static_cast<int>(random() % 100'000));
        text += random() % 8 == 0 ? "\r\n" : "\t";
    }
    return text;
}

/// The files that all contenders work on.
class Files
{
public:
    static const Files& instance()
    {
        static const Files files;
        return files;
    }

    QString plain() const { return m_dir.filePath(QStringLiteral("plain")); }
    QString packed() const { return m_dir.filePath(QStringLiteral("packed")); }
    QString target() const { return m_dir.filePath(QStringLiteral("target")); }

private:
    Files()
    {
        const QByteArray text = sampleText();
        write(plain(), text);
        write(packed(), qCompress(text));
    }

    static void write(const QString& name, const QByteArray& bytes)
    {
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("there is no room for the files");
    }

    QTemporaryDir m_dir;
};

template <typename Convert>
void threeSteps(const QString& source, const QString& target, Convert convert)
{
    QFile in(source);
    QFile out(target);
    if (in.open(QIODevice::ReadOnly) && out.open(QIODevice::WriteOnly))
        out.write(convert(in.readAll()));
}

zvutil::ZvFilePath path(const QString& name)
{
    return {name.toStdWString()};
}

template <typename Work>
void contend(const char* name, Work work)
{
    benchmark::RegisterBenchmark(name, [work](benchmark::State& state) {
        const Files& files = Files::instance();
        const std::int64_t larger = QFile(files.plain()).size();
        for (auto _ : state) {
            const zvbench::PeakMemory peak;
            work(files);
            state.counters["peak"] =
                static_cast<double>(peak.bytes()) / static_cast<double>(larger);
        }
    })->UseRealTime();
}

const bool registered = [] {
    contend("pack 64 MB/floor", [](const Files& files) {
        threeSteps(files.plain(), files.target(), [](const QByteArray& b) { return qCompress(b); });
    });
    contend("pack 64 MB/library", [](const Files& files) {
        ZvCompression::compress(path(files.plain()), path(files.target()), ZvCompressionType::Zlib,
                                -1);
    });
    contend("unpack 64 MB/floor", [](const Files& files) {
        threeSteps(files.packed(), files.target(),
                   [](const QByteArray& b) { return qUncompress(b); });
    });
    contend("unpack 64 MB/library", [](const Files& files) {
        ZvCompression::decompress(path(files.packed()), path(files.target()),
                                  ZvCompressionType::Zlib);
    });
    return true;
}();

} // namespace
