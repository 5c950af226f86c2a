// Values that have been moved from: an assignment makes each of them whole again, so that standard
// algorithms can be used on them.

#include <zvutil/ZvBasicString.h>
#include <zvutil/ZvCompression.h>
#include <zvutil/ZvEditorStyle.h>
#include <zvutil/ZvException.h>
#include <zvutil/ZvFileException.h>
#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvNamedColour.h>
#include <zvutil/ZvNamedIcon.h>
#include <zvutil/ZvString.h>
#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvTable.h>
#include <zvutil/ZvURI.h>
#include <zvutil/ZvUUID.h>
#include <zvutil/ZvVariant.h>

#include <QColor>
#include <QTest>
#include <QVariant>

#include <algorithm>
#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace libzvutil;
using namespace zvutil;

namespace {

/// A value that a number tells from others; `textOf` tells the number.
template <typename T>
T made(int number)
{
    const std::string text = std::to_string(number);
    if constexpr (std::is_same_v<T, ZvException>) {
        return T(zvutil::ZvBasicString<char>(text));
    } else if constexpr (std::is_same_v<T, ZvFileException>) {
        return T(ZvFilePath(text), zvutil::ZvBasicString<char>(text));
    } else if constexpr (std::is_same_v<T, ZvNamedColour>) {
        return T(text.c_str(), QColor(number, 0, 0));
    } else if constexpr (std::is_same_v<T, ZvNamedIcon>) {
        return T(ZvString("icon"), ZvString(text.c_str()));
    } else if constexpr (std::is_same_v<T, ZvVariant>) {
        return T(number);
    } else if constexpr (std::is_same_v<T, ZvStyleLibrary>) {
        T library;
        library.update(ZvStyle(text));
        return library;
    } else {
        return T(text.c_str());
    }
}

template <>
zvutil::ZvBasicString<char16_t> made(int number)
{
    return std::u16string(1, static_cast<char16_t>(u'0' + number));
}

template <>
zvutil::ZvBasicString<char32_t> made(int number)
{
    return std::u32string(1, static_cast<char32_t>(U'0' + static_cast<unsigned>(number)));
}

template <>
zvutil::ZvBasicString<wchar_t> made(int number)
{
    return std::to_wstring(number);
}

template <typename C>
std::string textOf(const zvutil::ZvBasicString<C>& text)
{
    return text.toStdString();
}

std::string textOf(const ZvString& text)
{
    return text.c_str();
}

std::string textOf(const ZvFilePath& path)
{
    return path.toQString().toStdString();
}

std::string textOf(const ZvURI& uri)
{
    return uri.c_str();
}

std::string textOf(const ZvUUID& id)
{
    return id.c_str();
}

std::string textOf(const ZvVariant& value)
{
    return value.data().toString().toStdString();
}

std::string textOf(const ZvException& exception)
{
    return exception.what();
}

std::string textOf(const ZvFileException& exception)
{
    const std::string path = textOf(exception.path());
    return path == exception.what() ? path : "two texts: " + path + ", " + exception.what();
}

std::string textOf(const ZvNamedColour& colour)
{
    return colour.qColour().red() == std::stoi(colour.name().c_str()) ? colour.name().c_str()
                                                                      : "another colour";
}

std::string textOf(const ZvNamedIcon& icon)
{
    return icon.name().compare("icon") == 0 ? icon.path().c_str() : "another name";
}

std::string textOf(const ZvEditorStyle& style)
{
    return style.name();
}

std::string textOf(const ZvStyle& style)
{
    return style.name().c_str();
}

std::string textOf(const ZvStyleLibrary& library)
{
    return library.names().back().toStdString();
}

template <typename T>
std::string textsOf(const std::vector<T>& values)
{
    std::string texts;
    for (const T& value : values)
        texts += textOf(value) + ' ';
    return texts;
}

/// Moves what \p value has elsewhere.
template <typename T>
void moveAway(T& value)
{
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.Move): a second move hands on nothing
    [[maybe_unused]] const T taken(std::move(value));
}

template <typename T>
void assignmentMakesWhole()
{
    const T source = made<T>(1);
    T copied = made<T>(2);
    moveAway(copied);
    copied = source;
    QCOMPARE(textOf(copied), std::string("1"));
    QCOMPARE(textOf(source), std::string("1"));
    // It is as any other from then on.
    const T again(copied);
    copied = made<T>(3);
    QCOMPARE(textOf(copied), std::string("3"));
    QCOMPARE(textOf(again), std::string("1"));

    T moved = made<T>(2);
    moveAway(moved);
    moved = made<T>(4);
    QCOMPARE(textOf(moved), std::string("4"));
    moveAway(moved);
    moveAway(moved);
    moved = source;
    QCOMPARE(textOf(moved), std::string("1"));
}

