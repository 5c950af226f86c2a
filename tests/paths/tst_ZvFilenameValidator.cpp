#include <zvutil/ZvFilenameValidator.h>

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <cstddef>
#include <limits>
#include <type_traits>

namespace {

static_assert(std::is_base_of_v<QRegularExpressionValidator, ZvFilenameValidator>);
static_assert(std::is_default_constructible_v<ZvFilenameValidator>);

constexpr QValidator::State acceptable = QValidator::Acceptable;
constexpr QValidator::State intermediate = QValidator::Intermediate;
constexpr QValidator::State invalid = QValidator::Invalid;

QValidator::State stateOf(const ZvFilenameValidator& validator, QString name)
{
    int position = 3;
    const QString before = name;
    const QValidator::State state = validator.validate(name, position);
    if (name != before || position != 3)
        QTest::qFail("validate() has changed its arguments", __FILE__, __LINE__);
    return state;
}

QString letters(int count)
{
    return QString(count, QLatin1Char('x'));
}

} // namespace

Q_DECLARE_METATYPE(QValidator::State)

class tst_ZvFilenameValidator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QValidator::State>("state");
        const auto row = [](const char* description, const QString& name, QValidator::State state) {
            QTest::newRow(description) << name << state;
        };
        row("empty", QString(), intermediate);
        row("name", "a.txt", acceptable);
        row("blank inside", "a b", acceptable);
        row("blank at the end", "a ", acceptable);
        row("blank alone", " ", acceptable);
        row("dot", ".", acceptable);
        row("two dots", "..", acceptable);
        row("dot at the end", "a.", acceptable);
        row("device", "NUL", acceptable);
        row("device with extension", "com1.txt", acceptable);
        row("letters beyond ASCII", "\u00E4\u20AC\u65E5", acceptable);
        row("character of two units", QString::fromUtf8("\xF0\x9D\x84\x9E"), acceptable);
        row("delete", QStringLiteral("a\x7F"), acceptable);
        row("other signs", "!#$%&'()+,-;=@[]^_`{}~", acceptable);
        row("line separator", "a\u2028", acceptable);
        row("directory", "a/b", invalid);
        row("drive", "C:", invalid);
        row("banned first", "?a", invalid);
        row("banned last", "a?", invalid);
        row("line break at the end", "a\n", invalid);
        row("line break alone", "\n", invalid);
        row("banned behind a surrogate", "\U0001D11E*", invalid);
    }

    void names()
    {
        QFETCH(QString, name);
        QFETCH(QValidator::State, state);
        QCOMPARE(stateOf(ZvFilenameValidator(), name), state);
    }

    void everyUnit()
    {
        const ZvFilenameValidator validator;
        const QString banned = "<>:\"/\\|?*";
        for (int unit = 0; unit < 0xD800; ++unit) {
            const QChar c(unit);
            const bool isBanned = unit < 0x20 || banned.contains(c);
            const QValidator::State expected = isBanned ? invalid : acceptable;
            if (stateOf(validator, c) != expected
                || stateOf(validator, QLatin1Char('a') + QString(c) + QLatin1Char('b')) != expected)
                QFAIL(qPrintable(QString::number(unit, 16)));
        }
    }

    void limits_data()
    {
        QTest::addColumn<quint64>("limit");
        QTest::addColumn<int>("size");
        QTest::addColumn<QValidator::State>("state");
        QTest::newRow("below the default") << quint64(256) << 255 << acceptable;
        QTest::newRow("the default itself") << quint64(256) << 256 << invalid;
        QTest::newRow("above the default") << quint64(256) << 257 << invalid;
        QTest::newRow("nothing fits into 0") << quint64(0) << 0 << invalid;
        QTest::newRow("0") << quint64(0) << 1 << invalid;
        QTest::newRow("only the empty text fits into 1") << quint64(1) << 0 << intermediate;
        QTest::newRow("1") << quint64(1) << 1 << invalid;
        QTest::newRow("2") << quint64(2) << 1 << acceptable;
        QTest::newRow("greatest") << quint64(std::numeric_limits<std::size_t>::max()) << 100'000
                                  << acceptable;
    }

    void limits()
    {
        QFETCH(quint64, limit);
        QFETCH(int, size);
        QFETCH(QValidator::State, state);
        QCOMPARE(stateOf(ZvFilenameValidator(std::size_t(limit)), letters(size)), state);
    }

    void defaultLimitOfEachConstructor()
    {
        QObject parent;
        const auto* const withParent = new ZvFilenameValidator(&parent);
        const ZvFilenameValidator withNothing;
        const ZvFilenameValidator* const validators[] = {withParent, &withNothing};
        for (const ZvFilenameValidator* validator : validators) {
            QCOMPARE(stateOf(*validator, letters(255)), acceptable);
            QCOMPARE(stateOf(*validator, letters(256)), invalid);
        }
        QCOMPARE(withParent->parent(), &parent);
        QVERIFY(!withNothing.parent());
        const auto* const withBoth = new ZvFilenameValidator(5, &parent);
        QCOMPARE(withBoth->parent(), &parent);
        QCOMPARE(stateOf(*withBoth, letters(5)), invalid);
    }

    void negativeLimitIsNone()
    {
        const ZvFilenameValidator validator(static_cast<std::size_t>(-1));
        QCOMPARE(stateOf(validator, QString(100'000, QLatin1Char('a'))), acceptable);
    }

    void expressionOfTheBaseClassCanBeReplaced()
    {
        ZvFilenameValidator validator(10);
        validator.setRegularExpression(QRegularExpression("a/b"));
        QCOMPARE(stateOf(validator, "a/b"), acceptable);
        QCOMPARE(stateOf(validator, "xyz"), invalid);
        validator.setRegularExpression(QRegularExpression());
        QCOMPARE(stateOf(validator, "a/b:*"), acceptable);
        QCOMPARE(stateOf(validator, QString(10, QLatin1Char('a'))), invalid);
    }

    void limitIsCountedInUnits()
    {
        const QString clef = QString::fromUtf8("\xF0\x9D\x84\x9E");
        QCOMPARE(stateOf(ZvFilenameValidator(5), clef + clef), acceptable);
        QCOMPARE(stateOf(ZvFilenameValidator(4), clef + clef), invalid);
    }

    void expression()
    {
        const QRegularExpression used = ZvFilenameValidator().regularExpression();
        QCOMPARE(used.pattern(), QString("^[^<>:\"/\\\\|?*\\x00-\\x1f]+$"));
        QCOMPARE(used.pattern().size(), 25);
        QCOMPARE(used.patternOptions(), QRegularExpression::NoPatternOption);
    }

    void longNamesNeitherOverflowNorTakeForEver()
    {
        const ZvFilenameValidator validator(std::numeric_limits<std::size_t>::max());
        QCOMPARE(stateOf(validator, letters(10'000'000)), acceptable);
        QCOMPARE(stateOf(validator, letters(10'000'000) + QLatin1Char('?')), invalid);
    }

    void typing()
    {
        QLineEdit edit;
        edit.setValidator(new ZvFilenameValidator(6, &edit));
        QSignalSpy finished(&edit, &QLineEdit::returnPressed);
        edit.show();
        edit.setFocus();

        QTest::keyClick(&edit, Qt::Key_Return);
        QCOMPARE(finished.count(), 0);
        QTest::keyClicks(&edit, "a/b:c?");
        QCOMPARE(edit.text(), QString("abc"));
        QVERIFY(edit.hasAcceptableInput());
        QTest::keyClicks(&edit, "defg");
        QCOMPARE(edit.text(), QString("abcde"));
        QTest::keyClick(&edit, Qt::Key_Return);
        QCOMPARE(finished.count(), 1);

        // Room again, in the middle.
        QTest::keyClick(&edit, Qt::Key_Backspace);
        QTest::keyClick(&edit, Qt::Key_Home);
        QTest::keyClicks(&edit, "<xy");
        QCOMPARE(edit.text(), QString("xabcd"));
        QCOMPARE(edit.cursorPosition(), 1);

        edit.selectAll();
        QTest::keyClick(&edit, Qt::Key_Delete);
        QCOMPARE(edit.text(), QString());
        QVERIFY(!edit.hasAcceptableInput());
    }

    void pasting_data()
    {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("result");
        QTest::newRow("name") << "bc"
                              << "abc";
        QTest::newRow("path") << "b/c"
                              << "a";
        QTest::newRow("too long") << "bcdef"
                                  << "a";
        QTest::newRow("just short enough") << "bcde"
                                           << "abcde";
        QTest::newRow("letters beyond ASCII") << "\u20AC"
                                              << "a\u20AC";
    }

    void pasting()
    {
        QFETCH(QString, pasted);
        QFETCH(QString, result);
        QLineEdit edit;
        edit.setValidator(new ZvFilenameValidator(6, &edit));
        edit.show();
        edit.setFocus();
        QTest::keyClicks(&edit, "a");
        QApplication::clipboard()->setText(pasted);
        QTest::keyClick(&edit, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(edit.text(), result);
    }
};

QTEST_MAIN(tst_ZvFilenameValidator)
#include "tst_ZvFilenameValidator.moc"
