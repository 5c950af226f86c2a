#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QSaveFile>

#include <memory>

namespace zvutil::impl {

/// Writes to a `QSaveFile` in blocks, and cancels it as soon as the file doesn't take all of one.
///
/// Qt reports a block of which a full disk took only the beginning as a short count without an
/// error, and ignores errors in the last block, which it writes when the file is committed, and of
/// the disk itself. Without this device `commit` would replace the target by a file that is cut off,
/// and return true.
///
/// The device is open as long as it exists: data that are written after the file was closed, or to
/// a file that couldn't be opened, are lost without an error.
class save_device final : public QIODevice
{
public:
    /// Shares \p file, which must not be null. Its owner may commit it while this object exists;
    /// `commit` returns false if any data were lost.
    explicit save_device(std::shared_ptr<QSaveFile> file);
    /// Writes the data that the file hasn't received yet.
    ~save_device() override;

    bool isSequential() const override;
    /// Cancels the file.
    void close() override;

protected:
    qint64 readData(char* data, qint64 size) override;
    /// Buffers or writes \p data; returns -1 once the file has been closed or cancelled.
    qint64 writeData(const char* data, qint64 size) override;

private:
    bool hand_over();
    bool deliver(const char* data, qint64 size);
    void finish();

    std::shared_ptr<QSaveFile> m_file;
    QByteArray m_block;
};

} // namespace zvutil::impl
