// Printing and exporting from the workbench's window, and what empty documents say.

#include "Printed.h"
#include "WindowTest.h"

#include "common/EmptyHint.h"
#include "common/readable_colour.h"
#include "common/style_options.h"
#include "schematic/SchematicDocument.h"
#include "schematic/SchematicView.h"
#include "shell/DocumentPrinter.h"
#include "shell/DocumentTransfer.h"
#include "testplan/TestPlanDocument.h"
#include "testplan/TestPlanView.h"

#include <zvworkbench/FileError.h>

#include <QAction>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QImage>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>
#include <QSvgRenderer>
#include <QTest>
#include <QToolBar>

#include <memory>
#include <optional>

using zvtest::actionOf;
using zvtest::chooseFile;
using zvtest::contentOf;
using zvtest::failureOf;
using zvtest::longWait;
using zvtest::Window;
using zvtest::WindowResponder;
using zvtest::wordsOf;
using namespace workbench;

namespace {

/// A document of a module, which can neither be printed nor exported but as it is.
class PlainDocument : public Document
{
public:
    PlainDocument(const QString& title, QWidget* parent)
        : Document(plainType(), title, parent)
    {
    }

    static const DocumentType& plainType()
    {
        static const DocumentType type = {"plain", "Plain", "Plains", ".plain",
                                          [](const QString& title, QWidget* parent) -> Document* {
                                              return new PlainDocument(title, parent);
                                          }};
        return type;
    }

protected:
    void read(const zvutil::ZvFilePath& /*file*/) override { }
    void write(const zvutil::ZvFilePath& file) const override
    {
        zvtest::writeTo(qtFileName(file), "plain");
    }
};

bool hasPrinter()
{
    return !QPrinterInfo::availablePrinterNames().isEmpty();
}

} // namespace

class tst_workbench_window_output : public zvtest::WindowTest
{
    Q_OBJECT

    QString example(const char* name) const
    {
        const QString path = m_folder->filePath(QLatin1String(name));
        QFile::copy(QString(EXAMPLES "/workbench/") + QLatin1String(name), path);
        return path;
    }

    /// Chooses an entry of the menu as its key would, and answers the file dialog.
    static int exportTo(const Window& window, const QString& file)
    {
        const WindowResponder<QFileDialog> answer = chooseFile(file);
        QTest::keyClick(&*window, Qt::Key_E, Qt::ControlModifier | Qt::ShiftModifier);
        return answer.count;
    }

