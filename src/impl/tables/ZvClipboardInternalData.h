#pragma once

#include <zvutil/ZvInternalMimeType.h>
#include <zvutil/ZvTable.h>
#include <zvutil/mime_type.h>

#include <QMimeData>

/// The base of the content that this library puts on the clipboard, which identifies that content.
class ZvClipboardInternalData : public QMimeData
{
    Q_OBJECT

public:
    ZvClipboardInternalData();
    ~ZvClipboardInternalData() override;

    virtual bool hasMimeType(zvutil::mime_type type) const;
    virtual bool hasInternalMimeType(ZvInternalMimeType type) const = 0;
    /// A copy of the table, or a table without storage if the content is none.
    virtual ZvTable internalTableData() const;
};
