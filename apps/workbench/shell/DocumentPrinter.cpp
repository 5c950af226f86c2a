#include "shell/DocumentPrinter.h"

#include "common/path_names.h"
#include "documents/EditedContent.h"
#include "documents/ProgressBox.h"
#include "documents/save_bytes.h"
#include "output/OutputContent.h"
#include "output/printing.h"
#include "shell/DocumentTransfer.h"

#include <zvworkbench/Document.h>
#include <zvworkbench/FileError.h>

#include <QMessageBox>
#include <QPaintEngine>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>

#include <new>

namespace workbench {

namespace {

bool hasPrinters()
{
    return !QPrinterInfo::availablePrinterNames().isEmpty();
}

/// Prepares a printer for \p content. One that exists keeps the paper that it is set up for.
void prepare(QPrinter& printer, const OutputContent& content, const QString& title)
{
    if (!hasPrinters())
        printer.setOutputFormat(QPrinter::PdfFormat);
    const QPageLayout usual = usualPages(content.orientation());
    if (printer.outputFormat() == QPrinter::PdfFormat)
        printer.setPageLayout(usual);
    printer.setPageOrientation(usual.orientation());
    printer.setPageMargins(usual.margins(), usual.units());
    printer.setDocName(title);
    printer.setCreator(QStringLiteral("Workbench"));
}

PageRange rangeOf(const QPrinter& printer)
{
    PageRange range;
    range.isReversed = printer.pageOrder() == QPrinter::LastPageFirst;
    if (printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0) {
        range.first = printer.fromPage();
        range.last = printer.toPage();
    }
    return range;
}

/// Returns whether a preview draws its pages; otherwise they are printed.
bool isPreviewing(const QPrinter& printer)
{
    return printer.paintEngine()->type() == QPaintEngine::Picture;
}

} // namespace

DocumentPrinter::DocumentPrinter(QWidget& window, DocumentTransfer& transfer)
    : QObject(&window)
    , m_window(window)
    , m_transfer(transfer)
{
}

void DocumentPrinter::setDocument(Document* document)
{
    m_document = document;
}

OutputContent* DocumentPrinter::content() const
{
    return dynamic_cast<OutputContent*>(m_document.data());
}

/// Returns whether there is something to print; tells the user if not.
bool DocumentPrinter::canPrint()
{
    if (!content())
        return false;
    finishTyping(*m_document);
    if (!content()->isBlank())
        return true;
    Q_EMIT failed(nothingToSee(*m_document, tr("“%1” was not printed.")));
    return false;
}

void DocumentPrinter::print()
{
    if (!canPrint())
        return;
    if (!hasPrinters()) {
        offerPdf();
        return;
    }
    const QPointer<Document> document = m_document;
    QPrinter printer(QPrinter::HighResolution);
    prepare(printer, *content(), document->shortTitle());
    QPrintDialog dialog(&printer, &m_window);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    if (dialog.exec() == QDialog::Accepted && document)
        printOn(printer, *document);
}

void DocumentPrinter::offerPdf()
{
    const QPointer<Document> document = m_document;
    QMessageBox box(QMessageBox::Information, tr("Print"), tr("There is no printer."),
                    QMessageBox::Cancel, &m_window);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(tr("“%1” can be saved as a PDF file, which can be printed elsewhere.")
                               .arg(document->shortTitle()));
    QPushButton* const save = box.addButton(tr("&Save as PDF…"), QMessageBox::AcceptRole);
    box.setDefaultButton(save);
    box.exec();
    if (box.clickedButton() == save && document)
        m_transfer.exportPdf(*document);
}

void DocumentPrinter::preview()
{
    if (!canPrint())
        return;
    const QPointer<Document> document = m_document;
    QPrinter printer(QPrinter::HighResolution);
    prepare(printer, *content(), document->shortTitle());
    QPrintPreviewDialog dialog(&printer, &m_window);
    dialog.setWindowTitle(
        hasPrinters() ? tr("Print Preview – %1").arg(document->shortTitle())
                      : tr("Print Preview – %1 (there is no printer; Print saves a PDF file)")
                            .arg(document->shortTitle()));
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this,
            [this, &dialog, &document](QPrinter* pages) {
                // A preview without pages is of no use; it has to be closed once it is shown.
                if (!document || !printOn(*pages, *document))
                    QMetaObject::invokeMethod(&dialog, "reject", Qt::QueuedConnection);
            });
    dialog.exec();
}

bool DocumentPrinter::printOn(QPrinter& printer, const Document& document)
{
    const QString title = document.shortTitle();
    QString reason;
    try {
        write(printer, document, dynamic_cast<const OutputContent&>(document));
        return true;
    } catch (const FileError& error) {
        reason = error.reason();
    } catch (const Stopped&) {
        return false;
    } catch (const std::bad_alloc&) {
        reason = tr("There is not enough memory.");
    }
    Q_EMIT failed({tr("“%1” was not printed.").arg(title), reason,
                   tr("Choose another printer or file, or fewer pages.")});
    return false;
}

void DocumentPrinter::write(QPrinter& printer, const Document& document,
                            const OutputContent& content)
{
    const QString title = document.shortTitle();
    const bool isPreview = isPreviewing(printer);
    ProgressBox box((isPreview ? tr("Laying out “%1”…") : tr("Printing “%1”…")).arg(title),
                    &m_window);
    const QString file = printer.outputFileName();
    if (isPreview) {
        paintPages(printer, content, {}, box.progress());
    } else if (file.isEmpty()) {
        paintPages(printer, content, rangeOf(printer), box.progress());
        Q_EMIT printed(tr("Printed “%1”").arg(title));
    } else {
        // QPrinter itself would leave the part of the file that a full disk takes, and say nothing.
        saveBytes(filePath(file),
                  pdfOf(content, title, printer.pageLayout(), rangeOf(printer), box.progress()));
        Q_EMIT printed(tr("Printed to “%1”").arg(filePath(file).toQString()));
    }
}

} // namespace workbench
