#pragma once

#include <zvutil/ZvInternalMimeType.h>
#include <zvutil/ZvTable.h>
#include <zvutil/mime_type.h>

#include <QMimeData>

/// The base of all that this library puts on the clipboard, by which it knows its own content.
class ZvClipboardInternalData : public QMimeData
{
    Q_OBJECT

public:
    ZvClipboardInternalData();
    ~ZvClipboardInternalData() override;

    virtual bool hasMimeType(zvutil::mime_type type) const;
    virtual bool hasInternalMimeType(ZvInternalMimeType type) const = 0;
    /// Without storage, unless the content is a table.
    virtual ZvTable internalTableData() const;
};
