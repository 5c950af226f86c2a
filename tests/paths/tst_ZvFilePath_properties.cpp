#include <zvutil/ZvFilePath.h>

#include "support/rapidcheck.h"

#include <QTest>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

using zvutil::ZvFilePath;
using namespace std::string_literals;

namespace {

using Text = std::wstring;

ZvFilePath path(const Text& text)
{
    return {text.data(), text.size()};
}

Text textOf(const ZvFilePath& p)
{
    return {p.c_str(), p.size()};
}

bool isSeparator(wchar_t unit)
{
    return unit == L'\\' || unit == L'/';
}

Text joined(const std::vector<Text>& pieces)
{
    return std::accumulate(pieces.begin(), pieces.end(), Text());
}

/// Texts that are rich in what the rules look at.
rc::Gen<Text> pathText()
{
    const auto piece =
        rc::gen::element(L"\\"s, L"/"s, L"\\\\"s, L"//"s, L"\\/"s, L":"s, L"."s, L".."s, L"?"s,
                         L"a"s, L"b"s, L"A"s, L"C:"s, L"c:"s, L"\\\\?\\"s, L"\\??\\"s, L" "s, L"-"s,
                         L"\x00E9"s, L"\x20AC"s, L"\xD834"s, L"\xFFFF"s, L"name.ext"s);
    return rc::gen::map(rc::gen::container<std::vector<Text>>(piece), &joined);
}

/// Texts in which nothing has to be resolved, with a root now and then.
rc::Gen<Text> plainPathText()
{
    const auto root = rc::gen::element(L""s, L""s, L"C:\\"s, L"D:\\"s, L"C:"s, L"\\\\srv\\"s);
    const auto name = rc::gen::element(L"a\\"s, L"b/"s, L"c\\\\"s, L"a b\\"s, L"\x20AC/"s);
    const auto last = rc::gen::element(L""s, L"a"s, L"x.y"s);
    return rc::gen::apply([](const Text& r, const std::vector<Text>& names,
                             const Text& l) { return r + joined(names) + l; },
                          root, rc::gen::resize(5, rc::gen::container<std::vector<Text>>(name)),
                          last);
}

std::size_t rootNameSize(const Text& t)
{
    const auto separates = [&t](std::size_t i) { return i < t.size() && isSeparator(t[i]); };
    const auto is = [&t](std::size_t i, wchar_t unit) { return i < t.size() && t[i] == unit; };
    if (t.size() < 2)
        return 0;
    const wchar_t lower = t[0] < 0x80 ? wchar_t(t[0] | 0x20) : wchar_t(0);
    if (lower >= L'a' && lower <= L'z' && t[1] == L':')
        return 2;
    if (separates(3) && !separates(4)
        && ((separates(0) && separates(1) && (is(2, L'?') || is(2, L'.')))
            || (separates(0) && is(1, L'?') && is(2, L'?'))))
        return 3;
    if (t.size() >= 3 && separates(0) && separates(1) && !separates(2))
        return t.find_first_of(L"\\/", 2) == Text::npos ? t.size() : t.find_first_of(L"\\/", 2);
    return 0;
}

/// What a path amounts to in comparison: of two, the smaller has the smaller key.
using Key = std::tuple<std::vector<unsigned>, bool, std::vector<unsigned>>;

Key keyOf(const Text& t)
{
    const std::size_t root = rootNameSize(t);
    std::size_t relative = root;
    while (relative < t.size() && isSeparator(t[relative]))
        ++relative;
    Key key;
    for (std::size_t i = 0; i < root; ++i)
        std::get<0>(key).push_back(static_cast<char16_t>(t[i]));
    std::get<1>(key) = relative > root;
    for (std::size_t i = relative; i < t.size(); ++i) {
        if (!isSeparator(t[i]))
            std::get<2>(key).push_back(1U + static_cast<char16_t>(t[i]));
        else if (i == relative || !isSeparator(t[i - 1]))
            std::get<2>(key).push_back(0);
    }
    return key;
}

/// Root and names of a plain path, with each `..` resolved.
std::vector<Text> resolved(const Text& t)
{
    std::vector<Text> names{t.substr(0, rootNameSize(t))};
    Text name;
    const auto finish = [&names, &name] {
        if (name == L".." && names.size() > 1 && names.back() != L"..")
            names.pop_back();
        else if (!name.empty() && name != L".")
            names.push_back(name);
        name.clear();
    };
    for (const wchar_t unit : t.substr(rootNameSize(t))) {
        if (isSeparator(unit))
            finish();
        else
            name += unit;
    }
    finish();
    return names;
}

} // namespace

