#pragma once

#include <zvutil/ZvCompression.h>
#include <zvutil/ZvFilePath.h>

#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace zvtest {

inline constexpr ZvCompressionType Zlib = ZvCompressionType::Zlib;

inline zvutil::ZvFilePath path(const QString& name)
{
    return {name.toStdWString()};
}

inline QByteArray randomBytes(int count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    QRandomGenerator generator(20261121);
    std::generate(bytes.begin(), bytes.end(), [&] { return char(generator.generate()); });
    return bytes;
}

/// Gives each test function a folder of its own.
class CompressionTest : public QObject
{
    Q_OBJECT

protected:
    QString file(const char* name) const { return m_dir->filePath(QString::fromUtf8(name)); }

    std::unique_ptr<QTemporaryDir> m_dir;

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
    }
};

} // namespace zvtest
