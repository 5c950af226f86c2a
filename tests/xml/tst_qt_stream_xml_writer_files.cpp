// Files and devices that XML is written to.

#include "WrittenXml.h"

#include "impl/xml/basic_qt_xml_save_file.h"
#include "impl/xml/qt_xml_read_file.h"
#include "support/Files.h"

#include "support/EventLoop.h"
#include "support/HeldFiles.h"
#include "support/Warnings.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <string>

using zvtest::declaration;
using zvtest::Document;
using zvtest::Element;
using zvtest::units;
using zvtest::written;
using namespace std::string_literals;
using namespace zvutil::experimental::xml;

namespace {

/// A buffer that fails from some byte on.
class Failing : public QIODevice
{
public:
    explicit Failing(qint64 space)
        : m_space(space)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    int failures = 0;

protected:
    qint64 readData(char* /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char* /*data*/, qint64 size) override
    {
        if (size > m_space) {
            ++failures;
            return -1;
        }
        m_space -= size;
        return size;
    }

private:
    qint64 m_space;
};

/// A file on a disk that gets full: it takes the beginning of what doesn't fit, and sets no error.
class FullDisk : public QSaveFile
{
public:
    FullDisk(const QString& name, qint64 space)
        : QSaveFile(name)
        , m_space(space)
    {
    }

protected:
    qint64 writeData(const char* data, qint64 size) override
    {
        const qint64 taken = std::min(size, m_space);
        m_space -= taken;
        return taken > 0 ? QSaveFile::writeData(data, taken) : -1;
    }

private:
    qint64 m_space;
};

enum class Piece { Text, Attribute, AttributeOfALength, ManyElements };

template <typename C>
void writePiece(basic_abstract_xml_element_writer<C>& element, Piece piece, int length)
{
    const std::basic_string<C> value(static_cast<std::size_t>(length), C('x'));
    const std::basic_string<C> name = units<C>("name");
    if (piece == Piece::Text)
        element.text(value.c_str());
    else if (piece == Piece::Attribute)
        element.attribute(name.c_str(), value.c_str());
    else if (piece == Piece::AttributeOfALength)
        element.attribute(name.c_str(), value.c_str(), length);
    for (int i = 0; piece == Piece::ManyElements && i < length / 8; ++i)
        element.child(name.c_str());
}

/// Saves over \p target on a disk that takes \p space bytes, all if it is negative. Returns what
/// `commit` returns; the file may be committed by its caller itself.
template <typename C>
bool savedWithin(qint64 space, Piece piece, int length, const QString& target, bool callerCommits)
{
    const auto file =
        std::make_shared<FullDisk>(target, space < 0 ? std::numeric_limits<qint64>::max() : space);
    basic_qt_xml_save_file<C> document(file);
    writePiece(*document.root_element(units<C>("r").c_str()), piece, length);
    return callerCommits ? file->commit() : document.commit();
}

} // namespace

Q_DECLARE_METATYPE(Piece)

