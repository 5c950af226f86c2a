#pragma once

#include "impl/tables/ZvClipboardInternalData.h"

#include <zvutil/ZvTable.h>

/// A table on the clipboard, with its texts as formats like those of any `QMimeData`.
class ZvTableClipboardData : public ZvClipboardInternalData
{
    Q_OBJECT

public:
    /// Takes \p table, which must have storage, over and makes its texts.
    explicit ZvTableClipboardData(ZvTable&& table);
    ~ZvTableClipboardData() override;

    bool hasInternalMimeType(ZvInternalMimeType type) const override;
    ZvTable internalTableData() const override;

private:
    const ZvTable m_table;
};