    static TestPlanView& planOf(const Window& window)
    {
        return *window->findChild<TestPlanView*>();
    }

private Q_SLOTS:
    void eachDocumentIsExportedInItsFormats_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QByteArray>("begin");
        QTest::newRow("plan as PDF") << "amplifier.testplan"
                                     << "a.pdf" << QByteArray("%PDF-");
        QTest::newRow("plan as CSV") << "amplifier.testplan"
                                     << "a.csv" << QByteArray("Step,");
        QTest::newRow("schematic as PDF") << "amplifier.zvsch"
                                          << "a.pdf" << QByteArray("%PDF-");
        QTest::newRow("schematic as SVG") << "amplifier.zvsch"
                                          << "a.svg" << QByteArray("<?xml");
        QTest::newRow("schematic as PNG") << "amplifier.zvsch"
                                          << "a.png" << QByteArray("\x89PNG\r\n");
        QTest::newRow("script as PDF") << "currents.zvscr"
                                       << "a.pdf" << QByteArray("%PDF-");
        QTest::newRow("capitals") << "amplifier.zvsch"
                                  << "A.SVG" << QByteArray("<?xml");
        QTest::newRow("no extension") << "amplifier.zvsch"
                                      << "noextension" << QByteArray("%PDF-");
        QTest::newRow("unusual name")
            << "amplifier.zvsch" << QString::fromUtf8("ü %1 ☃ & [x].svg") << QByteArray("<?xml");
    }

    void eachDocumentIsExportedInItsFormats()
    {
        QFETCH(QString, source);
        QFETCH(QString, target);
        QFETCH(QByteArray, begin);
        const QString file = example(qPrintable(source));
        const QByteArray before = contentOf(file);
        const Window window;
        Document* const document = window->openFile(file);
        QVERIFY(document && zvtest::activate(*window));
        QCOMPARE(exportTo(window, m_folder->filePath(target)), 1);
        const QString made =
            m_folder->filePath(target.contains('.') ? target : target + QLatin1String(".pdf"));
        QVERIFY2(contentOf(made).startsWith(begin), contentOf(made).left(40).constData());
        QVERIFY(
            window->statusBar()->currentMessage().startsWith(QString::fromUtf8("Exported to “")));
        QVERIFY(!document->isModified());
        QCOMPARE(QDir::fromNativeSeparators(qtFileName(document->filename())),
                 QFileInfo(file).canonicalFilePath());
        QCOMPARE(contentOf(file), before);
    }

    void changesStayUnsaved()
    {
        const QString file = example("amplifier.testplan");
        const QByteArray before = contentOf(file);
        const Window window;
        Document* const document = window->openFile(file);
        QVERIFY(zvtest::activate(*window));
        QTest::keyClick(&planOf(window), Qt::Key_Delete);
        QVERIFY(document->isModified());
        const QString target = m_folder->filePath("a.csv");
        QCOMPARE(exportTo(window, target), 1);
        QVERIFY(QFile::exists(target));
        QVERIFY(document->isModified());
        QCOMPARE(contentOf(file), before);
    }

    void theDialogProposesNameAndFolderOfTheDocument()
    {
        const QString file = example("amplifier.zvsch");
        const Window window;
        window->openFile(file);
        QString proposal;
        QString folder;
        QStringList filters;
        const WindowResponder<QFileDialog> answer([&](QFileDialog& dialog) {
            proposal = dialog.findChild<QLineEdit*>("fileNameEdit")->text();
            folder = dialog.directory().absolutePath();
            filters = dialog.nameFilters();
            dialog.selectNameFilter(filters.at(1));
            Q_EMIT dialog.filterSelected(filters.at(1));
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText("other");
            QMetaObject::invokeMethod(&dialog, "accept");
        });
        actionOf(*window, "export")->trigger();
        QCOMPARE(proposal, QString("amplifier.pdf"));
        QCOMPARE(QFileInfo(folder).canonicalFilePath(),
                 QFileInfo(m_folder->path()).canonicalFilePath());
        QCOMPARE(filters,
                 (QStringList{"PDF documents (*.pdf)", "SVG pictures (*.svg)",
                              "PNG pictures, 300 dpi (*.png)", "Compressed documents (*.z)"}));
        QVERIFY(QFile::exists(m_folder->filePath("other.svg")));
    }

    void aCompressedDocumentTellsItsType()
    {
        const QString file = example("amplifier.zvsch");
        const Window window;
        window->openFile(file);
        QVERIFY(zvtest::activate(*window));
        QCOMPARE(exportTo(window, m_folder->filePath("packed.z")), 1);
        QTRY_COMPARE_WITH_TIMEOUT(qUncompress(contentOf(m_folder->filePath("packed.zvsch.z"))),
                                  contentOf(file), longWait);
        QTRY_VERIFY(window->findChildren<QObject*>().count() > 0);
    }

    void documentsOfModulesAreOnlyCompressed()
    {
        QVERIFY(addDocumentType(PlainDocument::plainType()));
        const Window window;
        Document* const document = window->newDocument(PlainDocument::plainType());
        QVERIFY(document);
        QVERIFY(!actionOf(*window, "print")->isEnabled());
        QVERIFY(!actionOf(*window, "printPreview")->isEnabled());
        QVERIFY(actionOf(*window, "export")->isEnabled());
        QStringList filters;
        const WindowResponder<QFileDialog> answer([&](QFileDialog& dialog) {
            filters = dialog.nameFilters();
            dialog.reject();
        });
        actionOf(*window, "export")->trigger();
        QCOMPARE(filters, QStringList("Compressed documents (*.z)"));
    }

    void withoutADocumentNothingIsPrinted()
    {
        const Window window;
        for (const char* const name : {"print", "printPreview", "export"})
            QVERIFY2(!actionOf(*window, name)->isEnabled(), name);
        window->newDocument(*documentTypeOf("testplan"));
        for (const char* const name : {"print", "printPreview", "export"})
            QVERIFY2(actionOf(*window, name)->isEnabled(), name);
    }

    void emptyDocumentsAreTold_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("text");
        for (const char* const type : {"schematic", "script"}) {
            for (const char* const action : {"export", "print", "printPreview"}) {
                const QString done = QLatin1String(action) == "export" ? "exported" : "printed";
                QTest::addRow("%s, %s", type, action)
                    << type << action
                    << QString::fromUtf8("“%1 1” was not %2.")
                           .arg(type == QLatin1String("script") ? "Script" : "Schematic", done);
            }
        }
    }

    void emptyDocumentsAreTold()
    {
        QFETCH(QString, type);
        QFETCH(QString, action);
        QFETCH(QString, text);
        const Window window;
        window->newDocument(*documentTypeOf(type));
        actionOf(*window, action.toLatin1())->trigger();
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QCOMPARE(box->text(), text);
        QVERIFY(box->informativeText().startsWith("It is empty."));
        zvtest::dismiss(*box);
    }

    void cancelledExportsLeaveNothing()
    {
        const Window window;
        window->openFile(example("amplifier.zvsch"));
        const QStringList before = QDir(m_folder->path()).entryList(QDir::Files);
        const WindowResponder<QFileDialog> answer([](QFileDialog& dialog) { dialog.reject(); });
        actionOf(*window, "export")->trigger();
        QCOMPARE(answer.count, 1);
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files), before);
        QVERIFY(window->statusBar()->currentMessage().isEmpty());
    }

    void aFullDiskLeavesTheFileAsItWas_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("target");
        for (const char* const target : {"a.pdf", "a.svg", "a.png"})
            QTest::newRow(target) << "amplifier.zvsch" << target;
        QTest::newRow("a.csv") << "amplifier.testplan"
                               << "a.csv";
    }

    void aFullDiskLeavesTheFileAsItWas()
    {
        QFETCH(QString, source);
        QFETCH(QString, target);
        const QString file = m_folder->filePath(target);
        QVERIFY(zvtest::writeTo(file, "what was there"));
        const Window window;
        window->openFile(example(qPrintable(source)));
        QVERIFY(zvtest::activate(*window));
        {
            const WindowResponder<QMessageBox> replace(
                [](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); });
            const zvtest::RefusedWrite full(500);
            QCOMPARE(exportTo(window, file), 1);
        }
        QCOMPARE(contentOf(file), QByteArray("what was there"));
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QVERIFY(box->text().endsWith("was not exported."));
        QVERIFY(!window->statusBar()->currentMessage().startsWith("Exported"));
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden).size(), 2);
        zvtest::dismiss(*box);
    }

    void aFolderInTheWayIsTold()
    {
        QVERIFY(QDir(m_folder->path()).mkdir("folder.svg"));
        const Window window;
        Document* const document = window->openFile(example("amplifier.zvsch"));
        // No file dialog would take a folder for a file, but one may be made meanwhile.
        DocumentTransfer transfer(*window);
        QSignalSpy failed(&transfer, &DocumentTransfer::failed);
        const WindowResponder<QFileDialog> answer([&](QFileDialog& dialog) {
            QVERIFY(QDir(m_folder->path()).rmdir("folder.svg"));
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(m_folder->filePath("folder.svg"));
            connect(&dialog, &QDialog::accepted, &dialog,
                    [this] { QDir(m_folder->path()).mkdir("folder.svg"); });
            QMetaObject::invokeMethod(&dialog, "accept");
        });
        transfer.exportDocument(*document);
        QCOMPARE(failed.size(), 1);
        QVERIFY(QFileInfo(m_folder->filePath("folder.svg")).isDir());
    }

    void aDocumentThatIsClosedMeanwhileIsNotExported()
    {
        const Window window;
        window->openFile(example("amplifier.zvsch"));
        const WindowResponder<QFileDialog> answer([&](QFileDialog& dialog) {
            delete window->currentDocument();
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(m_folder->filePath("a.svg"));
            QMetaObject::invokeMethod(&dialog, "accept");
        });
        actionOf(*window, "export")->trigger();
        QCOMPARE(answer.count, 1);
        QVERIFY(!QFile::exists(m_folder->filePath("a.svg")));
    }

    void whatIsBeingTypedIsExported()
    {
        const Window window;
        window->newDocument(*documentTypeOf("testplan"));
        QVERIFY(zvtest::activate(*window));
        TestPlanView& view = planOf(window);
        view.setCurrentIndex(view.model()->index(0, 0));
        QTest::keyClicks(&view, "9");
        QVERIFY(view.typed());
        const QString target = m_folder->filePath("a.csv");
        QCOMPARE(exportTo(window, target), 1);
        QVERIFY2(contentOf(target).contains("\n9,"), contentOf(target).constData());
        QVERIFY(!view.typed());
    }

    void withoutAPrinterAPdfFileIsOffered()
    {
        if (hasPrinter())
            QSKIP("there is a printer");
        const Window window;
        Document* const document = window->openFile(example("amplifier.testplan"));
        QVERIFY(zvtest::activate(*window));
        TestPlanView& view = planOf(window);
        view.setCurrentIndex(view.model()->index(2, 1));
        QTest::keyClicks(&view, "7");
        QVERIFY(view.typed());
        const QString target = m_folder->filePath("printed.pdf");
        QString text;
        const WindowResponder<QMessageBox> save([&text](QMessageBox& box) {
            text = box.text() + ' ' + box.informativeText();
            box.grab().save(PICTURES "/output-no-printer.png");
            box.defaultButton()->click();
        });
        QStringList filters;
        const WindowResponder<QFileDialog> answer([&](QFileDialog& dialog) {
            filters = dialog.nameFilters();
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(target);
            QMetaObject::invokeMethod(&dialog, "accept");
        });
        QTest::keyClick(&view, Qt::Key_P, Qt::ControlModifier);
        QCOMPARE(
            text,
            QString::fromUtf8("There is no printer. “amplifier.testplan” can be saved as a PDF "
                              "file, which can be printed elsewhere."));
        QCOMPARE(filters, QStringList("PDF documents (*.pdf)"));
        QVERIFY(contentOf(target).startsWith("%PDF-"));
        QVERIFY(document->isModified()); // by what was typed alone
        if (zvtest::pdfReader().isEmpty())
            QSKIP("there is no pdftotext");
        const QStringList pages = zvtest::textOfPdf(target);
        QCOMPARE(pages.size(), 1);
        const QString words = wordsOf(pages.first());
        QVERIFY2(words.startsWith("amplifier.testplan "), qPrintable(words));
        QVERIFY2(words.contains(" 7 "), qPrintable(words));
    }

    void withoutAPrinterAllCanBeCancelled()
    {
        if (hasPrinter())
            QSKIP("there is a printer");
        const Window window;
        window->openFile(example("amplifier.testplan"));
        for (const bool isOffered : {false, true}) {
            const WindowResponder<QMessageBox> offer([isOffered](QMessageBox& box) {
                isOffered ? box.defaultButton()->click() : box.button(QMessageBox::Cancel)->click();
            });
            const WindowResponder<QFileDialog> answer([](QFileDialog& dialog) { dialog.reject(); });
            actionOf(*window, "print")->trigger();
            QCOMPARE(offer.count, 1);
            QCOMPARE(answer.count, isOffered ? 1 : 0);
        }
        QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files).size(), 1);
    }

    void previewShowsThePages_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("style");
        QTest::newRow("plan") << "amplifier.testplan"
                              << "Light";
        QTest::newRow("schematic") << "amplifier.zvsch"
                                   << "Dark";
        QTest::newRow("script") << "currents.zvscr"
                                << "Light";
    }

    void previewShowsThePages()
    {
        QFETCH(QString, source);
        QFETCH(QString, style);
        showStyle(style);
        const Window window;
        Document* const document = window->openFile(example(qPrintable(source)));
        int pages = 0;
        QString title;
        const WindowResponder<QPrintPreviewDialog> look([&](QPrintPreviewDialog& dialog) {
            pages = dialog.findChild<QPrintPreviewWidget*>()->pageCount();
            title = dialog.windowTitle();
            dialog.resize(760, 700);
            QCoreApplication::processEvents();
            dialog.grab().save(QString(PICTURES "/output-preview-%1.png").arg(source));
            dialog.reject();
        });
        actionOf(*window, "printPreview")->trigger();
        QCOMPARE(look.count, 1);
        QCOMPARE(pages, 1);
        QVERIFY(title.contains(source));
        QCOMPARE(title.contains("there is no printer"), !hasPrinter());
        QVERIFY(!document->isModified());
    }

