#pragma once

#include <QIODevice>
#include <QXmlStreamWriter>

#include <memory>
#include <new>
#include <utility>

namespace zvutil::impl {

/// A stream and its device, which lives as long as the stream: until the last element that uses it
/// is destroyed.
template <typename Stream>
struct stream_on_device
{
    explicit stream_on_device(std::shared_ptr<QIODevice>&& target)
        : device(std::move(target))
        , stream(device.get())
    {
    }

    std::shared_ptr<QIODevice> device;
    Stream stream;
};

/// Whether the stream's device is open. Writing to a closed one loses the data, and Qt warns.
inline bool takes_output(const QXmlStreamWriter& stream)
{
    const QIODevice* const device = stream.device();
    return device && device->isOpen();
}

/// Writes an end tag or the end of a document by \p write, from a destructor. Where memory is too
/// short for that, closes the device, so that a document without its end isn't taken for a whole
/// one.
template <typename Write>
void write_end(QXmlStreamWriter& stream, Write write) noexcept
{
    if (!takes_output(stream))
        return;
    try {
        write();
    } catch (const std::bad_alloc&) {
        stream.device()->close();
    }
}

/// A shared pointer to a device that another object owns.
inline std::shared_ptr<QIODevice> borrowed(QIODevice* device)
{
    return {std::shared_ptr<void>(), device};
}

} // namespace zvutil::impl
