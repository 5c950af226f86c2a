#include "impl/tables/mime_type_text.h"

namespace zvutil::impl {

QString mime_type_text(mime_type type)
{
    switch (type) {
    case mime_type::csv:
        return QStringLiteral("text/csv");
    case mime_type::xml_spreadsheet:
        return QStringLiteral("application/x-qt-windows-mime;value=\"XML Spreadsheet\"");
    case mime_type::text:
        return QStringLiteral("text/plain");
    case mime_type::windows_csv:
        return QStringLiteral("application/x-qt-windows-mime;value=\"Csv\"");
    }
    return QStringLiteral("unknown");
}

} // namespace zvutil::impl
