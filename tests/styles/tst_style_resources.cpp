// The library's resources: the template of the style sheet and the icons.

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/ZvStyleManager.h>

#include "support/BuiltInStyles.h"
#include "support/Files.h"
#include "support/StyleHost.h"
#include "support/TemplateRules.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>
#include <QXmlStreamReader>

#include <algorithm>
#include <memory>
#include <vector>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleManager;

namespace {

const QString folder = ":/libzvutil/style/";

QByteArray resource(const QString& name)
{
    return zvtest::contentOf(folder + name);
}

QString templateText()
{
    return QString::fromLatin1(zvtest::contentOf(ZvStyle::TemplateResourcePath()));
}

struct ReadRule
{
    QString selector;
    QStringList declarations;
};

/// The rules of a style sheet, in which no declaration holds a brace or a semicolon.
std::vector<ReadRule> rulesOf(QString text)
{
    static const QRegularExpression comment("/\\*.*?\\*/",
                                            QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression rule("([^{}]+)\\{([^{}]*)\\}");
    text.remove(comment);
    std::vector<ReadRule> rules;
    QRegularExpressionMatchIterator matches = rule.globalMatch(text);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        ReadRule read{match.captured(1).trimmed(), {}};
        for (const QString& declaration : match.captured(2).split(QLatin1Char(';'))) {
            if (!declaration.trimmed().isEmpty())
                read.declarations += declaration.trimmed();
        }
        rules.push_back(read);
    }
    return rules;
}

/// What Qt complains about while it parses style sheets.
QStringList warnings;

void collectWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    // The offscreen platform complains about every window.
    const bool isPlatforms = text.startsWith("This plugin does not support");
    if (type != QtDebugMsg && type != QtInfoMsg && !isPlatforms)
        warnings += text;
}

/// A control in each of its states, with the text "Label".
template <typename Control>
void addRow(QGridLayout& grid, int row, const char* name)
{
    grid.addWidget(new QLabel(QString::fromLatin1(name)), row, 0);
    for (int column = 1; column <= 4; ++column) {
        auto* const control = new Control;
        control->setText("Label");
        control->setDisabled(column == 2);
        control->setDown(column == 3);
        control->setChecked(column == 4);
        grid.addWidget(control, row, column);
    }
}

std::unique_ptr<QWidget> sampleWindow()
{
    auto window = std::make_unique<QWidget>();
    auto* const grid = new QGridLayout(window.get());
    int column = 1;
    grid->addWidget(new QLabel("Type"), 0, 0);
    for (const char* state : {"Enabled", "Disabled", "Pressed", "Checked"})
        grid->addWidget(new QLabel(QString::fromLatin1(state)), 0, column++);
    addRow<QPushButton>(*grid, 1, "Button");
    addRow<QCheckBox>(*grid, 2, "Checkbox");
    addRow<QRadioButton>(*grid, 3, "RadioButton");
    addRow<QToolButton>(*grid, 4, "ToolButton");
    auto* const partial = new QCheckBox("Label");
    partial->setCheckState(Qt::PartiallyChecked);
    grid->addWidget(new QLabel("PartialCheckbox"), 5, 0);
    grid->addWidget(partial, 5, 1);
    auto* const combo = new QComboBox;
    combo->addItem("Label");
    grid->addWidget(combo, 5, 2);
    auto* const disabled = new QLineEdit("Label");
    disabled->setDisabled(true);
    grid->addWidget(new QLineEdit("Label"), 5, 3);
    grid->addWidget(disabled, 5, 4);
    auto* const tabs = new QTabWidget;
    tabs->addTab(new QPlainTextEdit("Label"), "Text");
    tabs->addTab(new QWidget, "Other");
    grid->addWidget(tabs, 6, 0, 1, 3);
    auto* const group = new QGroupBox("Group");
    auto* const progress = new QProgressBar;
    progress->setValue(60);
    (new QVBoxLayout(group))->addWidget(progress);
    grid->addWidget(group, 6, 3, 1, 2);
    return window;
}

} // namespace

