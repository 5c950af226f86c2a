// Generating identifiers: the library against Qt's and the distribution's libuuid. The floor takes random
// bytes from a pool that one system call fills, and writes them with a table of digits.

#include <zvutil/ZvUUID.h>

#include <QUuid>

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <string>

#include <unistd.h>
#include <uuid/uuid.h>

namespace {

std::string floorText()
{
    static constexpr char digits[] = "0123456789ABCDEF";
    static thread_local std::array<unsigned char, 256> pool;
    static thread_local std::size_t left = 0;
    if (left == 0) {
        if (getentropy(pool.data(), pool.size()) != 0)
            return {};
        left = pool.size();
    }
    left -= 16;
    std::string text(36, '-');
    char* out = text.data();
    for (std::size_t i = 0; i < 16; ++i) {
        const unsigned char byte = pool[left + i];
        *out++ = digits[byte >> 4];
        *out++ = digits[byte & 0x0F];
        if (i == 3 || i == 5 || i == 7 || i == 9)
            ++out;
    }
    return text;
}

std::string libuuidText()
{
    uuid_t bytes;
    uuid_generate(bytes);
    std::string text(36, '\0');
    uuid_unparse_upper(bytes, text.data());
    return text;
}

template <typename Make>
void contend(const char* contender, Make make)
{
    const auto run = [make](benchmark::State& state) {
        for (auto _ : state) {
            auto id = make();
            benchmark::DoNotOptimize(id);
        }
    };
    using benchmark::RegisterBenchmark;
    RegisterBenchmark((std::string("generate/") + contender).c_str(), run);
    RegisterBenchmark((std::string("on two threads/") + contender).c_str(), run)
        ->Threads(2)
        ->UseRealTime();
}

const bool registered = [] {
    contend("floor", [] { return floorText(); });
    contend("library", [] { return zvutil::ZvUUID(); });
    contend("library, plain uuid", [] { return zvutil::uuid(); });
    contend("QUuid", [] { return QUuid::createUuid().toString(); });
    contend("libuuid", [] { return libuuidText(); });
    return true;
}();

} // namespace
