#include "impl/ZvClipboardDataImpl.h"

#include "impl/tables/ZvClipboardInternalData.h"

#include <QMimeData>

ZvClipboardData::Impl::Impl(const QMimeData* data)
    : mimeData(data)
    , m_internal(ZvClipboardInternalData::staticMetaObject.cast(data) != nullptr)
{
    if (data)
        connect(data, &QObject::destroyed, this, &Impl::loseData);
}

ZvClipboardData::Impl::~Impl()
{
    loseData();
}

const ZvClipboardInternalData* ZvClipboardData::Impl::internalData() const
{
    return m_internal ? static_cast<const ZvClipboardInternalData*>(mimeData) : nullptr;
}

void ZvClipboardData::Impl::loseData()
{
    if (!mimeData)
        return;
    mimeData = nullptr;
    // Emit last: a listener may destroy this object.
    Q_EMIT invalidated();
}
