#include "impl/xml/save_device.h"

#include "base/file_safety.h"

#include <utility>

namespace zvutil::impl {

namespace {

// A size above that of the file's own buffer, so that no block is copied into that as well.
constexpr int block_size = 32'768;

} // namespace

save_device::save_device(std::shared_ptr<QSaveFile> file)
    : m_file(std::move(file))
{
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    m_block.reserve(block_size);
    connect(m_file.get(), &QIODevice::aboutToClose, this, &save_device::finish,
            Qt::DirectConnection);
}

save_device::~save_device()
{
    hand_over();
    // Disconnect first: the file's own thread may delete it as soon as it is released here.
    m_file->disconnect(this);
}

bool save_device::isSequential() const
{
    return true;
}

void save_device::close()
{
    m_file->cancelWriting();
    QIODevice::close();
}

qint64 save_device::readData(char* /*data*/, qint64 /*size*/)
{
    return -1;
}

qint64 save_device::writeData(const char* data, qint64 size)
{
    if (!m_file->isOpen())
        return -1;
    if (m_block.size() + size > block_size && !hand_over())
        return -1;
    if (size > block_size)
        return deliver(data, size) ? size : -1;
    m_block.append(data, static_cast<int>(size));
    return size;
}

bool save_device::hand_over()
{
    const bool is_taken = m_block.isEmpty() || deliver(m_block.constData(), m_block.size());
    m_block.resize(0);
    return is_taken;
}

bool save_device::deliver(const char* data, qint64 size)
{
    if (m_file->write(data, size) == size)
        return true;
    m_file->cancelWriting();
    return false;
}

void save_device::finish()
{
    hand_over();
    if (!base::is_safe_to_commit(*m_file))
        m_file->cancelWriting();
}

} // namespace zvutil::impl
