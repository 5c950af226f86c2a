#include "impl/xml/utf32_device.h"

#include <QString>
#include <QVector>

#include <cstring>
#include <utility>

namespace zvutil::impl {

utf32_device::utf32_device(std::shared_ptr<QIODevice> target)
    : m_target(std::move(target))
{
    if (!m_target || !m_target->isOpen())
        return;
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    // A direct connection, so that this device closes at once even if another thread closes the
    // target.
    connect(
        m_target.get(), &QIODevice::aboutToClose, this, [this] { QIODevice::close(); },
        Qt::DirectConnection);
}

utf32_device::~utf32_device()
{
    // Disconnect first: once released, the target may be deleted by its thread before the base
    // class disconnects.
    if (m_target)
        m_target->disconnect(this);
}

bool utf32_device::isSequential() const
{
    return true;
}

void utf32_device::close()
{
    QIODevice::close();
    m_target->close();
}

qint64 utf32_device::readData(char* /*data*/, qint64 /*size*/)
{
    return -1;
}

qint64 utf32_device::writeData(const char* data, qint64 size)
{
    QString text(static_cast<int>(size / 2), Qt::Uninitialized);
    std::memcpy(text.data(), data, static_cast<std::size_t>(text.size()) * sizeof(QChar));
    const QVector<uint> codes = text.toUcs4();
    const qint64 bytes = qint64(codes.size()) * qint64(sizeof(uint));
    const char* const units = reinterpret_cast<const char*>(codes.constData());
    return m_target->write(units, bytes) == bytes ? size : -1;
}

} // namespace zvutil::impl
