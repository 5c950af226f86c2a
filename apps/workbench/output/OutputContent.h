#pragma once

#include "documents/ProgressBox.h"
#include "output/Pages.h"

#include <zvworkbench/Failure.h>

#include <QByteArray>
#include <QPageLayout>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace workbench {

class Document;

/// A format of files for other programs.
struct ExportFormat
{
    QString what; ///< what such files are called
    QString extension; ///< with its dot
    /// Returns the content of a file. Throws `FileError` if there can't be one, and `Stopped` if the progress returns
    /// false.
    std::function<QByteArray(const Progress&)> bytes;
};

/// What documents offer that can be printed, or exported for other programs. GUI thread.
class OutputContent
{
public:
    /// Returns whether there is nothing to see.
    virtual bool isBlank() const = 0;

    /// Returns how the content fits the paper best.
    virtual QPageLayout::Orientation orientation() const = 0;

    /// Lays out the content as it is now; later changes don't reach the pages. Throws `FileError` if there would be too
    /// many pages, and `Stopped` if \p progress returns false.
    virtual std::unique_ptr<Pages> pages(const Paper& paper, const Progress& progress) const = 0;

    /// Returns the formats besides PDF; none in the base class. Their functions must not outlive the document.
    virtual std::vector<ExportFormat> exportFormats() const { return {}; }

protected:
    ~OutputContent() = default;
};

/// Returns what the user is told of \p document if there is nothing to see in it; \p what says in one sentence with its
/// title what wasn't done.
Failure nothingToSee(const Document& document, const QString& what);

/// Returns the title of the pages of \p document.
PageTitle pageTitleOf(const Document& document);

} // namespace workbench
