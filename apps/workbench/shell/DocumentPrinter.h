#pragma once

#include <zvworkbench/Failure.h>

#include <QObject>
#include <QPointer>

class QPrinter;
class QWidget;

namespace workbench {

class Document;
class DocumentTransfer;
class OutputContent;

/// Prints the current document, and shows its pages before.
class DocumentPrinter : public QObject
{
    Q_OBJECT

public:
    /// Creates the object as a child of \p window, in front of which it shows dialogs. Without any printer \p transfer
    /// writes PDF files.
    DocumentPrinter(QWidget& window, DocumentTransfer& transfer);

    void setDocument(Document* document);

    /// Asks how to print the document, and does it.
    void print();
    void preview();

    /// Prints \p document as the user has asked for in a dialog, or writes it to the file that was chosen there. Returns
    /// whether that was done; otherwise emits `failed`, unless the user has stopped it.
    bool printOn(QPrinter& printer, const Document& document);

Q_SIGNALS:
    /// Emitted with what to tell on the status bar.
    void printed(const QString& message);
    void failed(const workbench::Failure& failure);

private:
    OutputContent* content() const;
    bool canPrint();
    void offerPdf();
    void write(QPrinter& printer, const Document& document, const OutputContent& content);

    QWidget& m_window;
    DocumentTransfer& m_transfer;
    QPointer<Document> m_document;
};

} // namespace workbench
