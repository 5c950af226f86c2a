#include <zvutil/ZvException.h>
#include <zvutil/ZvFileException.h>
#include <zvutil/exception.h>
#include <zvutil/unknown_property_exception.h>

#include "support/StdString.h"

#include <QTest>

#include <filesystem>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>

using zvutil::ZvBasicString;
using zvutil::ZvException;
using zvutil::ZvFileException;
using zvutil::ZvFilePath;
using namespace std::string_literals;

namespace {

std::string message(const ZvException& exception)
{
    return exception.what();
}

/// What catches an exception that \p thrower throws.
template <typename Thrower>
std::string handler(Thrower thrower)
{
    try {
        thrower();
    } catch (const std::exception&) {
        return "std::exception";
    } catch (const ZvException&) {
        return "ZvException";
    }
    return "none";
}

static_assert(!std::is_base_of_v<std::exception, ZvException>);
static_assert(!std::is_polymorphic_v<ZvException> && !std::is_polymorphic_v<ZvFileException>);
static_assert(std::is_base_of_v<ZvException, ZvFileException>);
static_assert(std::is_base_of_v<std::exception, zvutil::exception>);
static_assert(std::is_base_of_v<zvutil::exception, zvutil::unknown_property_exception>);
static_assert(sizeof(ZvException) == sizeof(ZvBasicString<char>));
static_assert(sizeof(ZvFileException) == sizeof(ZvException) + sizeof(ZvFilePath));
static_assert(std::is_nothrow_copy_constructible_v<zvutil::exception>);

} // namespace

class tst_exceptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messages_data()
    {
        QTest::addColumn<std::string>("actual");
        QTest::addColumn<std::string>("expected");
        const ZvFilePath path(L"C:\\a\u00E4/b");
        QTest::newRow("ZvException()") << message(ZvException()) << ""s;
        QTest::newRow("ZvException(text)") << message(ZvException("text")) << "text"s;
        QTest::newRow("ZvFileException()") << message(ZvFileException()) << ""s;
        QTest::newRow("ZvFileException(path)") << message(ZvFileException(path)) << ""s;
        QTest::newRow("ZvFileException(path, text)")
            << message(ZvFileException(path, "text")) << "text"s;
        QTest::newRow("notFound") << message(ZvFileException::notFound(path))
                                  << "File not found: C:\\a\xC3\xA4/b"s;
        QTest::newRow("cannotRead") << message(ZvFileException::cannotRead(path))
                                    << "Cannot open file for reading: C:\\a\xC3\xA4/b"s;
        QTest::newRow("cannotWrite") << message(ZvFileException::cannotWrite(path))
                                     << "Cannot open file for writing: C:\\a\xC3\xA4/b"s;
        QTest::newRow("notFound, empty path")
            << message(ZvFileException::notFound(ZvFilePath())) << "File not found: "s;
        const ZvFilePath high(ZvBasicString<char16_t>(u"\xD834\xDD1E"));
        QTest::newRow("surrogates are written one by one")
            << message(ZvFileException::notFound(high))
            << "File not found: \xED\xA0\xB4\xED\xB4\x9E"s;
        QTest::newRow("message of a moved exception") << message([] {
            ZvException source("moved");
            return ZvException(std::move(source));
        }()) << "moved"s;
        QTest::newRow("exception")
            << std::string(zvutil::exception("text: ", "detail").what()) << "text: detail"s;
        QTest::newRow("exception of nothing")
            << std::string(zvutil::exception("", "").what()) << ""s;
        QTest::newRow("unknown_property_exception")
            << std::string(zvutil::unknown_property_exception("name").what())
            << "unknown property: name"s;
        QTest::newRow("unknown_property_exception of nothing")
            << std::string(zvutil::unknown_property_exception("").what()) << "unknown property: "s;
    }

    void messages()
    {
        QFETCH(std::string, actual);
        QFETCH(std::string, expected);
        QCOMPARE(actual, expected);
    }

    void messageIsNeverNull()
    {
        QVERIFY(ZvException().what());
        QVERIFY(ZvFileException(ZvFilePath(L"a")).what());
    }

    void pathIsThatOfTheArgument()
    {
        const ZvFilePath path(L"C:/a");
        QVERIFY(ZvFileException().path().isEmpty());
        QCOMPARE(ZvFileException(path).path().toQString(), path.toQString());
        QCOMPARE(ZvFileException(path, "text").path().toQString(), path.toQString());
        QCOMPARE(ZvFileException::notFound(path).path().toQString(), path.toQString());
        QCOMPARE(ZvFileException::cannotRead(path).path().toQString(), path.toQString());
        QCOMPARE(ZvFileException::cannotWrite(path).path().toQString(), path.toQString());
    }

    void filesystemErrorGivesItsTextAndFirstPath()
    {
        const std::filesystem::filesystem_error error(
            "what", "first", "second", std::make_error_code(std::errc::no_such_file_or_directory));
        const ZvFileException exception(error);
        QCOMPARE(message(exception), std::string(error.what()));
        QCOMPARE(exception.path(), ZvFilePath(L"first"));
        const std::filesystem::filesystem_error pathless("what", std::error_code());
        QVERIFY(ZvFileException(pathless).path().isEmpty());
    }

    void filesystemErrorOfANameThatIsNoText()
    {
#if defined(Q_OS_WIN)
        QSKIP("Paths are text");
#else
        const std::filesystem::path name("\xEF\xBB\xBF"
                                         "a/\xFF\xC3\xA4");
        const std::filesystem::filesystem_error error(
            "what", name, std::make_error_code(std::errc::no_such_file_or_directory));
        const ZvFileException exception(error);
        QCOMPARE(message(exception), std::string(error.what()));
        QCOMPARE(exception.path(), ZvFilePath(L"\uFEFFa/\uFFFD\u00E4"));
        // The path's own constructor still refuses it.
        QVERIFY_EXCEPTION_THROWN(ZvFilePath{name}, std::system_error);
#endif
    }

    void copiesAndAssignmentsAreIndependent()
    {
        const ZvFileException source(ZvFilePath(L"a"), "text");
        ZvFileException target;
        target = source;
        QCOMPARE(message(target), "text"s);
        QCOMPARE(target.path(), ZvFilePath(L"a"));
        ZvFileException copy(target);
        target = ZvFileException(ZvFilePath(L"b"), "other");
        QCOMPARE(message(copy), "text"s);
        QCOMPARE(copy.path(), ZvFilePath(L"a"));
        const ZvFileException moved(std::move(copy));
        QCOMPARE(message(moved), "text"s);
        QCOMPARE(message(target), "other"s);
    }

    void familiesAreCaughtApart()
    {
        QCOMPARE(handler([] { throw ZvException("x"); }), "ZvException"s);
        QCOMPARE(handler([] { throw ZvFileException::notFound(ZvFilePath(L"x")); }),
                 "ZvException"s);
        QCOMPARE(handler([] { throw zvutil::exception("x", "y"); }), "std::exception"s);
        QCOMPARE(handler([] { throw zvutil::unknown_property_exception("x"); }), "std::exception"s);
        QVERIFY_EXCEPTION_THROWN(throw zvutil::unknown_property_exception("x"), zvutil::exception);
    }

    void thrownFromTheLibraryIsCaughtHere()
    {
        QVERIFY_EXCEPTION_THROWN(ZvFilePath(ZvBasicString<char32_t>(U"\x110000")),
                                 std::system_error);
    }
};

QTEST_APPLESS_MAIN(tst_exceptions)
#include "tst_exceptions.moc"
