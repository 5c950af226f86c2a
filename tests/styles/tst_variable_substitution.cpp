#include "impl/styles/variable_substitution.h"

#include <QTest>

using libzvutil::impl::substitute_variables;
using libzvutil::impl::variable;

class tst_variable_substitution : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void texts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("result");
        const auto row = [](const char* name, const char* text, const char* result) {
            QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(result);
        };
        row("empty", "", "");
        row("plain", "a b", "a b");
        row("one", "@panel", "#1");
        row("within a text", "a@panel;b", "a#1;b");
        row("twice", "@panel @panel", "#1 #1");
        row("side by side", "@panel@panel", "#1#1");
        row("the rest of a word stays", "@panels", "#1s");
        row("case counts", "@Panel @PANEL", "@Panel @PANEL");
        row("longer before shorter", "@accentL3 @accent", "#3 #2");
        row("shorter before another rest", "@accentL4", "#2L4");
        row("sign alone", "@", "@");
        row("sign at the end", "a@", "a@");
        row("two signs", "@@panel", "@#1");
        row("beginning alone", "@pane @accen", "@pane @accen");
        row("unknown", "@interactiveDisabled", "@interactiveDisabled");
        row("beyond ASCII", "\xC3\xA4@panel\xE2\x82\xAC@\xC3\xA4",
            "\xC3\xA4#1\xE2\x82\xAC@\xC3\xA4");
        // The value of @iconA is "Bc", that of @iconB empty, that of @iconBc "path".
        row("value completes a variable that follows", "@icon@iconA", "c");
        row("and there is a rest", "@icon@iconAx", "cx");
        row("empty value joins what stands around it", "@last@iconBVariable", "end");
        row("beginning that isn't right before", "@icon @iconA", "@icon Bc");
    }

    void texts()
    {
        QFETCH(QString, text);
        QFETCH(QString, result);
        QCOMPARE(substitute_variables(text, variables("Bc")), result);
    }

    void valueThatCompletesAnEarlierVariable()
    {
        QCOMPARE(substitute_variables("@pane@iconA", variables("l")), QString("@panel"));
    }

    void valuesWithSigns()
    {
        // What a value holds is seen by the variables that follow, not by those before.
        QCOMPARE(substitute_variables("@iconA", variables("@panel@lastVariable")),
                 QString("@panelend"));
        QCOMPARE(substitute_variables("@iconA", variables("@iconA")), QString("@iconA"));
    }

private:
    static std::vector<variable> variables(const QString& iconValue)
    {
        return {
            {QLatin1String("@panel"), "#1"},         {QLatin1String("@accentL3"), "#3"},
            {QLatin1String("@accent"), "#2"},        {QLatin1String("@iconBc"), "path"},
            {QLatin1String("@iconA"), iconValue},    {QLatin1String("@iconB"), QString()},
            {QLatin1String("@lastVariable"), "end"},
        };
    }
};

QTEST_APPLESS_MAIN(tst_variable_substitution)
#include "tst_variable_substitution.moc"
