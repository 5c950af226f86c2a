// Documents on paper, in PDF files and as pictures and CSV for other programs.

#include "DocumentTest.h"
#include "Ink.h"
#include "Plan.h"
#include "Printed.h"
#include "Sheet.h"

#include "documents/ProgressBox.h"
#include "output/OutputContent.h"
#include "output/export_file.h"
#include "output/printing.h"
#include "schematic/SchematicPicture.h"
#include "script/TextDocument.h"
#include "testplan/csv_plan.h"
#include "testplan/plan_csv.h"

#include <support/Files.h>

#include <zvutil/ZvClipboardData.h>
#include <zvutil/ZvTable.h>

#include <zvworkbench/FileError.h>

#include <QClipboard>
#include <QElapsedTimer>
#include <QImage>
#include <QMimeData>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSvgRenderer>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace workbench;
using zvtest::inkOf;
using zvtest::pagesOfPdf;
using zvtest::planOf;
using zvtest::rendered;
using zvtest::strayInk;
using zvtest::symbolOf;
using zvtest::textOf;
using zvtest::wordsOf;

namespace {

bool goOn(int /*done*/, int /*all*/)
{
    return true;
}

/// Parts that show all there is: each kind of symbol, labels, a junction and wires.
Schematic amplifier()
{
    Schematic schematic;
    schematic.symbols = {symbolOf(SymbolKind::Resistor, "R1", {0, -6}),
                         symbolOf(SymbolKind::Capacitor, "C1", {12, 4}, 90),
                         symbolOf(SymbolKind::Diode, "D1", {24, -6}),
                         symbolOf(SymbolKind::Source, "S1", {-12, 4}),
                         symbolOf(SymbolKind::Ground, "G1", {12, 16}),
                         symbolOf(SymbolKind::Chip, "U1", {40, 2})};
    for (Symbol& symbol : schematic.symbols)
        symbol.value = QString::fromUtf8("4.7 kΩ");
    schematic.wires = {{0, {{4, -6}, {20, -6}}}, {0, {{12, -6}, {12, 0}}}};
    return schematic;
}

/// Whether all pixels are grey: the picture has no colour of a style.
bool isGrey(const QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qRed(pixel) != qGreen(pixel) || qGreen(pixel) != qBlue(pixel))
                return false;
        }
    }
    return true;
}

/// What a library that other programs use, and this one for its clipboard, reads from CSV.
QStringList readByLibrary(const QByteArray& csv)
{
    QMimeData data;
    data.setData("text/csv", csv);
    const ZvTable table = ZvClipboardData(&data).csvData();
    QStringList rows;
    for (unsigned long long row = 0; row < table.rows(); ++row) {
        QStringList cells;
        for (unsigned long long column = 0; column < table.columns(); ++column)
            cells.append(table.value(row, column).data().toString());
        rows.append(cells.join(QLatin1Char('|')));
    }
    return rows;
}

QStringList headingsOf(int columns)
{
    QStringList headings;
    for (int i = 0; i < columns; ++i)
        headings.append(QString("Head%1").arg(i));
    return headings;
}

} // namespace

class tst_workbench_output : public zvtest::DocumentTest
{
    Q_OBJECT

    QByteArray pdfFor(const OutputContent& content) const
    {
        return pdfOf(content, "title", usualPages(content.orientation()), {}, goOn);
    }

    /// Its text, page by page; leaves the file as a picture of what a user sees.
    QStringList textOn(const OutputContent& content, const char* name) const
    {
        const QString file = QString(PICTURES "/output-%1.pdf").arg(QLatin1String(name));
        zvtest::writeTo(file, pdfFor(content));
        return zvtest::textOfPdf(file);
    }

    /// A page of 96 dots per inch with a plan whose only cell is in a column of some 400 dots.
    static QImage pageWith(const QString& text)
    {
        zvtest::Plan plan;
        plan.model.setPlan(planOf({QString(40, 'M')}, {text}));
        QImage image(800, 200, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        plan.document.pages({image.size(), 96}, goOn)->paint(painter, 0);
        return image;
    }

    /// The middle, from left to right, of what one picture has and the other one hasn't.
    static double middleOfInk(const QImage& image, const QImage& other)
    {
        double sum = 0;
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) != other.pixel(x, y)) {
                    sum += x;
                    ++count;
                }
            }
        }
        return count == 0 ? -1 : sum / count;
    }