class tst_ZvFilePath_properties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textIsKept()
    {
        QVERIFY(rc::check("the text is kept exactly", [] {
            const Text t = *pathText();
            RC_ASSERT(textOf(path(t)) == t);
            const ZvFilePath copy(path(t)); // NOLINT(performance-unnecessary-copy-initialization)
            RC_ASSERT(textOf(copy) == t);
        }));
    }

    void comparesAsTheModel()
    {
        QVERIFY(rc::check("comparison is that of the keys", [] {
            const auto texts = *rc::gen::container<std::vector<Text>>(40, pathText());
            for (const Text& left : texts) {
                for (const Text& right : texts) {
                    const ZvFilePath l = path(left);
                    const ZvFilePath r = path(right);
                    RC_ASSERT((l < r) == (keyOf(left) < keyOf(right)));
                    RC_ASSERT((l == r) == (keyOf(left) == keyOf(right)));
                    RC_ASSERT((l != r) == !(l == r));
                }
            }
        }));
    }

    void orderIsStrictAndWeak()
    {
        QVERIFY(rc::check("less than is a strict weak order that agrees with equality", [] {
            const auto texts = *rc::gen::container<std::vector<Text>>(12, pathText());
            std::vector<ZvFilePath> paths;
            paths.reserve(texts.size());
            for (const Text& t : texts)
                paths.push_back(path(t));
            for (const ZvFilePath& a : paths) {
                RC_ASSERT(!(a < a));
                for (const ZvFilePath& b : paths) {
                    RC_ASSERT(int(a < b) + int(b < a) + int(a == b) == 1);
                    for (const ZvFilePath& c : paths) {
                        RC_ASSERT(!(a < b && b < c) || a < c);
                        RC_ASSERT(!(a == b && b == c) || a == c);
                    }
                }
            }
        }));
    }

    void longEqualPrefixesChangeNothing()
    {
        QVERIFY(rc::check("a common prefix of any length doesn't change the order of names", [] {
            const Text prefix = L"C:\\" + Text(*rc::gen::inRange<std::size_t>(1, 80), L'p');
            const Text left = *pathText();
            const Text right = *pathText();
            RC_ASSERT((path(prefix + left) < path(prefix + right))
                      == (keyOf(prefix + left) < keyOf(prefix + right)));
        }));
    }

    void absolutePathsReplace()
    {
        QVERIFY(rc::check("p /= q with absolute q is q", [] {
            const Text q =
                *rc::gen::element(L"C:\\"s, L"d:/x"s, L"\\\\srv"s, L"\\\\?\\"s) + *pathText();
            ZvFilePath p = path(*pathText());
            p /= path(q);
            RC_ASSERT(textOf(p) == q);
        }));
    }

    void appendKeepsBothTexts()
    {
        QVERIFY(rc::check("what isn't absolute stands at the end, behind the root of this at least",
                          [] {
                              const Text left = *pathText();
                              const Text right = *pathText();
                              ZvFilePath p = path(left);
                              p /= path(right);
                              const Text result = textOf(p);
                              const Text tail = right.substr(rootNameSize(right));
                              RC_ASSERT(result.size() >= tail.size());
                              RC_ASSERT(result.substr(result.size() - tail.size()) == tail);
                              if (rootNameSize(right) == 0) {
                                  RC_ASSERT(result.substr(0, rootNameSize(left))
                                            == left.substr(0, rootNameSize(left)));
                              }
                          }));
    }

    void appendingNothingTwiceIsAppendingItOnce()
    {
        QVERIFY(rc::check("directory form is stable", [] {
            ZvFilePath p = path(*pathText());
            p /= ZvFilePath();
            const Text once = textOf(p);
            p /= ZvFilePath();
            RC_ASSERT(textOf(p) == once);
            RC_ASSERT(p.filename().isEmpty());
        }));
    }

    void parentsEndAtARoot()
    {
        QVERIFY(rc::check("going up ends at a root, which is its own parent", [] {
            ZvFilePath p = path(*pathText());
            for (std::size_t steps = p.size() + 1; steps > 0; --steps) {
                const ZvFilePath parent = p.parentPath();
                RC_ASSERT(parent.size() <= p.size());
                p = parent;
            }
            RC_ASSERT(textOf(p.parentPath()) == textOf(p));
            RC_ASSERT(p.filename().isEmpty());
        }));
    }

    void parentAndFilenameMakeThePath()
    {
        QVERIFY(rc::check("between parent and filename there are only separators", [] {
            const Text t = *pathText();
            const Text parent = textOf(path(t).parentPath());
            const Text name = textOf(path(t).filename());
            RC_ASSERT(parent.size() + name.size() <= t.size());
            RC_ASSERT(t.substr(0, parent.size()) == parent);
            RC_ASSERT(t.substr(t.size() - name.size()) == name);
            for (std::size_t i = parent.size(); i < t.size() - name.size(); ++i)
                RC_ASSERT(isSeparator(t[i]));
            if (!name.empty() && rootNameSize(name) == 0) {
                ZvFilePath again = path(parent);
                again /= path(name);
                RC_ASSERT(again == path(t));
            }
        }));
    }

    void extensionEndsTheName()
    {
        QVERIFY(rc::check("an extension begins with a dot and ends the name before any colon", [] {
            const Text t = *pathText();
            const Text extension = path(t).extension().toStringType();
            Text name = textOf(path(t).filename());
            name = name.substr(0, name.find(L':'));
            if (!extension.empty()) {
                RC_ASSERT(extension[0] == L'.');
                RC_ASSERT(extension.size() < name.size());
                RC_ASSERT(name.substr(name.size() - extension.size()) == extension);
                RC_ASSERT(extension.find(L'.', 1) == Text::npos);
            }
        }));
    }

    void relativeLeadsBack()
    {
        QVERIFY(rc::check("base joined with the relative path is the path, where there is one", [] {
            const Text target = *plainPathText();
            const Text base = *plainPathText();
            const ZvFilePath relative = path(target).lexicallyRelative(path(base));
            const bool sameRoot = rootNameSize(target) == rootNameSize(base)
                && std::get<0>(keyOf(target)) == std::get<0>(keyOf(base))
                && std::get<1>(keyOf(target)) == std::get<1>(keyOf(base));
            RC_ASSERT(relative.isEmpty() == !sameRoot);
            if (sameRoot) {
                ZvFilePath back = path(base);
                back /= relative;
                RC_ASSERT(resolved(textOf(back)) == resolved(target));
            }
        }));
    }

    void relativeToItselfIsADot()
    {
        QVERIFY(rc::check("a path is . from itself, if no inner name is a drive", [] {
            const Text t = *plainPathText();
            RC_ASSERT(textOf(path(t).lexicallyRelative(path(t))) == L".");
        }));
    }

    void anyTwoPathsCanBeRelated()
    {
        QVERIFY(rc::check("whatever the texts, there is an answer", [] {
            const Text t = *pathText();
            const Text b = *pathText();
            const Text relative = textOf(path(t).lexicallyRelative(path(b)));
            if (std::get<0>(keyOf(t)) != std::get<0>(keyOf(b)))
                RC_ASSERT(relative.empty());
        }));
    }

    void descendantsBeginWithTheirDirectory()
    {
        QVERIFY(rc::check("below a directory is what is appended to it", [] {
            ZvFilePath directory = path(*plainPathText());
            directory /= ZvFilePath();
            ZvFilePath below = directory;
            below /= ZvFilePath(L"name");
            RC_ASSERT(directory.isDescendant(below));
            RC_ASSERT(!below.isDescendant(directory));
            RC_ASSERT(!directory.isDescendant(directory));
        }));
    }

    void preferredSeparatorsChangeNoMeaning()
    {
        QVERIFY(
            rc::check("makePreferred leaves no slash, and an equal path behind the root name", [] {
                const Text t = *pathText();
                ZvFilePath p = path(t);
                p.makePreferred();
                RC_ASSERT(textOf(p).find(L'/') == Text::npos);
                RC_ASSERT(p.size() == t.size());
                if (rootNameSize(t) == 0)
                    RC_ASSERT(p == path(t));
            }));
    }
};

QTEST_APPLESS_MAIN(tst_ZvFilePath_properties)
#include "tst_ZvFilePath_properties.moc"
