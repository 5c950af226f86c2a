#include "impl/variable_substitution.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <cstddef>
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

/// The variables by the letter behind their sign, each letter's in their order.
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
        return find(text, [text](QLatin1String name) { return text.startsWith(name); });
    }

    /// Whether a variable begins with \p text and goes on behind it.
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

/// Replaces in one pass, or gives nothing where that could differ from going in sequence: where
/// \p text has the beginning of a variable right before one, a value may complete it.
std::optional<QString> inOnePass(const QString& text, const std::vector<variable>& variables)
{
    const Variables known(variables);
    const QStringView all(text);
    QString result;
    result.reserve(text.size() + text.size() / 4);
    int done = 0;
    int previousSign = -1;
    for (int at = text.indexOf(sign); at >= 0; at = text.indexOf(sign, at + 1)) {
        const variable* const found = known.startOf(all.mid(at));
        if (!found) {
            previousSign = at;
            continue;
        }
        if (previousSign >= 0 && known.haveBeginning(all.mid(previousSign, at - previousSign)))
            return {};
        previousSign = -1;
        result.append(text.constData() + done, at - done);
        result.append(found->value);
        done = at + found->name.size();
    }
    result.append(text.constData() + done, text.size() - done);
    return result;
}

} // namespace

QString substitute_variables(const QString& text, const std::vector<variable>& variables)
{
    const bool valuesAreFinal = std::none_of(variables.begin(), variables.end(),
                                             [](const auto& v) { return v.value.contains(sign); });
    if (valuesAreFinal) {
        if (std::optional<QString> result = inOnePass(text, variables))
            return *std::move(result);
    }
    return inSequence(text, variables);
}

} // namespace libzvutil::impl