private Q_SLOTS:
    void eachPageOfAPlanHasTitleHeadingsAndNumber()
    {
        if (zvtest::pdfReader().isEmpty())
            QSKIP("there is no pdftotext");
        zvtest::Plan plan;
        TestPlan content = planOf({"Step", "What to do", "Limit"}, {});
        for (int row = 0; row < 130; ++row)
            content.rows.push_back(
                {{double(row + 1), QString("Measure point %1").arg(row), 0.5 * row}, false});
        plan.model.setPlan(content);
        const QString file = m_dir.filePath("supply.testplan");
        plan.document.writeFile(filePath(file));
        plan.document.setFilename(filePath(file));
        const QStringList pages = textOn(plan.document, "plan");
        QVERIFY(pages.size() > 1);
        int next = 0;
        for (int page = 0; page < pages.size(); ++page) {
            const QString words = wordsOf(pages.at(page));
            QVERIFY2(words.startsWith("supply.testplan "), qPrintable(words.left(80)));
            QVERIFY(words.contains("What to do"));
            QVERIFY(words.endsWith(QString("Page %1 of %2").arg(page + 1).arg(pages.size())));
            for (; words.contains(QString("Measure point %1 ").arg(next)); ++next)
                QVERIFY(words.contains(
                    QString("%1 Measure point %2 %3").arg(next + 1).arg(next).arg(0.5 * next)));
        }
        QCOMPARE(next, 130);
    }

    void rowsHigherThanAPageGoOnOnTheNext()
    {
        if (zvtest::pdfReader().isEmpty())
            QSKIP("there is no pdftotext");
        zvtest::Plan plan;
        QStringList lines;
        for (int i = 0; i < 150; ++i)
            lines.append(QString("line-%1.").arg(i));
        TestPlan content = planOf({"A", "B"}, {"before|x", "-|y", "after|z"});
        content.rows[1].cells[0] = lines.join(QLatin1Char('\n'));
        plan.model.setPlan(content);
        const QStringList pages = textOn(plan.document, "high-row");
        QVERIFY(pages.size() >= 3);
        const QString all = wordsOf(pages.join(QLatin1Char(' ')));
        for (const QString& line : lines)
            QCOMPARE(all.count(line), 1);
        QVERIFY(all.indexOf("before") < all.indexOf("line-0."));
        QVERIFY(all.indexOf("line-149.") < all.indexOf("after"));
        for (const QString& page : pages)
            QVERIFY(wordsOf(page).contains("A B"));
    }

    void columnsThatHaveNoRoomGoOnFurtherPages()
    {
        if (zvtest::pdfReader().isEmpty())
            QSKIP("there is no pdftotext");
        zvtest::Plan plan;
        TestPlan content = planOf(headingsOf(40), {});
        for (int row = 0; row < 3; ++row) {
            content.rows.emplace_back();
            for (int column = 0; column < 40; ++column)
                content.rows.back().cells.append(QString("cell%1x%2.").arg(row).arg(column));
        }
        plan.model.setPlan(content);
        const QStringList pages = textOn(plan.document, "wide");
        QVERIFY(pages.size() > 1);
        const QString all = wordsOf(pages.join(QLatin1Char(' ')));
        for (int column = 0; column < 40; ++column) {
            for (int row = 0; row < 3; ++row)
                QCOMPARE(all.count(QString("cell%1x%2.").arg(row).arg(column)), 1);
        }
        // The headings stand above their columns, on the same page.
        for (const QString& page : pages) {
            for (int column = 0; column < 40; ++column)
                QCOMPARE(wordsOf(page).split(' ').contains(QString("Head%1").arg(column)),
                         page.contains(QString("cell0x%1.").arg(column)));
        }
    }

    void aColumnWiderThanAPageIsBroken()
    {
        if (zvtest::pdfReader().isEmpty())
            QSKIP("there is no pdftotext");
        zvtest::Plan plan;
        QString text;
        for (int i = 0; i < 400; ++i)
            text += QString("word%1. ").arg(i);
        plan.model.setPlan(planOf({"A", "B"}, {text + "|end", QString(1'000, 'x') + "|end"}));
        const QStringList pages = textOn(plan.document, "wide-column");
        QCOMPARE(pages.size(), 1);
        for (int i = 0; i < 400; ++i)
            QVERIFY(wordsOf(pages.first()).contains(QString("word%1.").arg(i)));
        QCOMPARE(pages.first().count('x'), 1'000 + QString("Test plan").count('x'));
    }

    void rightToLeftTextsBeginAtTheRight()
    {
        const QImage blank = pageWith(QString());
        const double left = middleOfInk(pageWith("Check"), blank);
        const double right = middleOfInk(pageWith(QString::fromUtf8("בדיקה")), blank);
        const double number = middleOfInk(pageWith("12345"), blank);
        QVERIFY2(left > 0 && left < 120, qPrintable(QString::number(left)));
        QVERIFY2(right > 300, qPrintable(QString::number(right)));
        QVERIFY2(number > 300, qPrintable(QString::number(number)));
    }

    void linesOfTextsAreNumberedAndBroken()
    {
        if (zvtest::pdfReader().isEmpty())
            QSKIP("there is no pdftotext");
        TextDocument document("notes", nullptr);
        QString text = "first\n\tindented\n";
        for (int i = 0; i < 300; ++i)
            text += QString("word%1. ").arg(i);
        text += "\nlast";
        document.findChild<QPlainTextEdit*>("text")->setPlainText(text);
        const QStringList pages = textOn(document, "text");
        QCOMPARE(pages.size(), 1);
        const QString words = wordsOf(pages.first());
        QVERIFY2(words.startsWith("notes 1 first 2 indented 3 word0. "),
                 qPrintable(words.left(60)));
        QVERIFY2(words.endsWith("word299. 4 last Page 1 of 1"), qPrintable(words.right(60)));
        const auto lines = pages.first().split('\n').filter("indented");
        QVERIFY(lines.first().indexOf("indented")
                > pages.first().split('\n').filter("first").first().indexOf("first"));
    }

    void schematicsFitOnOnePage()
    {
        if (zvtest::pdfReader().isEmpty())
            QSKIP("there is no pdftotext");
        Schematic huge = amplifier();
        for (Symbol& symbol : huge.symbols)
            symbol.position *= 2'000;
        for (const Schematic& schematic : {amplifier(), huge}) {
            const zvtest::Sheet sheet(schematic);
            const QStringList pages =
                textOn(sheet.document, schematic == huge ? "huge-schematic" : "schematic");
            QCOMPARE(pages.size(), 1);
            const QString words = wordsOf(pages.first());
            for (const char* const text : {"New schematic", "R1", "C1", "D1", "S1", "U1"})
                QVERIFY2(words.contains(text), qPrintable(words));
            QVERIFY(words.contains(QString::fromUtf8("4.7 kΩ")));
            QVERIFY(words.endsWith("Page 1 of 1"));
            QCOMPARE(sheet.document.orientation(), QPageLayout::Landscape);
        }
    }

    void pagesAreCountedBeforeTheyAreMade()
    {
        TestPlan content = planOf({"A"}, {});
        content.rows.resize(std::size_t(maxPlanRows));
        zvtest::Plan plan;
        plan.model.setPlan(content);
        QString reason;
        try {
            pdfFor(plan.document);
        } catch (const FileError& error) {
            reason = error.reason();
        }
        QCOMPARE(reason, QString("It would need more than 10,000 pages."));
    }

    void onlyThePagesOfARangeArePrinted_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("last");
        QTest::addColumn<bool>("isReversed");
        QTest::addColumn<QString>("numbers");
        QTest::newRow("all") << 1 << 99 << false << "1 2 3";
        QTest::newRow("one") << 2 << 2 << false << "2";
        QTest::newRow("backwards") << 1 << 3 << true << "3 2 1";
        QTest::newRow("beyond the end") << 7 << 9 << false << "3";
        QTest::newRow("the wrong way") << 3 << 1 << false << "3";
    }

    void onlyThePagesOfARangeArePrinted()
    {
        if (zvtest::pdfReader().isEmpty())
            QSKIP("there is no pdftotext");
        QFETCH(int, first);
        QFETCH(int, last);
        QFETCH(bool, isReversed);
        QFETCH(QString, numbers);
        TextDocument document("notes", nullptr);
        document.findChild<QPlainTextEdit*>("text")->setPlainText(
            QString("a line\n").repeated(150));
        const QString file = m_dir.filePath("range.pdf");
        zvtest::writeTo(file,
                        pdfOf(document, "t", usualPages(QPageLayout::Portrait),
                              {first, last, isReversed}, goOn));
        QStringList printed;
        for (const QString& page : zvtest::textOfPdf(file)) {
            const QStringList words = wordsOf(page).split(' ');
            QCOMPARE(words.mid(words.size() - 4, 1), QStringList("Page"));
            QCOMPARE(words.last(), QString("3"));
            printed.append(words.at(words.size() - 3));
        }
        QCOMPARE(printed.join(' '), numbers);
    }

    void aStopLeavesNoFile()
    {
        zvtest::Plan plan;
        const auto stop = [](int, int) { return false; };
        for (const char* const name : {"stopped.pdf", "stopped.csv"})
            QVERIFY_EXCEPTION_THROWN(
                exportFile(plan.document, filePath(m_dir.filePath(name)), stop), Stopped);
        zvtest::Sheet sheet(amplifier());
        for (const char* const name : {"stopped.pdf", "stopped.svg", "stopped.png"})
            QVERIFY_EXCEPTION_THROWN(
                exportFile(sheet.document, filePath(m_dir.filePath(name)), stop), Stopped);
        QVERIFY(QDir(m_dir.path()).entryList({"stopped*"}).isEmpty());
    }

    // At two pixels to the unit, at most 1 % of the dark pixels of one picture have none of the other's within two
    // pixels.
    void svgLooksLikeTheScene()
    {
        zvtest::Sheet sheet(amplifier());
        const SchematicPicture picture(sheet.scene.schematic());
        const QByteArray svg = picture.svg("Amplifier <1>", goOn);
        QSvgRenderer renderer(svg);
        QVERIFY(renderer.isValid());
        const QRect area = picture.bounds().toAlignedRect();
        QCOMPARE(renderer.viewBox(), area);
        QVERIFY(svg.contains("<title>Amplifier &lt;1&gt;</title>"));
        const QImage drawn = rendered(svg, 2 * area.size());
        const QImage shown = rendered(sheet.scene, area, 2 * area.size());
        drawn.save(PICTURES "/output-svg.png");
        shown.save(PICTURES "/output-scene.png");
        QVERIFY(inkOf(shown) > 1'000);
        const double lost = strayInk(shown, drawn);
        const double added = strayInk(drawn, shown);
        QVERIFY2(lost < 0.01 && added < 0.01,
                 qPrintable(QString("lost %1, added %2").arg(lost).arg(added)));
    }

    void pngHasTheSizeOf300DotsPerInch()
    {
        zvtest::Sheet sheet(amplifier());
        const SchematicPicture picture(sheet.scene.schematic());
        const QString file = m_dir.filePath("a.png");
        exportFile(sheet.document, filePath(file), goOn);
        const QImage image(file);
        QCOMPARE(image.size(),
                 (picture.bounds().size() * 300 / 96).toSize().boundedTo(image.size()));
        QVERIFY(std::abs(image.width() - picture.bounds().width() * 300 / 96) < 1);
        QCOMPARE(qRound(image.dotsPerMeterX() * 0.0254), 300);
        QCOMPARE(image.text("Title"), QString("New schematic"));
        QCOMPARE(image.pixel(0, 0), qRgb(255, 255, 255));
        const QImage shown = rendered(sheet.scene, picture.bounds(), image.size());
        QVERIFY(strayInk(shown, image) < 0.01);
        QVERIFY(strayInk(image, shown) < 0.01);
    }

    void tooLargePicturesAreRefused()
    {
        Schematic wide;
        wide.symbols = {symbolOf(SymbolKind::Resistor, "R1", {-farthestStep, -farthestStep}),
                        symbolOf(SymbolKind::Resistor, "R2", {farthestStep, farthestStep})};
        const SchematicPicture picture(wide);
        QString reason;
        try {
            picture.png("t", goOn);
        } catch (const FileError& error) {
            reason = error.reason();
        }
        QVERIFY2(reason.contains("at most 64,000,000"), qPrintable(reason));
        // On the clipboard it becomes smaller instead.
        const QImage image = picture.image(10'000);
        QVERIFY(!image.isNull() && qint64(image.width()) * image.height() <= 10'000);
        QVERIFY(!picture.svg("t", goOn).isEmpty());
    }

    void paperIsWhiteWhateverTheStyle()
    {
        zvtest::Sheet sheet(amplifier());
        zvtest::Plan plan;
        plan.model.setPlan(planOf({"A", "Verdict"}, {"# comment|", "x|fail", "y|warn"}));
        plan.model.setRowsDisabled(2, 1, true);
        const SchematicPicture picture(sheet.scene.schematic());
        const QImage light = picture.image(1'000'000);
        const int lightSize = pdfFor(plan.document).size();
        const QByteArray svg = picture.svg("t", goOn);
        zvtest::showPaintedStyle("Dark");
        const QImage dark = SchematicPicture(sheet.scene.schematic()).image(1'000'000);
        const int darkSize = pdfFor(plan.document).size();
        const QByteArray darkSvg = SchematicPicture(sheet.scene.schematic()).svg("t", goOn);
        zvtest::showPaintedStyle("Light");
        QVERIFY(isGrey(light));
        QCOMPARE(dark, light);
        QCOMPARE(darkSvg, svg);
        QCOMPARE(darkSize, lightSize);
    }

    void selectionAndHalfDrawnPartsAreNotPrinted()
    {
        zvtest::Sheet sheet(amplifier());
        const QImage before = SchematicPicture(sheet.scene.schematic()).image(1'000'000);
        sheet.scene.selectAll();
        sheet.scene.setTool(SchematicScene::Tool::Wire);
        sheet.click({0, 0});
        QVERIFY(sheet.scene.isDrawing());
        QCOMPARE(SchematicPicture(sheet.scene.schematic()).image(1'000'000), before);
    }

    void copiedPartsArePicturesForOtherPrograms()
    {
        zvtest::Sheet sheet(amplifier());
        const int resistor = sheet.scene.schematic().symbols.first().id;
        sheet.scene.select(resistor);
        sheet.action("copy")->trigger();
        const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
        QVERIFY(data->hasFormat("application/x-workbench-schematic"));
        QVERIFY(data->hasImage());
        const QByteArray svg = data->data("image/svg+xml");
        QVERIFY(svg.contains(">R1<"));
        QVERIFY(!svg.contains(">C1<"));
        const QImage image = data->imageData().value<QImage>();
        Schematic one;
        one.symbols = {sheet.scene.schematic().symbols.first()};
        QCOMPARE(image, SchematicPicture(one).image(maxPicturePixels));
        QVERIFY(inkOf(image) > 100);
        // Schematics paste it as before.
        sheet.action("paste")->trigger();
        QCOMPARE(sheet.scene.schematic().symbols.size(), 7);
    }

    void largeCopiesHaveNoPictures()
    {
        Schematic schematic;
        for (int i = 0; i < 5'001; ++i)
            schematic.symbols.append(symbolOf(SymbolKind::Resistor, "R", {10 * (i % 100), i / 10}));
        zvtest::Sheet sheet(schematic);
        sheet.scene.selectAll();
        sheet.action("copy")->trigger();
        const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
        QCOMPARE(data->formats(), QStringList("application/x-workbench-schematic"));
        QVERIFY(!data->hasImage());
    }

    void csvIsReadBackAsItWas_data()
    {
        QTest::addColumn<QStringList>("headings");
        QTest::addColumn<QStringList>("cells");
        QTest::newRow("plain") << QStringList{"A", "B"} << QStringList{"x", "1.5", "", "y"};
        QTest::newRow("commas") << QStringList{"A, B", "C"}
                                << QStringList{"1,5", ",", ",,", "a, b"};
        QTest::newRow("quotes") << QStringList{"\"A\"", "B\""}
                                << QStringList{"\"", "\"\"", "say \"yes\", or no", "a\"b"};
        QTest::newRow("lines") << QStringList{"A\nB", "C"}
                               << QStringList{"two\nlines", "\n", "a,\nb", "c\n\"d\""};
        QTest::newRow("other separators")
            << QStringList{"a;b;c", "d"} << QStringList{"a\tb", ";", "\t", ";\n;"};
        QTest::newRow("blanks") << QStringList{" A ", "B"} << QStringList{" a", "b ", "  ", "c"};
        QTest::newRow("scripts") << QStringList{QString::fromUtf8("Größe"),
                                                QString::fromUtf8("名前")}
                                 << QStringList{QString::fromUtf8("בדיקה"),
                                                QString::fromUtf8("4.7 kΩ"), QString::fromUtf8("😀"),
                                                "e"};
        QTest::newRow("numbers") << QStringList{"A", "B"}
                                 << QStringList{"1e-12", "-0.1", "12345678901234", "007"};
        QTest::newRow("one column") << QStringList{"A"} << QStringList{"a", "", "b", ""};
    }

    void csvIsReadBackAsItWas()
    {
        QFETCH(QStringList, headings);
        QFETCH(QStringList, cells);
        TestPlan plan;
        plan.headings = headings;
        for (int i = 0; i < cells.size(); ++i) {
            if (i % headings.size() == 0)
                plan.rows.emplace_back();
            plan.rows.back().cells.append(cellValue(cells.at(i)));
        }
        const QByteArray csv = csvOfPlan(plan, goOn);
        QCOMPARE(textOf(planOfCsv(csv, goOn).plan), textOf(plan));
    }

    void csvIsReadByTheLibraryAsItWas()
    {
        const TestPlan plan =
            planOf({"Step", "What", "Limit"}, {"1|Measure, then note|0.5", "2||-3", "3|the end|"});
        const QByteArray csv = csvOfPlan(plan, goOn);
        // It reads a line end at the end as one more row.
        const QStringList rows = readByLibrary(csv.chopped(1));
        QCOMPARE(
            rows,
            (QStringList{"Step|What|Limit", "1|Measure, then note|0.5", "2||-3", "3|the end|"}));
    }

    // Tells how long plans take, each twice as long as the one before.
    void largePlansTakeTimeInProportion()
    {
        for (const int rows : {1'000, 2'000, 4'000}) {
            TestPlan content = planOf({"Step", "What to do", "Limit", "Verdict"}, {});
            for (int row = 0; row < rows; ++row)
                content.rows.push_back(
                    {{double(row), QString("Measure point %1").arg(row), 0.5, QString("pass")},
                     false});
            zvtest::Plan plan;
            plan.model.setPlan(content);
            QElapsedTimer clock;
            clock.start();
            const QByteArray pdf = pdfFor(plan.document);
            const qint64 pdfTime = clock.restart();
            const QByteArray csv = csvOfPlan(content, goOn);
            qInfo("%d rows: PDF %lld ms, %d pages, %d kB; CSV %lld ms, %d kB", rows, pdfTime,
                  pagesOfPdf(pdf), pdf.size() / 1'000, clock.elapsed(), csv.size() / 1'000);
            QCOMPARE(csv.count('\n'), rows + 1);
            QVERIFY(pagesOfPdf(pdf) > rows / 100);
        }
    }
};

QTEST_MAIN(tst_workbench_output)
#include "tst_workbench_output.moc"
