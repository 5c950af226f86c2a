#include "impl/tables/ZvClipboardInternalData.h"

#include "impl/tables/mime_type_text.h"

ZvClipboardInternalData::ZvClipboardInternalData() = default;

ZvClipboardInternalData::~ZvClipboardInternalData() = default;

bool ZvClipboardInternalData::hasMimeType(zvutil::mime_type type) const
{
    return hasFormat(zvutil::impl::mime_type_text(type));
}

ZvTable ZvClipboardInternalData::internalTableData() const
{
    return {};
}
