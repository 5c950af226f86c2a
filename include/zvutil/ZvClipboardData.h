#pragma once

#include <zvutil/ZvInternalMimeType.h>
#include <zvutil/ZvTable.h>
#include <zvutil/mime_type.h>
#include <zvutil/zvutil_export.h>

#include <QObject>

class QMimeData;
class ZvClipboardInternalData;

/// A view on clipboard content, which it doesn't own: whether it can be read as a table, and that
/// table. Content that this library has put there gives that same table; any other content is
/// read as CSV.
///
/// A view is *null* without a place for content, as after default construction or a move; *valid* as
/// long as its content exists; and *stale* afterwards, for good. A stale view has no formats and no
/// table. Nothing is cached: each call asks the content, and each reading of CSV parses it again.
///
/// GUI thread only.
/// @since 0.1 @ingroup tables
class ZVUTIL_EXPORT ZvClipboardData : public QObject
{
    Q_OBJECT

public:
    /// A null view.
    ZvClipboardData();
    /// A view on content.
    /// @param data isn't owned; if it is null, the view is stale from the start
    ZvClipboardData(const QMimeData* data);
    /// A view on content of this library.
    /// @param data isn't owned; if it is null, the view is stale from the start
    ZvClipboardData(const ZvClipboardInternalData* data);

    /// A second view on the same content. Connections aren't copied.
    /// @param other must not be null
    ZvClipboardData(const ZvClipboardData& other);
    /// Takes the view over.
    /// @param other is null afterwards, and its listeners are no longer called
    // NOLINTNEXTLINE(performance-noexcept-move-constructor): the move makes a QObject
    ZvClipboardData(ZvClipboardData&& other);
    /// A view looks at one content for life.
    /// @param other can't be assigned
    ZvClipboardData& operator=(const ZvClipboardData& other) = delete;
    /// Emits `invalidated` if the view is valid; the content stays.
    ~ZvClipboardData() override;

    /// @return whether there is no place for content.
    bool isNull() const;
    /// @return whether there is content to look at: neither null nor stale.
    bool isValid() const;

    /// @return the content, which the clipboard owns; null if it has been replaced. The view must
    /// not be null, here and up to `hasType`.
    const QMimeData* mimeData() const;

    /// @return whether there is a table, or a format of CSV. **The content of a format isn't looked
    /// at**: CSV that can't be read has table data, and gives a table without storage all the same.
    bool hasTableData() const;

    /// @return whether this library has put content of \p type there; false for all content of
    /// others.
    /// @param type a kind of content of this library
    bool hasType(ZvInternalMimeType type) const;
    /// @return whether \p type is among the formats of the content; always false for
    /// `xml_spreadsheet`.
    /// @param type a format
    bool hasType(zvutil::mime_type type) const;

    /// @return a copy of the table that this library has put there, else `csvData`. Without storage
    /// if there is neither.
    ZvTable tableData() const;

    /// @return the content read as CSV, that of the Windows format if there are both. All cells are
    /// texts, by `ZvVariant(const char*)`.
    ///
    /// The separator is a comma. Cells lose the whitespace at their ends, also within quotes. The
    /// first record fixes the number of columns: shorter ones are filled up with empty texts, but a
    /// short last one is dropped; a longer one is reported in the log and gives a table without
    /// storage, as does lack of memory. Takes linear time, and beside the table a copy of the text
    /// and 8 bytes per cell.
    ZvTable csvData() const;

Q_SIGNALS:
    /// The content has been replaced, or a view that was valid is being destroyed. Emitted at most
    /// once.
    void invalidated(QPrivateSignal);

private:
    class Impl;

    /// A view with an implementation.
    /// @param implementation owned from now on; may be null
    explicit ZvClipboardData(Impl* implementation);

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvClipboardData) == sizeof(QObject) + sizeof(void*));
