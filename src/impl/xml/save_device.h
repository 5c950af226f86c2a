#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QSaveFile>

#include <memory>

namespace zvutil::impl {

/// Writes to a `QSaveFile`, in blocks, and cancels it as soon as the file doesn't take all of them.
///
/// Qt reports a block of which a full disk took only the beginning as a short count, and sets no
/// error; nor does it look at the last block, which it writes when the file is committed. Without
/// this device `commit` would replace the target by a file that is cut off, and return true.
///
/// It is open for as long as it lives: what is written after the file was closed, or to one that
/// couldn't be opened, is lost without a word.
class save_device final : public QIODevice
{
public:
    /// Shares \p file, which its owner may commit while this lives; then `commit` returns false if
    /// anything was lost. Not null.
    explicit save_device(std::shared_ptr<QSaveFile> file);
    /// Hands over what the file hasn't got yet.
    ~save_device() override;

    bool isSequential() const override;

protected:
    qint64 readData(char* data, qint64 size) override;
    /// Returns -1 once the file has been closed or cancelled.
    qint64 writeData(const char* data, qint64 size) override;

private:
    bool hand_over();
    bool deliver(const char* data, qint64 size);
    void finish();

    std::shared_ptr<QSaveFile> m_file;
    QByteArray m_block;
};

} // namespace zvutil::impl
