#pragma once

#include <QIODevice>

#include <memory>

namespace zvutil::impl {

/// Writes to another device in UTF-32 what is written to it in UTF-16, both in the machine's byte
/// order and without a byte order mark.
///
/// It is there because Qt's own encoder leaves four bytes of garbage behind each character above
/// U+FFFF.
class utf32_device final : public QIODevice
{
public:
    /// Is open as long as \p target is.
    explicit utf32_device(std::shared_ptr<QIODevice> target);
    ~utf32_device() override;

    bool isSequential() const override;

protected:
    qint64 readData(char* data, qint64 size) override;
    /// Takes whole characters. Returns -1 if the target didn't take all.
    qint64 writeData(const char* data, qint64 size) override;

private:
    std::shared_ptr<QIODevice> m_target;
};

} // namespace zvutil::impl
