#pragma once

#include <zvutil/ZvClipboardData.h>
#include <zvutil/ZvInternalMimeType.h>
#include <zvutil/ZvString.h>
#include <zvutil/ZvTable.h>
#include <zvutil/mime_type.h>
#include <zvutil/zvutil_export.h>

/// Puts tables on the system's clipboard and reads its content.
///
/// The object has no state: each call goes to `QGuiApplication::clipboard()`, so there must be an
/// application object. It can't be copied or moved, and need not be: make one wherever one is wanted.
/// GUI thread only.
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
/// @since 0.1 @ingroup tables
class ZVUTIL_EXPORT ZvClipboard
{
public:
    /// Allocates nothing and doesn't look at the clipboard.
    ZvClipboard();
    /// Make another one instead.
    ZvClipboard(const ZvClipboard&) = delete;
    /// Make another one instead.
    ZvClipboard(ZvClipboard&&) = delete;
    /// Does nothing: there is no state.
    /// @param other isn't looked at
    ZvClipboard& operator=(const ZvClipboard& other);
    /// Does nothing: there is no state.
    /// @param other isn't looked at
    ZvClipboard& operator=(ZvClipboard&& other) noexcept;

    /// @return a view on the present content, which emits `invalidated` when that content is
    /// replaced.
    ZvClipboardData clipboardData() const;

    /// @return `ZvClipboardData::hasTableData` of the present content.
    bool hasTableData() const;
    /// @return whether "text/plain" is among the formats of the present content.
    bool hasText() const;
    /// @return whether this application has put content of \p type on the clipboard.
    /// @param type a kind of content of this library
    bool hasType(ZvInternalMimeType type) const;
    /// @return whether \p type is among the formats of the present content; always false for
    /// `xml_spreadsheet`.
    /// @param type a format
    bool hasType(zvutil::mime_type type) const;
    /// @return `ZvClipboardData::tableData` of the present content: a table without storage if
    /// there is none to read.
    ZvTable tableData() const;

    /// @return what `QMimeData::data` gives for "text/plain", up to its first NUL; empty if that is
    /// null. These are the bytes of the format as they are; where it isn't among the formats but a
    /// list of URIs is, Qt makes text of that: one URI as it is, several with a line feed after
    /// each. So there may be text where `hasText` is false.
    libzvutil::ZvString stringData() const;

    /// Puts a table on the clipboard: as CSV ("text/csv", and "Csv" of Windows), as text with tabs,
    /// and for this application as the table itself. The texts are made at once; an exception from
    /// that leaves the clipboard as it was.
    /// @param table is copied; must have storage
    void setData(const ZvTable& table);
    /// The same, without a copy of the table.
    /// @param table must have storage, and has none afterwards
    void setData(ZvTable&& table);
};
