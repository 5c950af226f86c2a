#pragma once

#include <zvutil/ZvInternalMimeType.h>
#include <zvutil/ZvTable.h>
#include <zvutil/mime_type.h>
#include <zvutil/zvutil_export.h>

#include <QObject>

class QMimeData;
class ZvClipboardInternalData;

/// A view on clipboard content, which it doesn't own: whether it can be read as a table, and that
/// table. Content that this library has put there gives the table that was put there; all other is
/// read as CSV.
///
/// A view is *null* without a place for content, as one that is made by the default constructor or has
/// been moved from; *valid* as long as its content is there; and *stale* afterwards, for good. A stale
/// one says that it has nothing. Nothing is kept: each call asks the content, and each reading of CSV
/// parses it anew.
///
/// GUI thread only.
class ZVUTIL_EXPORT ZvClipboardData : public QObject
{
    Q_OBJECT

public:
    /// Null.
    ZvClipboardData();
    /// A view on \p data; stale from the start if that is null.
    ZvClipboardData(const QMimeData* data);
    ZvClipboardData(const ZvClipboardInternalData* data);

    /// A second view on the same content. \p other must not be null. Connections aren't copied.
    ZvClipboardData(const ZvClipboardData& other);
    /// Leaves \p other null; its listeners hear nothing more.
    ZvClipboardData(ZvClipboardData&& other);
    ZvClipboardData& operator=(const ZvClipboardData& other) = delete;
    ~ZvClipboardData() override;

    bool isNull() const;
    bool isValid() const;

    /// The content, null if it has gone. The view must not be null, here and up to `hasType`.
    const QMimeData* mimeData() const;

    /// Whether there is a table, or a format of CSV. **The content of a format isn't looked at**: CSV
    /// that can't be read has table data, and gives a table without storage all the same.
    bool hasTableData() const;

    /// False for all content but this library's own.
    bool hasType(ZvInternalMimeType type) const;
    /// Always false for `xml_spreadsheet`.
    bool hasType(zvutil::mime_type type) const;

    /// A copy of the table that this library has put there, else `csvData`. Without storage if there
    /// is neither.
    ZvTable tableData() const;

    /// The content read as CSV, that of the Windows format if there are both. All cells are texts, by
    /// `ZvVariant(const char*)`.
    ///
    /// The separator is a comma. Cells lose the whitespace at their ends, also within quotes. The
    /// first record fixes the number of columns: shorter ones are filled up with empty texts, but a
    /// short last one is dropped; a longer one is told in the log and gives a table without storage,
    /// as does lack of memory. Takes linear time, and beside the table a copy of the text and 8 bytes
    /// per cell.
    ZvTable csvData() const;

Q_SIGNALS:
    /// The content has gone, or a view that was valid is being destroyed. Comes at most once.
    void invalidated(QPrivateSignal);

private:
    class Impl;

    /// Takes \p implementation, which may be null, over.
    explicit ZvClipboardData(Impl* implementation);

    Impl* d_impl();
    const Impl* d_impl() const;

    Impl* m_implementation;
};

static_assert(sizeof(ZvClipboardData) == sizeof(QObject) + sizeof(void*));
