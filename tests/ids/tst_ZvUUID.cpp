#include "UuidTexts.h"

#include <zvutil/ZvUUID.h>

#include "support/Module.h"
#include "support/StdString.h"
#include "support/Threads.h"

#include <QTest>

#include <algorithm>
#include <atomic>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#if defined(Q_OS_LINUX)
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#endif

using zvtest::textOf;
using zvutil::uuid;
using zvutil::ZvBasicString;
using zvutil::ZvUUID;
using namespace std::string_literals;

namespace {

static_assert(sizeof(ZvUUID) == 2 * sizeof(void*));
static_assert(sizeof(uuid) == sizeof(std::string));
static_assert(!std::is_polymorphic_v<ZvUUID>);
static_assert(std::is_nothrow_move_constructible_v<ZvUUID>);
static_assert(std::is_nothrow_move_assignable_v<ZvUUID>);

constexpr char sample[] = "3F2504E0-4F89-41D3-9A0C-0305E82C3301";

bool isUpperDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
}

#if defined(Q_OS_LINUX)

std::atomic<int> randomCalls{0};
std::atomic<bool> randomFails{false};

/// \p count generated texts from a child of this process, one behind the other.
std::string generatedInChild(int count)
{
    int ends[2];
    if (pipe(ends) != 0)
        return {};
    const pid_t child = fork();
    if (child == 0) {
        for (int i = 0; i < count; ++i) {
            const std::string made = uuid().text();
            if (write(ends[1], made.data(), made.size()) != ssize_t(made.size()))
                _exit(1);
        }
        _exit(0);
    }
    close(ends[1]);
    std::string all;
    char buffer[4096];
    ssize_t got = 0;
    while ((got = read(ends[0], buffer, sizeof(buffer))) > 0)
        all.append(buffer, std::size_t(got));
    close(ends[0]);
    int status = -1;
    waitpid(child, &status, 0);
    return status == 0 ? all : std::string();
}

std::set<std::string> pieces(const std::string& all, std::size_t size)
{
    std::set<std::string> result;
    for (std::size_t i = 0; i + size <= all.size(); i += size)
        result.insert(all.substr(i, size));
    return result;
}

#endif

} // namespace

#if defined(Q_OS_LINUX)

// Stands before the system's own, so that the test sees what the library asks of the system.
extern "C" Q_DECL_EXPORT int getentropy(void* buffer, size_t size)
{
    ++randomCalls;
    if (randomFails) {
        errno = ENOSYS;
        return -1;
    }
    return syscall(SYS_getrandom, buffer, size, 0) == long(size) ? 0 : -1;
}

#endif

