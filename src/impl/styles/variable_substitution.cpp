#include "impl/styles/variable_substitution.h"

#include <QStringView>
#include <QVarLengthArray>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <optional>

namespace libzvutil::impl {

namespace {

constexpr QChar sign = u'@';

QString inSequence(QString text, const std::vector<variable>& variables)
{
    for (const variable& v : variables)
        text.replace(v.name, v.value, Qt::CaseSensitive);
    return text;
}

/// Whether \p text begins with \p name; for short names this is faster than Qt's own test.
bool beginsWith(QStringView text, QLatin1String name)
{
    const auto same = [](char a, QChar b) { return b == QLatin1Char(a); };
    // Compare the last letters first, which differ for most names; the first ones rarely do.
    return text.size() >= name.size() && same(name.back().toLatin1(), text[name.size() - 1])
        && std::equal(name.begin(), name.end(), text.begin(), same);
}

/// The index of the next sign from \p from on, or -1. For the short distances between signs the
/// standard library's search for a byte is several times as fast as Qt's for a character.
qsizetype nextSign(QStringView text, qsizetype from)
{
    const auto* const bytes = reinterpret_cast<const char*>(text.data());
    const auto size = static_cast<std::size_t>(text.size()) * sizeof(QChar);
    auto at = static_cast<std::size_t>(from) * sizeof(QChar);
    while (at < size) {
        const void* const found = std::memchr(bytes + at, sign.unicode(), size - at);
        if (!found)
            return -1;
        at = static_cast<std::size_t>(static_cast<const char*>(found) - bytes);
        const auto unit = static_cast<qsizetype>(at / sizeof(QChar));
        if (text[unit] == sign)
            return unit;
        ++at;
    }
    return -1;
}

/// The variables by the letter after their sign, in their order.
class Variables
{
public:
    explicit Variables(const std::vector<variable>& variables)
        : m_variables(variables)
        , m_next(variables.size())
    {
        m_first.fill(nullptr);
        for (std::size_t i = variables.size(); i-- > 0;) {
            const variable*& first = m_first[letter(variables[i].name[1])];
            m_next[i] = first;
            first = &variables[i];
        }
    }

    /// The first variable that \p text begins with, or null.
    const variable* startOf(QStringView text) const
    {
        return find(text, [text](QLatin1String name) { return beginsWith(text, name); });
    }

    /// Whether \p text is the beginning of a longer variable.
    bool haveBeginning(QStringView text) const
    {
        const auto beginsWithText = [text](QLatin1String name) {
            return name.size() > text.size() && name.startsWith(text);
        };
        return text.size() < 2 || find(text, beginsWithText) != nullptr;
    }

private:
    static std::size_t letter(QChar c) { return c.unicode() % letters; }

    template <typename Predicate>
    const variable* find(QStringView text, Predicate fits) const
    {
        if (text.size() < 2)
            return nullptr;
        const variable* candidate = m_first[letter(text[1])];
        while (candidate && !fits(candidate->name))
            candidate = m_next[static_cast<std::size_t>(candidate - m_variables.data())];
        return candidate;
    }

    static constexpr std::size_t letters = 128;

    const std::vector<variable>& m_variables;
    std::vector<const variable*> m_next;
    std::array<const variable*, letters> m_first;
};

struct Occurrence
{
    int at;
    const variable* found;
};

using Occurrences = QVarLengthArray<Occurrence, 256>;

/// The places of the variables in \p text, or nothing if their values might make further ones: if
/// \p text has the beginning of a variable right before another one, a value may complete it.
std::optional<Occurrences> occurrencesIn(QStringView text, const Variables& variables)
{
    Occurrences occurrences;
    qsizetype previousSign = -1;
    for (qsizetype at = nextSign(text, 0); at >= 0; at = nextSign(text, at + 1)) {
        const variable* const found = variables.startOf(text.mid(at));
        if (!found) {
            previousSign = at;
            continue;
        }
        if (previousSign >= 0 && variables.haveBeginning(text.mid(previousSign, at - previousSign)))
            return {};
        previousSign = -1;
        occurrences.append({static_cast<int>(at), found});
    }
    return occurrences;
}

QString replaced(const QString& text, const Occurrences& occurrences)
{
    int size = text.size();
    for (const Occurrence& o : occurrences)
        size += o.found->value.size() - o.found->name.size();
    QString result(size, Qt::Uninitialized);
    QChar* out = result.data();
    const QChar* done = text.constData();
    for (const Occurrence& o : occurrences) {
        out = std::copy(done, text.constData() + o.at, out);
        out = std::copy(o.found->value.begin(), o.found->value.end(), out);
        done = text.constData() + o.at + o.found->name.size();
    }
    std::copy(done, text.constData() + text.size(), out);
    return result;
}

} // namespace

QString substitute_variables(const QString& text, const std::vector<variable>& variables)
{
    const bool valuesAreFinal = std::all_of(variables.begin(), variables.end(),
                                            [](const auto& v) { return nextSign(v.value, 0) < 0; });
    if (valuesAreFinal) {
        if (const auto occurrences = occurrencesIn(text, Variables(variables)))
            return replaced(text, *occurrences);
    }
    return inSequence(text, variables);
}

} // namespace libzvutil::impl
