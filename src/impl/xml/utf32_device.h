#pragma once

#include <QIODevice>

#include <memory>

namespace zvutil::impl {

/// Converts UTF-16 that is written to it to UTF-32 and writes that to another device, both in the
/// machine's byte order and without a byte order mark.
///
/// Qt's own encoder writes four bytes of garbage after each character above U+FFFF.
class utf32_device final : public QIODevice
{
public:
    /// Writes to \p target, and is open as long as that is.
    explicit utf32_device(std::shared_ptr<QIODevice> target);
    ~utf32_device() override;

    bool isSequential() const override;
    /// Closes the target as well.
    void close() override;

protected:
    qint64 readData(char* data, qint64 size) override;
    /// Takes whole characters. Returns -1 if the target didn't take all of them.
    qint64 writeData(const char* data, qint64 size) override;

private:
    std::shared_ptr<QIODevice> m_target;
};

} // namespace zvutil::impl
