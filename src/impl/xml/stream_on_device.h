#pragma once

#include <QIODevice>
#include <QXmlStreamWriter>

#include <memory>
#include <utility>

namespace zvutil::impl {

/// A stream and the device that it leads to, which lives as long as the stream does: until the last
/// element that uses it has gone.
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

/// Whether the stream's device is open. What is written to a closed one is lost, and Qt complains.
inline bool takes_output(const QXmlStreamWriter& stream)
{
    const QIODevice* const device = stream.device();
    return device && device->isOpen();
}

/// A device that somebody else owns.
inline std::shared_ptr<QIODevice> borrowed(QIODevice* device)
{
    return {std::shared_ptr<void>(), device};
}

} // namespace zvutil::impl
