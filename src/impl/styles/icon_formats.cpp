#include "impl/styles/icon_formats.h"

#include <QImageReader>
#include <QtGlobal>

namespace libzvutil::impl {

namespace {

bool report_once()
{
    const bool is_missing = !QImageReader::supportedImageFormats().contains("svg");
    if (is_missing)
        qWarning("Icons can't be shown: Qt has no image format plugin for SVG");
    return is_missing;
}

} // namespace

void report_missing_icon_formats()
{
    static const bool is_missing = report_once();
    (void)is_missing;
}

} // namespace libzvutil::impl
