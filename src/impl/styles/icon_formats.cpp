#include "impl/styles/icon_formats.h"

#include <QImageReader>
#include <QtGlobal>

namespace libzvutil::impl {

namespace {

bool reportOnce()
{
    const bool isMissing = !QImageReader::supportedImageFormats().contains("svg");
    if (isMissing)
        qWarning("Icons can't be shown: Qt has no image format plugin for SVG");
    return isMissing;
}

} // namespace

void report_missing_icon_formats()
{
    static const bool isMissing = reportOnce();
    (void)isMissing;
}

} // namespace libzvutil::impl