class tst_style_resources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_host.isValid()); }

    void templatePath()
    {
        QCOMPARE(ZvStyle::TemplateResourcePath(), QString(":/libzvutil/style/template.tqss"));
    }

    void templateRules_data()
    {
        QTest::addColumn<int>("index");
        QCOMPARE(zvtest::templateRules().size(), std::size_t(63));
        for (int i = 0; i < 63; ++i)
            QTest::addRow("rule %d", i + 1) << i;
    }

    void templateRules()
    {
        QFETCH(int, index);
        const std::vector<ReadRule> rules = rulesOf(templateText());
        QCOMPARE(rules.size(), std::size_t(63));
        const zvtest::Rule& expected = zvtest::templateRules()[std::size_t(index)];
        const ReadRule& rule = rules[std::size_t(index)];
        QCOMPARE(rule.selector, QString::fromLatin1(expected.selector));
        QStringList declarations;
        for (const char* declaration : expected.declarations)
            declarations += QString::fromLatin1(declaration);
        QCOMPARE(rule.declarations, declarations);
    }

    void templateForm()
    {
        const QByteArray bytes = resource("template.tqss");
        QVERIFY(std::all_of(bytes.begin(), bytes.end(), [](char c) {
            return c == '\r' || c == '\n' || (c >= ' ' && c < 127);
        }));
        QCOMPARE(bytes.count('\n'), bytes.count("\r\n"));
        QCOMPARE(bytes.count('\r'), bytes.count("\r\n"));
        QVERIFY(bytes.endsWith("\r\n}"));
        // One quoted family, without a semicolon behind it.
        QVERIFY(bytes.contains("font-family: \"Consolas, 'Courier New', monospace\"\r\n}"));
    }

    void templateComments()
    {
        const QString text = templateText();
        const int menuBar = text.indexOf("QMenuBar::item:selected, QMenu::item");
        const int toolBar = text.indexOf("QMenuBar, QToolBar\r\n");
        const QString between = text.mid(menuBar, toolBar - menuBar);
        QVERIFY(between.contains("This breaks empty table entries that are then written to."));
        QVERIFY(between.contains("@textEnabled"));
        QVERIFY(between.contains("@textDisabled"));
        QVERIFY(text.contains(
            "/*TODO: this needs to be changed for light mode.**/\r\nQCheckBox::indicator\r\n{"));
    }

    void templateVariables()
    {
        // These have no use in the template, and one of it has no value.
        const QString text = templateText();
        for (const char* unused : {"@editorHover", "@borderEditorFocus", "@accentL2", "@textHover",
                                   "@testplanCommentTextEnabled"})
            QVERIFY(!text.contains(QLatin1String(unused)));
        ZvStyleManager::SetStyle(ZvStyleManager::Library().light());
        ZvStyleManager::Refresh();
        static const QRegularExpression variable("@\\w+");
        QStringList left;
        QRegularExpressionMatchIterator matches = variable.globalMatch(qApp->styleSheet());
        while (matches.hasNext())
            left += matches.next().captured();
        QCOMPARE(left, QStringList{"@interactiveDisabled"});
    }

    void substitutionSteps_data()
    {
        QTest::addColumn<QString>("light");
        QTest::addColumn<QString>("dark");
        const auto row = [](const char* variable, const char* light, const char* dark) {
            QTest::newRow(variable) << QString::fromLatin1(light) << QString::fromLatin1(dark);
        };
        const auto shadeRow = [](const char* variable, const QColor& shade) {
            const QString text = shade.name(QColor::HexArgb);
            QTest::newRow(variable) << text << text;
        };
        const QColor accent(0x2D, 0x7D, 0x9A);
        row("@panel", "#fff0f0f0", "#ff202020");
        row("@editorEnabled", "#ffffffff", "#ff282828");
        row("@editorDisabled", "#ffffffff", "#ff282828");
        row("@editorFocus", "#ffcccccc", "#ff202020");
        row("@editorHover", "#ffffffff", "#ff323232");
        row("@interactiveEnabled", "#ffffffff", "#ff303030");
        row("@interactiveHover", "#ffffffff", "#ff3c3c3c");
        row("@interactivePressed", "#ffcccccc", "#ff262626");
        row("@borderEditorEnabled", "#ff929292", "#ff464646");
        row("@borderEditorDisabled", "#ff000000", "#ff202020");
        row("@borderEditorFocus", "#ff929292", "#ff464646");
        row("@borderEditorHover", "#ff757575", "#ff575757");
        row("@borderInteractiveEnabled", "#ff929292", "#ff545454");
        row("@borderInteractiveDisabled", "#ffffffff", "#ff262626");
        row("@borderInteractiveHover", "#ff757575", "#ff696969");
        row("@borderInteractivePressed", "#ffb6b6b6", "#ff434343");
        row("@accentD1", "#ff2d7d9a", "#ff2d7d9a");
        shadeRow("@accentD2", accent.darker(150));
        shadeRow("@accentD3", accent.darker(200));
        row("@accentL1", "#ff2d7d9a", "#ff2d7d9a");
        shadeRow("@accentL2", accent.lighter(150));
        shadeRow("@accentL3", accent.lighter(200));
        row("@accentForeground", "#ff000000", "#ff000000");
        row("@accent", "#ff2d7d9a", "#ff2d7d9a");
        row("@textEnabled", "#ff000000", "#ffffffff");
        row("@textDisabled", "#61000000", "#61ffffff");
        row("@textHover", "#99000000", "#ff000000");
        row("@iconCheckboxTick", ":/libzvutil/style/tick-black.svg",
            ":/libzvutil/style/tick-black.svg");
        row("@iconCheckboxIndeterminate", ":/libzvutil/style/indeterminate-black.svg",
            ":/libzvutil/style/indeterminate-black.svg");
        row("@iconClose", ":/libzvutil/style/cross-black.svg", ":/libzvutil/style/cross-white.svg");
        row("@iconMenu", ":/libzvutil/style/menu-black.svg", ":/libzvutil/style/menu-white.svg");
        row("@testplanCommentTextEnabled", "#ff000000", "#ff000000");
    }

    void substitutionSteps()
    {
        QFETCH(QString, light);
        QFETCH(QString, dark);
        const QString variable = QString::fromLatin1(QTest::currentDataTag());
        QCOMPARE(substituted(ZvStyleManager::Library().light(), variable), light);
        QCOMPARE(substituted(ZvStyleManager::Library().dark(), variable), dark);
        QCOMPARE(substituted(ZvStyleManager::Library().dark(), variable + QLatin1Char('x')),
                 dark + QLatin1Char('x'));
        // The name of a brush is no variable.
        QString capital = variable;
        capital[1] = capital[1].toUpper();
        QCOMPARE(substituted(ZvStyleManager::Library().dark(), capital), capital);
    }

    void testplanVariableIsTheBrushComment()
    {
        ZvStyle style("x");
        style.setEditorColour("TESTPLAN", "comment", QColor(1, 2, 3, 4));
        QCOMPARE(substituted(style, "@testplanCommentTextEnabled"), QString("#04010203"));
    }

    void iconPathsMayHoldVariables()
    {
        ZvStyle style("x");
        style.setIcon(libzvutil::ZvStyleIcon::CheckboxTick, "@iconMenu@panel");
        style.setIcon(libzvutil::ZvStyleIcon::Menu, "m.svg");
        QCOMPARE(substituted(style, "@iconCheckboxTick"), QString("m.svg@panel"));
        // The editors' variable comes behind all icons.
        style.setEditorColour("Testplan", "Comment", QColor(1, 2, 3, 4));
        for (const libzvutil::ZvStyleIcon icon :
             {libzvutil::ZvStyleIcon::CheckboxTick, libzvutil::ZvStyleIcon::CheckboxIndeterminate,
              libzvutil::ZvStyleIcon::Close, libzvutil::ZvStyleIcon::Menu})
            style.setIcon(icon, "@testplanCommentTextEnabled");
        for (const char* const icon :
             {"@iconCheckboxTick", "@iconCheckboxIndeterminate", "@iconClose", "@iconMenu"})
            QCOMPARE(substituted(style, QString::fromLatin1(icon)), QString("#04010203"));
    }

    void svgFiles_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("paths");
        QTest::addColumn<bool>("filled");
        QTest::newRow("tick") << "M26,49.5l16,15.5l32,-31" << 1 << false;
        QTest::newRow("cross") << "M24,24l52,52|M24,76l52,-52" << 2 << false;
        QTest::newRow("indeterminate") << "M24,50l52,0" << 1 << false;
        QTest::newRow("menu") << "M24,35l52,0l-26,41l-26,-41Z" << 1 << true;
    }

    void svgFiles()
    {
        QFETCH(QString, path);
        QFETCH(int, paths);
        QFETCH(bool, filled);
        const QString shape = QString::fromLatin1(QTest::currentDataTag());
        for (const bool isBlack : {true, false}) {
            const QString name = shape + (isBlack ? QString("-black.svg") : QString("-white.svg"));
            const QString colour = isBlack ? QString("#000") : QString("#ebebeb");
            QXmlStreamReader reader(resource(name));
            QVERIFY(reader.readNextStartElement());
            QCOMPARE(reader.attributes().value("viewBox"), QString("0 0 100 100"));
            QStringList found;
            while (reader.readNextStartElement()) {
                const QXmlStreamAttributes attributes = reader.attributes();
                const auto value = [&attributes](const char* key) {
                    return attributes.value(QLatin1String(key)).toString();
                };
                found += value("d");
                QCOMPARE(value("stroke"), colour);
                QCOMPARE(value("stroke-width"), QString("8px"));
                QCOMPARE(value("stroke-linecap"), QString("round"));
                QCOMPARE(value("stroke-linejoin"), QString("round"));
                QCOMPARE(value("fill"), filled ? colour : QString("none"));
                QCOMPARE(value("fill-opacity"), filled ? QString("0.8") : QString());
                QCOMPARE(value("stroke-opacity"), filled ? QString("0.8") : QString());
                reader.skipCurrentElement();
            }
            QVERIFY(!reader.hasError());
            QCOMPARE(found.size(), paths);
            QCOMPARE(found.join(QLatin1Char('|')), path);

            // It renders, on nothing, in its colour.
            const QImage image = QIcon(folder + name).pixmap(50, 50).toImage();
            QCOMPARE(image.size(), QSize(50, 50));
            QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
            int drawn = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x) {
                    const QColor pixel = image.pixelColor(x, y);
                    if (pixel.alpha() < 200)
                        continue;
                    ++drawn;
                    QVERIFY(isBlack ? pixel.lightness() < 16 : pixel.lightness() > 220);
                }
            }
            QVERIFY(drawn > 50);
        }
    }

    void pngFiles()
    {
        QStringList expected;
        for (const char* shape : {"cross", "indeterminate", "menu", "tick"}) {
            for (const int size : {100, 25, 50}) {
                const QString name = QString("%1-%2.png").arg(QLatin1String(shape)).arg(size);
                QCOMPARE(QImage(folder + name).size(), QSize(size, size));
                expected += name;
            }
        }
        QCOMPARE(QImage(folder + "menu-dark-25.png").size(), QSize(25, 25));
        expected += "menu-dark-25.png";
        expected.sort();
        QStringList found = QDir(folder).entryList({"*.png"});
        found.sort();
        QCOMPARE(found, expected);
        QCOMPARE(QDir(folder).entryList().size(), 2 + 8 + 13);
    }

    void qtAcceptsTheSheet_data() { zvtest::addStyleRows(); }

    void qtAcceptsTheSheet()
    {
        QFETCH(QString, style);
        qApp->setStyleSheet(QString());
        const std::unique_ptr<QWidget> window = sampleWindow();
        warnings.clear();
        const QtMessageHandler handler = qInstallMessageHandler(&collectWarnings);
        const bool applied = ZvStyleManager::Style(style).apply();
        window->ensurePolished();
        window->show();
        const QPixmap picture = window->grab();
        qInstallMessageHandler(handler);
        QVERIFY(applied);
        // The unknown variable and what it stands in are Qt's affair, in silence.
        QCOMPARE(warnings, QStringList());

        // For people to look at.
        QVERIFY(QDir().mkpath(PICTURES));
        QVERIFY(picture.save(QString(PICTURES "/controls-%1.png").arg(style)));
        const QColor panel(style == "Dark" ? QColor(0x20, 0x20, 0x20) : QColor(0xF0, 0xF0, 0xF0));
        QCOMPARE(picture.toImage().pixelColor(1, 1), panel);
    }

private:
    /// What the style makes of a text.
    static QString substituted(const ZvStyle& style, const QString& text)
    {
        if (!style.apply(text))
            return "nothing applied";
        return qApp->styleSheet().section("}\n", -1);
    }

    const zvtest::StyleHost m_host;
};

QTEST_MAIN(tst_style_resources)
#include "tst_style_resources.moc"
