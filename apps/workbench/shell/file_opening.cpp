#include "shell/file_opening.h"

#include "common/path_names.h"
#include "common/tell.h"
#include "script/TextDocument.h"
#include "search/TextSearch.h"
#include "testplan/TestPlanDocument.h"

#include <zvworkbench/Document.h>

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>

namespace workbench {

namespace {

constexpr qint64 bytesLookedAt = 8'192;

struct FileOpening
{
    Q_DECLARE_TR_FUNCTIONS(workbench::FileOpening)
};

bool isCsv(const QString& file)
{
    return file.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive);
}

} // namespace

const DocumentType* typeToOpen(const QString& file)
{
    if (const DocumentType* const type = documentTypeOfFile(file))
        return type;
    if (isCsv(file))
        return &testPlanType();
    if (!QFileInfo(file).isFile())
        return nullptr;
    QFile content(file);
    // The document tells why a file can't be read.
    const bool isText =
        !content.open(QIODevice::ReadOnly) || looksLikeText(content.read(bytesLookedAt));
    return isText ? &textType() : nullptr;
}

QString shownFile(const Document& document)
{
    if (!document.filename().isEmpty())
        return qtFileName(document.filename());
    const auto* const plan = qobject_cast<const TestPlanDocument*>(&document);
    return plan ? qtFileName(plan->importedFile()) : QString();
}

QString requiredExtension(const Document& document)
{
    const QString extension = document.type().extension;
    const bool hasOther = !shownFile(document).isEmpty()
        && documentTypeOfFile(shownFile(document)) != &document.type();
    return hasOther ? QString() : extension;
}

bool loadInto(Document& document, const QString& file)
{
    auto* const plan = qobject_cast<TestPlanDocument*>(&document);
    if (!plan || !isCsv(file))
        return document.load(filePath(file));
    if (QFileInfo(file).isFile() || !QFileInfo::exists(file))
        return plan->importCsv(filePath(file));
    Q_EMIT document.failed(reasonNotToOpen(file));
    return false;
}

Failure reasonNotToOpen(const QString& file)
{
    const QFileInfo info(file);
    QString reason = FileOpening::tr("It is neither a document of the workbench nor a text.");
    if (!info.exists())
        reason = FileOpening::tr("The file does not exist.");
    else if (info.isDir())
        reason = FileOpening::tr("It is a folder.");
    else if (!info.isFile())
        reason = FileOpening::tr("It is not a file, but a device or a pipe.");
    return {FileOpening::tr("“%1” can't be opened.").arg(QDir::toNativeSeparators(file)), reason,
            FileOpening::tr("Check the file, or open another one.")};
}

void offerToSystem(QWidget& window, const QString& file)
{
    if (!QFileInfo(file).isFile()) {
        tell(&window, reasonNotToOpen(file));
        return;
    }
    auto* const box =
        new QMessageBox(QMessageBox::Question, QStringLiteral("Workbench"),
                        FileOpening::tr("“%1” is neither a document of the workbench nor a text.")
                            .arg(QDir::toNativeSeparators(file)),
                        QMessageBox::Cancel, &window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(FileOpening::tr("Open it with the system's program for such files?"));
    QPushButton* const open = box->addButton(FileOpening::tr("&Open"), QMessageBox::AcceptRole);
    box->setDefaultButton(QMessageBox::Cancel);
    QObject::connect(open, &QPushButton::clicked, &window, [&window, file] {
        if (!QDesktopServices::openUrl(QUrl::fromLocalFile(file)))
            tell(&window,
                 {FileOpening::tr("“%1” can't be opened.").arg(QDir::toNativeSeparators(file)),
                  FileOpening::tr("The system has no program for it."), QString()});
    });
    box->open();
}

} // namespace workbench
