#pragma once

#include <zvutil/ZvClipboardData.h>
#include <zvutil/ZvInternalMimeType.h>
#include <zvutil/ZvString.h>
#include <zvutil/ZvTable.h>
#include <zvutil/mime_type.h>
#include <zvutil/zvutil_export.h>

/// Puts tables on the system's clipboard and asks what is there.
///
/// It has no state: each call goes to `QGuiApplication::clipboard()`, so there must be an application
/// object. GUI thread only.
///
/// @code{.cpp}
/// #include <QString>
/// #include <QStringList>
/// #include <QVariant>
///
/// void copyColumn(const QStringList& names)
/// {
///     ZvTable table(static_cast<unsigned>(names.size()), 1, libzvutil::ZvVariant());
///     for (int row = 0; row < names.size(); ++row)
///         table.value(static_cast<unsigned>(row), 0) = QVariant(names[row]);
///     ZvClipboard().setData(std::move(table));
/// }
///
/// QStringList pasteFirstColumn()
/// {
///     QStringList names;
///     const ZvClipboard clipboard;
///     if (!clipboard.hasType(ZvInternalMimeType::table))
///         return names; // not copied by this application
///     const ZvTable table = clipboard.tableData();
///     for (unsigned long long row = 0; row < table.rows() && table.columns() > 0; ++row)
///         names += table.value(row, 0).data().toString();
///     return names;
/// }
/// @endcode
class ZVUTIL_EXPORT ZvClipboard
{
public:
    ZvClipboard();
    /// Both do nothing.
    ZvClipboard& operator=(const ZvClipboard& other);
    ZvClipboard& operator=(ZvClipboard&& other) noexcept;

    /// A view on the present content, which tells by its signal `invalidated` when that goes.
    ZvClipboardData clipboardData() const;

    /// Each asks the `ZvClipboardData` of the present content.
    bool hasTableData() const;
    bool hasText() const;
    bool hasType(ZvInternalMimeType type) const;
    bool hasType(zvutil::mime_type type) const;
    ZvTable tableData() const;

    /// What `QMimeData::data` gives for "text/plain", up to its first NUL; empty if that is null.
    /// These are the bytes of the format as they are; where it isn't among the formats but a list
    /// of URIs is, Qt makes text of that: one URI as it is, several with a line feed behind each.
    /// So there may be text where `hasText` is false.
    libzvutil::ZvString stringData() const;

    /// Puts a table on the clipboard, which must have storage: as CSV ("text/csv", and "Csv" of
    /// Windows), as text with tabs, and for this application as the table itself. The texts are made
    /// at once; what they throw leaves the clipboard as it was.
    void setData(const ZvTable& table);
    void setData(ZvTable&& table);
};
