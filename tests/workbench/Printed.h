#pragma once

#include "support/Workbench.h"

#include <QByteArray>
#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

namespace zvtest {

/// The program that reads the text of PDF files; empty where there is none, as under Wine.
inline QString pdfReader()
{
    return QStandardPaths::findExecutable("pdftotext");
}

/// The text of each page of a PDF file, laid out as on paper.
inline QStringList textOfPdf(const QString& file)
{
    QProcess reader;
    reader.start(pdfReader(), {"-layout", "-enc", "UTF-8", file, "-"});
    if (!reader.waitForFinished(longWait) || reader.exitCode() != 0)
        return {};
    QStringList pages = QString::fromUtf8(reader.readAllStandardOutput()).split(QLatin1Char('\f'));
    pages.removeLast();
    return pages;
}

/// The words of a page, one blank between them.
inline QString wordsOf(const QString& page)
{
    // A font may have one glyph for two letters, as for "fi".
    return page.normalized(QString::NormalizationForm_KC).simplified();
}

/// The number of pages that a PDF file says it has.
inline int pagesOfPdf(const QByteArray& pdf)
{
    const int place = pdf.indexOf("/Count ");
    return place < 0 ? 0 : pdf.mid(place + 7, 12).split('\n').first().split(' ').first().toInt();
}

} // namespace zvtest
