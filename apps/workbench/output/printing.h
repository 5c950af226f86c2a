#pragma once

#include "documents/ProgressBox.h"

#include <QByteArray>
#include <QPageLayout>
#include <QString>

#include <limits>

class QPagedPaintDevice;

namespace workbench {

class OutputContent;

/// The pages that the user wants, counted from 1, and in which order.
struct PageRange
{
    int first = 1;
    int last = std::numeric_limits<int>::max();
    bool isReversed = false;
};

/// Returns pages of the size that is usual where the user lives.
QPageLayout usualPages(QPageLayout::Orientation orientation);

/// Paints pages on a device. Throws `FileError` if that fails, and `Stopped` if \p progress returns false.
void paintPages(QPagedPaintDevice& device, const OutputContent& content, const PageRange& range,
                const Progress& progress);

/// Returns a PDF file with the pages. Throws as `paintPages`.
QByteArray pdfOf(const OutputContent& content, const QString& title, const QPageLayout& layout,
                 const PageRange& range, const Progress& progress);

} // namespace workbench
