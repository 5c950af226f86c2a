#pragma once

#include "impl/tables/ZvClipboardInternalData.h"

#include <zvutil/ZvTable.h>

/// A table on the clipboard. Its texts are formats like those of any `QMimeData`.
class ZvTableClipboardData : public ZvClipboardInternalData
{
    Q_OBJECT

public:
    /// Takes the table over and makes its texts, for which it needs storage.
    explicit ZvTableClipboardData(ZvTable&& table);
    ~ZvTableClipboardData() override;

    bool hasInternalMimeType(ZvInternalMimeType type) const override;
    ZvTable internalTableData() const override;

private:
    const ZvTable m_table;
};
