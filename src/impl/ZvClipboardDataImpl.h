#pragma once

#include <zvutil/ZvClipboardData.h>

#include <QObject>

class QMimeData;
class ZvClipboardInternalData;

class ZVUTIL_NO_EXPORT ZvClipboardData::Impl : public QObject
{
    Q_OBJECT

public:
    explicit Impl(const QMimeData* data);
    ~Impl() override;

    /// The content if it is this library's own, else null.
    const ZvClipboardInternalData* internalData() const;

    const QMimeData* mimeData; ///< null after it was destroyed

Q_SIGNALS:
    void invalidated();

private:
    void loseData();

    const bool m_internal;
};
