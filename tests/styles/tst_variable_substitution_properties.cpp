// One pass against one replacement after the other, on texts that are rich in what could tell them
// apart.

#include "impl/styles/variable_substitution.h"

#include "support/StyleVariables.h"
#include "support/rapidcheck.h"

#include <QString>
#include <QTest>

#include <string>
#include <vector>

using libzvutil::impl::substitute_variables;
using libzvutil::impl::variable;
using zvtest::isIconVariable;
using zvtest::styleVariables;
using namespace std::string_literals;

namespace {

QString inSequence(QString text, const std::vector<variable>& variables)
{
    for (const variable& v : variables)
        text.replace(QString(v.name), v.value, Qt::CaseSensitive);
    return text;
}

/// A variable, its beginning, its end, or something else.
rc::Gen<std::string> genPiece()
{
    return rc::gen::mapcat(
        rc::gen::elementOf(
            std::vector<std::string>(std::begin(styleVariables), std::end(styleVariables))),
        [](const std::string& name) {
            const auto cut = rc::gen::inRange<std::size_t>(0, name.size() + 1);
            return rc::gen::oneOf(
                rc::gen::just(name),
                rc::gen::map(cut, [name](std::size_t n) { return name.substr(0, n); }),
                rc::gen::map(cut, [name](std::size_t n) { return name.substr(n); }),
                rc::gen::elementOf(std::vector<std::string>{"@", "@@", "x", " ", "D1", "Menu", "L3",
                                                            "\xC3\xA4", ";"}));
        });
}

/// Beginnings that a value may complete.
rc::Gen<std::string> genIconPiece()
{
    return rc::gen::element("@"s, "@i"s, "@icon"s, "@iconC"s, "@iconCheckbox"s, "@iconMen"s,
                            "@iconCheckboxTick"s, "@iconCheckboxIndeterminate"s, "@iconClose"s,
                            "@iconMenu"s, "@testplanComment"s);
}

rc::Gen<QString> genText(std::size_t pieces)
{
    return rc::gen::map(rc::gen::mapcat(rc::gen::inRange<std::size_t>(0, pieces + 1),
                                        [](std::size_t n) {
                                            return rc::gen::container<std::vector<std::string>>(
                                                n, rc::gen::oneOf(genPiece(), genIconPiece()));
                                        }),
                        [](const std::vector<std::string>& parts) {
                            std::string text;
                            for (const std::string& part : parts)
                                text += part;
                            return QString::fromStdString(text);
                        });
}

rc::Gen<QString> genIconValue()
{
    const auto value = rc::gen::element("", "x", "Menu", "u", "onMenu", "Close", "lose", "Tick",
                                        "iconClose", "TextEnabled", "panel", "@", "@icon", "@panel",
                                        "@iconMenu", "@iconCheckboxTick");
    return rc::gen::map(value, [](const char* v) { return QString::fromLatin1(v); });
}

/// Values as a style has them: colours, and paths of icons that may hold anything.
rc::Gen<std::vector<variable>> genVariables()
{
    return rc::gen::map(
        rc::gen::container<std::vector<QString>>(std::size(styleVariables), genIconValue()),
        [](const std::vector<QString>& paths) {
            std::vector<variable> variables;
            for (std::size_t i = 0; i < std::size(styleVariables); ++i)
                variables.push_back(
                    {QLatin1String(styleVariables[i]),
                     isIconVariable(styleVariables[i]) ? paths[i] : QString("#ff00ff00")});
            return variables;
        });
}

/// The same with paths that hold no sign, which is what one pass is for.
std::vector<variable> withoutSigns(std::vector<variable> variables)
{
    for (variable& v : variables)
        v.value.remove(QLatin1Char('@'));
    return variables;
}

void compareTexts(const std::vector<variable>& variables)
{
    for (const QString& text : *rc::gen::container<std::vector<QString>>(50, genText(12)))
        RC_ASSERT(substitute_variables(text, variables) == inSequence(text, variables));
}

} // namespace

class tst_variable_substitution_properties : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void equalsReplacingInSequence()
    {
        // 100 runs of 50 texts each.
        QVERIFY(rc::check("any values", [] { compareTexts(*genVariables()); }));
        QVERIFY(
            rc::check("values without signs", [] { compareTexts(withoutSigns(*genVariables())); }));
    }
};

QTEST_APPLESS_MAIN(tst_variable_substitution_properties)
#include "tst_variable_substitution_properties.moc"