#if !defined(Q_OS_WIN)
    void previewPrintsToAFileThatIsWhole_data()
    {
        QTest::addColumn<bool>("isFull");
        QTest::newRow("all well") << false;
        QTest::newRow("full disk") << true;
    }

    void previewPrintsToAFileThatIsWhole()
    {
        QFETCH(bool, isFull);
        if (hasPrinter())
            QSKIP("there is a printer");
        const Window window;
        window->openFile(example("amplifier.zvsch"));
        const QString target = m_folder->filePath("preview.pdf");
        QVERIFY(zvtest::writeTo(target, "what was there"));
        std::optional<zvtest::RefusedWrite> full;
        std::optional<WindowResponder<QPrintDialog>> print;
        std::optional<WindowResponder<QMessageBox>> replace;
        const WindowResponder<QPrintPreviewDialog> preview([&](QPrintPreviewDialog& dialog) {
            print.emplace([&](QPrintDialog& box) {
                box.findChild<QLineEdit*>("filename")->setText(target);
                replace.emplace(
                    [](QMessageBox& question) { question.button(QMessageBox::Yes)->click(); });
                if (isFull)
                    full.emplace(500);
                for (QPushButton* const button : box.findChildren<QPushButton*>()) {
                    if (button->text().remove('&') == "Print")
                        button->click();
                }
            });
            for (QAction* const action : dialog.findChildren<QAction*>()) {
                if (action->text() == "Print")
                    action->trigger();
            }
            full.reset();
            if (isFull)
                dialog.reject();
        });
        actionOf(*window, "printPreview")->trigger();
        QVERIFY(print && print->count == 1);
        if (isFull) {
            QCOMPARE(contentOf(target), QByteArray("what was there"));
            QMessageBox* const box = failureOf(*window);
            QVERIFY(box);
            QCOMPARE(box->text(), QString::fromUtf8("“amplifier.zvsch” was not printed."));
            zvtest::dismiss(*box);
        } else {
            QVERIFY(contentOf(target).startsWith("%PDF-"));
            QVERIFY(contentOf(target).trimmed().endsWith("%%EOF"));
            QVERIFY(window->statusBar()->currentMessage().startsWith(
                QString::fromUtf8("Printed to “")));
        }
    }