class tst_ZvUUID : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void generatedForm()
    {
        for (int round = 0; round < 1000; ++round) {
            const std::string made = textOf(ZvUUID());
            QCOMPARE(made.size(), std::size_t(36));
            for (std::size_t i = 0; i < made.size(); ++i) {
                const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
                QVERIFY2(dash ? made[i] == '-' : isUpperDigit(made[i]), made.c_str());
            }
            QCOMPARE(made[14], '4');
            QVERIFY2(std::string("89AB").find(made[19]) != std::string::npos, made.c_str());
        }
    }

    void generatedBitsVary()
    {
        // Each digit but those of version and variant takes all 16 values: over 4,000 identifiers
        // one is missing with a chance of 1 in 10^110.
        std::vector<std::set<char>> seen(36);
        for (int round = 0; round < 4000; ++round) {
            const std::string made = textOf(ZvUUID());
            for (std::size_t i = 0; i < made.size(); ++i)
                seen[i].insert(made[i]);
        }
        for (std::size_t i = 0; i < seen.size(); ++i) {
            const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
            const std::size_t expected = dash || i == 14 ? 1 : (i == 19 ? 4 : 16);
            QCOMPARE(seen[i].size(), expected);
        }
    }

    void generatedDiffer()
    {
        const ZvUUID a;
        const ZvUUID b;
        QVERIFY(a != b);
        QVERIFY(!(a == b));
        QVERIFY(uuid() != uuid());
    }

    void text_data()
    {
        QTest::addColumn<std::string>("given");
        QTest::addColumn<std::string>("kept");
        QTest::newRow("identifier") << std::string(sample) << std::string(sample);
        QTest::newRow("empty") << ""s
                               << ""s;
        QTest::newRow("any text") << "not an identifier"s
                                  << "not an identifier"s;
        QTest::newRow("lower case stays") << "3f2504e0"s
                                          << "3f2504e0"s;
        QTest::newRow("bytes above 0x7F") << "\xFF\x80"s
                                          << "\xFF\x80"s;
        QTest::newRow("braces stay") << "{x}"s
                                     << "{x}"s;
        QTest::newRow("ends at NUL") << "ab\0cd"s
                                     << "ab"s;
        QTest::newRow("begins with NUL") << "\0cd"s
                                         << ""s;
        QTest::newRow("long") << std::string(100'000, 'x') << std::string(100'000, 'x');
    }

    void text()
    {
        QFETCH(std::string, given);
        QFETCH(std::string, kept);
        QCOMPARE(textOf(ZvUUID(given.c_str())), kept);
        QCOMPARE(textOf(ZvUUID(given)), kept);
        QCOMPARE(textOf(ZvUUID(ZvBasicString<char>(given))), kept);
        QCOMPARE(textOf(ZvUUID(uuid(given))), kept);

        const ZvUUID id(given);
        QCOMPARE(id.toString().toStdString(), kept);
        QCOMPARE(id.toUUID().text(), kept);
        QVERIFY(id.toString().c_str() != id.c_str());

        ZvUUID assigned("other");
        assigned = uuid(given);
        QCOMPARE(textOf(assigned), kept);

        // Comparison sees also what would stand behind a NUL.
        const ZvUUID expected(kept.c_str());
        for (const ZvUUID& made : {ZvUUID(given.c_str()), id, ZvUUID(ZvBasicString<char>(given)),
                                   ZvUUID(uuid(given)), assigned, ZvUUID(assigned)}) {
            QVERIFY(made == expected);
            QVERIFY(!(made != expected));
            QVERIFY(!(made < expected) && !(expected < made));
        }
    }

    void plainIdentifierKeepsItsText()
    {
        const uuid id("a\0b"s);
        QCOMPARE(id.text(), "a\0b"s);
        QCOMPARE(std::string(id.c_str()), "a"s);
        QVERIFY(id == uuid("a\0b"s));
        QVERIFY(id != uuid("a"));
        QCOMPARE(uuid().text().size(), std::size_t(36));
    }

    void order_data()
    {
        QTest::addColumn<std::string>("less");
        QTest::addColumn<std::string>("greater");
        QTest::newRow("digits") << "1"s
                                << "2"s;
        QTest::newRow("digit before letter") << "9"s
                                             << "A"s;
        QTest::newRow("capital before small letter") << "F"s
                                                     << "a"s;
        QTest::newRow("prefix") << "AB"s
                                << "ABC"s;
        QTest::newRow("shorter length only where equal") << "AAAA"s
                                                         << "B"s;
        QTest::newRow("empty before all") << ""s
                                          << "\x01"s;
        QTest::newRow("bytes are unsigned") << "z"s
                                            << "\x80"s;
        QTest::newRow("last byte") << "3F2504E0-4F89-41D3-9A0C-0305E82C3301"s
                                   << "3F2504E0-4F89-41D3-9A0C-0305E82C3302"s;
    }

    void order()
    {
        QFETCH(std::string, less);
        QFETCH(std::string, greater);
        const ZvUUID a(less);
        const ZvUUID b(greater);
        QVERIFY(a < b);
        QVERIFY(!(b < a));
        QVERIFY(!(a < a));
        QVERIFY(a != b);
        QVERIFY(!(a == b));
        QVERIFY(a == ZvUUID(less));
        QVERIFY(!(a != ZvUUID(less)));
    }

    void caseCounts()
    {
        const std::string upper = sample;
        std::string lower = upper;
        std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
            return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        });
        QVERIFY(ZvUUID(upper) != ZvUUID(lower));
        QVERIFY(!(ZvUUID(upper) == ZvUUID(lower)));
    }

    void copiesShareNothing()
    {
        ZvUUID source(sample);
        const ZvUUID copy(source);
        QVERIFY(copy == source);
        QVERIFY(copy.c_str() != source.c_str());
        source = ZvUUID("x");
        QCOMPARE(textOf(copy), std::string(sample));
    }

    void copyAssignmentKeepsTheImplementation()
    {
        ZvUUID target("a text that is too long to lie in the string itself");
        const char* const place = target.c_str();
        target = ZvUUID("b");
        const ZvUUID source("c");
        ZvUUID written("a text that is too long to lie in the string itself");
        const char* const kept = written.c_str();
        written = source;
        QCOMPARE(textOf(written), "c"s);
        QVERIFY(written.c_str() == kept);
        QVERIFY(target.c_str() != place);

        const ZvUUID& self = written;
        written = self;
        QCOMPARE(textOf(written), "c"s);
    }

    void moves()
    {
        ZvUUID source(sample);
        const char* const place = source.c_str();
        ZvUUID target(std::move(source));
        QVERIFY(target.c_str() == place);

        // A moved-from identifier can be moved on, and be the target of a move or of an identifier.
        // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move)
        ZvUUID empty(std::move(source));
        empty = std::move(target);
        QVERIFY(empty.c_str() == place);
        ZvUUID& self = empty;
        empty = std::move(self);
        QVERIFY(empty.c_str() == place);
        target = uuid("x"); // NOLINT(bugprone-use-after-move)
        QCOMPARE(textOf(target), "x"s);
    }

    void oneSystemCallServesManyIdentifiers()
    {
#if defined(Q_OS_LINUX)
        const int before = randomCalls;
        for (int i = 0; i < 1600; ++i)
            const ZvUUID made;
        QVERIFY(randomCalls - before > 0);
        QVERIFY(randomCalls - before <= 101);
#else
        QSKIP("Identifiers come from CoCreateGuid");
#endif
    }

    void withoutTheSystemCallIdentifiersStillDiffer()
    {
#if defined(Q_OS_LINUX)
        randomFails = true;
        std::set<std::string> made;
        for (int i = 0; i < 200; ++i)
            made.insert(textOf(ZvUUID()));
        randomFails = false;
        QCOMPARE(made.size(), std::size_t(200));
#else
        QSKIP("Identifiers come from CoCreateGuid");
#endif
    }

    void forkedChildRepeatsNothing()
    {
#if defined(Q_OS_LINUX)
        // Makes sure that the parent has a store of random bytes, which its child inherits.
        const ZvUUID before;
        const std::set<std::string> first = pieces(generatedInChild(64), 36);
        const std::set<std::string> second = pieces(generatedInChild(64), 36);
        QCOMPARE(first.size(), std::size_t(64));
        QCOMPARE(second.size(), std::size_t(64));
        std::set<std::string> all = first;
        all.insert(second.begin(), second.end());
        for (int i = 0; i < 64; ++i)
            all.insert(textOf(ZvUUID()));
        QCOMPARE(all.size(), std::size_t(3 * 64));
#else
        QSKIP("There is no fork");
#endif
    }

    void childOfAChildRepeatsNothing()
    {
#if defined(Q_OS_LINUX)
        int ends[2];
        QCOMPARE(pipe(ends), 0);
        const ZvUUID before;
        const pid_t child = fork();
        if (child == 0) {
            // Its own first, so that it has a store that its child must not go on with.
            const std::string own = uuid().text();
            const std::string all = own + generatedInChild(16) + uuid().text();
            _exit(write(ends[1], all.data(), all.size()) == ssize_t(all.size()) ? 0 : 1);
        }
        close(ends[1]);
        std::string all(18 * 36, '\0');
        QCOMPARE(read(ends[0], all.data(), all.size()), ssize_t(all.size()));
        close(ends[0]);
        int status = -1;
        waitpid(child, &status, 0);
        QCOMPARE(status, 0);
        for (int i = 0; i < 16; ++i)
            all += textOf(ZvUUID());
        QCOMPARE(pieces(all, 36).size(), std::size_t(34));
#else
        QSKIP("There is no fork");
#endif
    }
};

QTEST_GUILESS_MAIN(tst_ZvUUID)
#include "tst_ZvUUID.moc"
