// Whole files packed and unpacked: the library against the same three steps written out, which are its
// floor. Beside the time it tells the peak of memory, relative to the larger of source and result.

#include "support/memory.h"

#include <zvutil/ZvCompression.h>
#include <zvutil/ZvFilePath.h>

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>

namespace {

/// 16 MB that pack to 37 %: some random bytes in each KB, and plain ones.
QByteArray sampleBytes()
{
    std::minstd_rand random(1);
    QByteArray bytes(16 << 20, 'x');
    for (int block = 0; block < bytes.size(); block += 1024)
        std::generate_n(bytes.begin() + block, 372, [&random] { return char(random() >> 8); });
    return bytes;
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
        const QByteArray bytes = sampleBytes();
        write(plain(), bytes);
        write(packed(), qCompress(bytes));
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
    });
}

const bool registered = [] {
    contend("pack 16 MB/floor", [](const Files& files) {
        threeSteps(files.plain(), files.target(), [](const QByteArray& b) { return qCompress(b); });
    });
    contend("pack 16 MB/library", [](const Files& files) {
        ZvCompression::compress(path(files.plain()), path(files.target()), ZvCompressionType::Zlib,
                                -1);
    });
    contend("unpack 16 MB/floor", [](const Files& files) {
        threeSteps(files.packed(), files.target(),
                   [](const QByteArray& b) { return qUncompress(b); });
    });
    contend("unpack 16 MB/library", [](const Files& files) {
        ZvCompression::decompress(path(files.packed()), path(files.target()),
                                  ZvCompressionType::Zlib);
    });
    return true;
}();

} // namespace