template <typename T>
void algorithmsMayMove()
{
    T a = made<T>(1);
    T b = made<T>(2);
    std::swap(a, b);
    QCOMPARE(textOf(a) + textOf(b), std::string("21"));
    T& same = a;
    std::swap(a, same);
    QCOMPARE(textOf(a), std::string("2"));

    std::vector<T> values;
    for (const int number : {5, 1, 4, 2, 3})
        values.push_back(made<T>(number));
    std::sort(values.begin(), values.end(),
              [](const T& left, const T& right) { return textOf(left) < textOf(right); });
    QCOMPARE(textsOf(values), std::string("1 2 3 4 5 "));
    std::rotate(values.begin(), values.begin() + 2, values.end());
    QCOMPARE(textsOf(values), std::string("3 4 5 1 2 "));
    values.reserve(10);
    values.insert(values.begin() + 1, made<T>(6));
    values.insert(values.begin(), 2, made<T>(7));
    QCOMPARE(textsOf(values), std::string("7 7 3 6 4 5 1 2 "));
    values.erase(values.begin() + 1);
    std::reverse(values.begin(), values.end());
    QCOMPARE(textsOf(values), std::string("2 1 5 4 6 3 7 "));
}

template <typename T>
void expectValue()
{
    assignmentMakesWhole<T>();
    algorithmsMayMove<T>();
}

} // namespace

// NOLINTBEGIN(readability-convert-member-functions-to-static): slots
class tst_moved_from_values : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void narrowText() { expectValue<zvutil::ZvBasicString<char>>(); }
    void text16() { expectValue<zvutil::ZvBasicString<char16_t>>(); }
    void text32() { expectValue<zvutil::ZvBasicString<char32_t>>(); }
    void wideText() { expectValue<zvutil::ZvBasicString<wchar_t>>(); }
    void string() { expectValue<ZvString>(); }
    void filePath() { expectValue<ZvFilePath>(); }
    void uri() { expectValue<ZvURI>(); }
    void uuid() { expectValue<ZvUUID>(); }
    void variant() { expectValue<ZvVariant>(); }
    void exception() { expectValue<ZvException>(); }
    void fileException() { expectValue<ZvFileException>(); }
    void namedColour() { expectValue<ZvNamedColour>(); }
    void namedIcon() { expectValue<ZvNamedIcon>(); }
    void editorStyle() { expectValue<ZvEditorStyle>(); }
    void style() { expectValue<ZvStyle>(); }
    void styleLibrary() { expectValue<ZvStyleLibrary>(); }

    void compression()
    {
        // It has no state that could be looked at.
        ZvCompression a;
        ZvCompression b;
        moveAway(a);
        a = b;
        moveAway(a);
        a = std::move(b);
        std::swap(a, b);
        b = a;
    }

    void cellsOfATable()
    {
        ZvTable table(1, 3, ZvVariant(0));
        for (int column = 0; column < 3; ++column)
            table.value(0, static_cast<unsigned long long>(column)) = ZvVariant(column);
        std::swap(table.value(0, 0), table.value(0, 2));
        QCOMPARE(std::string(table.toCSV().c_str()), std::string("2,1,0"));
        const ZvVariant taken(std::move(table.value(0, 1)));
        table.value(0, 1) = QVariant("x");
        QCOMPARE(std::string(table.toCSV().c_str()), std::string("2,x,0"));
    }

    void otherAssignments()
    {
        ZvUUID id("1");
        moveAway(id);
        id = zvutil::uuid("2");
        QCOMPARE(textOf(id), std::string("2"));
        ZvURI uri("1");
        moveAway(uri);
        uri.set("a b"); // NOLINT(clang-analyzer-cplusplus.Move): what is tested
        QCOMPARE(textOf(uri), std::string("a%20b"));
        moveAway(uri);
        uri.set(ZvFilePath("x")); // NOLINT(clang-analyzer-cplusplus.Move): what is tested
        QCOMPARE(textOf(uri), std::string("file:/x"));
        ZvNamedColour colour("1", QColor(1, 0, 0));
        moveAway(colour);
        colour = QColor(2, 0, 0);
        QCOMPARE(colour.name().c_str(), "");
        QCOMPARE(colour.qColour(), QColor(2, 0, 0));
        ZvNamedIcon icon(ZvString("1"), ZvString("2"));
        moveAway(icon);
        icon.setPath(ZvString("3")); // NOLINT(clang-analyzer-cplusplus.Move): what is tested
        QCOMPARE(icon.path().c_str(), "3");
    }

    void wholeTextsAreAssigned()
    {
        // An assignment takes a text whole, also what lies behind a NUL.
        ZvString longer("abc");
        longer.resize(5);
        ZvString target("x");
        moveAway(target);
        target = longer;
        QCOMPARE(target.size(), std::size_t(5));
    }
};
// NOLINTEND(readability-convert-member-functions-to-static)

QTEST_GUILESS_MAIN(tst_moved_from_values)
#include "tst_moved_from_values.moc"