#endif

    void printersGetThePagesThatWereChosen()
    {
        const Window window;
        Document* const document =
            window->openFile(script("a.txt", QByteArray("a line\n").repeated(300)));
        QVERIFY(document);
        DocumentTransfer transfer(*window);
        DocumentPrinter printing(*window, transfer);
        QPrinter printer(QPrinter::HighResolution);
        const QString target = m_folder->filePath("range.pdf");
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(target);
        printer.setPageSize(QPageSize(QPageSize::A5));
        printer.setPrintRange(QPrinter::PageRange);
        printer.setFromTo(2, 3);
        printer.setPageOrder(QPrinter::LastPageFirst);
        QVERIFY(printing.printOn(printer, *document));
        QCOMPARE(zvtest::pagesOfPdf(contentOf(target)), 2);
        if (zvtest::pdfReader().isEmpty())
            QSKIP("there is no pdftotext");
        const QStringList pages = zvtest::textOfPdf(target);
        QVERIFY(wordsOf(pages.first()).contains("Page 3 of "));
        QVERIFY(wordsOf(pages.last()).contains("Page 2 of "));
    }

    void tooManyPagesCloseThePreview()
    {
        const Window window;
        auto* const document =
            qobject_cast<TestPlanDocument*>(window->newDocument(*documentTypeOf("testplan")));
        TestPlan plan = TestPlan::fresh();
        plan.rows.resize(std::size_t(maxPlanRows));
        document->model().setPlan(plan);
        actionOf(*window, "printPreview")->trigger();
        QMessageBox* const box = failureOf(*window);
        QVERIFY(box);
        QVERIFY(box->informativeText().startsWith("It would need more than 10,000 pages."));
        zvtest::dismiss(*box);
    }

    void emptyDocumentsSayWhatToDo_data()
    {
        QTest::addColumn<QString>("style");
        QTest::newRow("Light") << "Light";
        QTest::newRow("Dark") << "Dark";
    }

    void emptyDocumentsSayWhatToDo()
    {
        QFETCH(QString, style);
        showStyle(style);
        const Window window;
        for (const char* const type : {"testplan", "schematic"}) {
            Document* const document = window->newDocument(*documentTypeOf(type));
            auto* const hint = document->findChild<EmptyHint*>();
            QVERIFY(hint);
            QTRY_VERIFY(hint->isVisible());
            QVERIFY(!hint->text().isEmpty());
            const QColor ground = styleColour(libzvutil::ZvStyleBrush::EditorEnabled);
            QVERIFY(contrast(hint->palette().color(hint->foregroundRole()), ground)
                    >= leastContrast);
            QTRY_COMPARE(hint->geometry(), hint->parentWidget()->rect());
            QCoreApplication::processEvents();
            window->grab().save(
                QString(PICTURES "/output-hint-%1-%2.png").arg(QLatin1String(type), style));
        }
    }

    void hintsGoWithTheFirstContent()
    {
        const Window window;
        auto* const plan =
            qobject_cast<TestPlanDocument*>(window->newDocument(*documentTypeOf("testplan")));
        const auto* hint = plan->findChild<EmptyHint*>();
        QVERIFY(!hint->isHidden());
        plan->model().setData(plan->model().index(3, 1), "x", Qt::EditRole);
        QVERIFY(hint->isHidden());
        plan->model().undoStack().undo();
        QVERIFY(!hint->isHidden());
        plan->model().setPlan(TestPlan());
        QVERIFY(!hint->isHidden());
        auto* const schematic =
            qobject_cast<SchematicDocument*>(window->newDocument(*documentTypeOf("schematic")));
        hint = schematic->findChild<EmptyHint*>();
        QVERIFY(!hint->isHidden());
        QCOMPARE(schematic->view().accessibleDescription(), hint->text());
        Schematic one;
        one.symbols.append(Symbol());
        schematic->scene().setSchematic(one);
        QVERIFY(hint->isHidden());
        QCOMPARE(schematic->view().accessibleDescription(), QString());
        schematic->scene().setSchematic({});
        QVERIFY(!hint->isHidden());
    }

private:
    static void showStyle(const QString& style)
    {
        zvtest::showPaintedStyle(qPrintable(style));
    }
};

QTEST_MAIN(tst_workbench_window_output)
#include "tst_workbench_window_output.moc"