class tst_qt_stream_xml_writer_files : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void closedDeviceIsNoError()
    {
        QBuffer closed;
        {
            Document<char> narrow(&closed);
            narrow.root_element("r")->text("t");
            Document<char32_t> wide(&closed);
            wide.root_element(U"r")->text(U"t");
            Document<char16_t> none(nullptr);
            none.root_element(u"r");
        }
        QVERIFY(closed.data().isEmpty());
    }

    void writeErrorsAreTriedOnce()
    {
        for (const qint64 space : {0, 38, 50}) {
            Failing device(space);
            {
                Document<char> document(&device);
                document.root_element("root")->text("a longer text for which there is no space");
            }
            QCOMPARE(device.failures, 1);
            Failing wide(4 * space);
            {
                Document<char32_t> document(&wide);
                document.root_element(U"root")->text(U"a longer text that finds no space");
            }
            QCOMPARE(wide.failures, 1);
        }
    }

    void saveFileTakesAFileOfItsCaller()
    {
        const QTemporaryDir folder;
        const QString target = folder.filePath("a.xml");
        QPointer<QSaveFile> watched;
        {
            const auto file = std::make_shared<QSaveFile>(target);
            watched = file.get();
            basic_qt_xml_save_file<char> document(file);
            QVERIFY(file->isOpen());
            QVERIFY(!file->isTextModeEnabled());
            document.root_element("r");
            QVERIFY(document.commit());
            QVERIFY(!file->isOpen());
        }
        // Its owner's deleter is used, whatever that does.
        QVERIFY(!watched);
        QFile saved(target);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QCOMPARE(saved.readAll(), declaration<char>().toUtf8() + "<r/>");
    }

    void fullDiskIsTold_data()
    {
        QTest::addColumn<Piece>("piece");
        QTest::addColumn<int>("length");
        const auto row = [](const char* name, Piece piece) {
            // Shorter and longer than the blocks in which the document and the file write.
            for (const int length : {100, 16'000, 20'000, 200'000})
                QTest::addRow("%s of %d", name, length) << piece << length;
        };
        row("text", Piece::Text);
        row("attribute", Piece::Attribute);
        row("attribute with a length", Piece::AttributeOfALength);
        row("elements", Piece::ManyElements);
    }

    void fullDiskIsTold()
    {
        fullDiskIsToldBy<char>();
        fullDiskIsToldBy<char16_t>();
        fullDiskIsToldBy<char32_t>();
        fullDiskIsToldBy<wchar_t>();
    }

    void unwritableTargetsFailSilently_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing folder") << QDir::tempPath() + "/zvutil missing/a.xml";
        QTest::newRow("folder") << QDir::tempPath();
    }

    void unwritableTargetsFailSilently()
    {
        QFETCH(QString, path);
        const auto fails = [&path](auto unit) {
            using C = decltype(unit);
            basic_qt_xml_save_file<C> document(path.toStdWString());
            const Element<C> root = document.root_element(units<C>("r").c_str());
            writePiece<C>(*root, Piece::Attribute, 3);
            writePiece<C>(*root, Piece::Text, 100'000);
            document.cancel_writing();
            QVERIFY(!document.commit());
            writePiece<C>(*root, Piece::ManyElements, 100);
            QVERIFY(!document.commit());
        };
        QCOMPARE(zvtest::warningsOf([&fails] {
                     fails(char());
                     fails(char16_t());
                     fails(char32_t());
                     fails(wchar_t());
                 }),
                 QStringList());
    }

    void readFileTakesAFileOfItsCaller()
    {
        const QTemporaryDir folder;
        const auto missing = std::make_shared<QFile>(folder.filePath("a.xml"));
        qt_xml_read_file none(missing);
        QVERIFY(!missing->isReadable());
        QVERIFY(!none.root_element());

        QFile written(missing->fileName());
        QVERIFY(written.open(QIODevice::WriteOnly));
        written.write("<r/>");
        written.close();
        const auto there = std::make_shared<QFile>(missing->fileName());
        qt_xml_read_file document(there);
        QVERIFY(there->isReadable() && !there->isWritable());
        QVERIFY(!there->isTextModeEnabled());
        QCOMPARE(document.root_element()->name(), "r");
    }

    void elementsKeepTheirFileOpen()
    {
        const QTemporaryDir folder;
        const QString target = folder.filePath("a.xml");
        auto document = std::make_unique<basic_qt_xml_save_file<char32_t>>(target.toStdWString());
        Element<char32_t> root = document->root_element(U"r");
        Element<char32_t> child = root->child(U"c");
        document.reset();
        root.reset();
        zvtest::runEventLoop();
        // There is still something to write to, and the file goes with the last element.
        QVERIFY(!zvtest::temporaryFiles(folder.path(), target).isEmpty());
        child->text(U"t");
        child.reset();
        zvtest::runEventLoop();
        QCOMPARE(zvtest::temporaryFiles(folder.path(), target), QStringList());
        QVERIFY(!QFile::exists(target));
    }

    void usualSaveIsSilent()
    {
        const QTemporaryDir folder;
        const std::wstring target = folder.filePath("a.xml").toStdWString();
        QCOMPARE(zvtest::warningsOf([&target] { QVERIFY(saved<char>(target)); }), QStringList());
        QCOMPARE(zvtest::warningsOf([&target] { QVERIFY(saved<char32_t>(target)); }),
                 QStringList());
    }

private:
    template <typename C>
    static void fullDiskIsToldBy()
    {
        QFETCH(Piece, piece);
        QFETCH(int, length);
        const QTemporaryDir folder;
        const QString target = folder.filePath("a.xml");
        QVERIFY(savedWithin<C>(-1, piece, length, target, false));
        const qint64 size = QFileInfo(target).size();
        const QByteArray old = zvtest::contentOf(target);
        for (const qint64 space : {qint64(0), size / 7, size / 2, size - size / 3, size - 1}) {
            for (const bool callerCommits : {false, true}) {
                QVERIFY(!savedWithin<C>(space, piece, length, target, callerCommits));
                QVERIFY(zvtest::contentOf(target) == old);
                QCOMPARE(zvtest::temporaryFiles(folder.path(), target), QStringList());
            }
        }
        QVERIFY(savedWithin<C>(size, piece, length, target, true));
        QVERIFY(zvtest::contentOf(target) == old);
    }

    template <typename C>
    static bool saved(const std::wstring& target)
    {
        basic_qt_xml_save_file<C> document(target);
        document.root_element(units<C>("r").c_str());
        return document.commit();
    }
};

QTEST_GUILESS_MAIN(tst_qt_stream_xml_writer_files)
#include "tst_qt_stream_xml_writer_files.moc"
