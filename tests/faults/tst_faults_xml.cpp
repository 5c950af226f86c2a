// XML files are saved whole or not at all, and read without surprises, whichever call on a file fails.

#include "Drive.h"
#include "SavePromise.h"

#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvXMLReadFile.h>

#include "support/EventLoop.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <string>

namespace xml = zvutil::experimental::xml;

using zvtest::Injected;
using zvtest::Operation;
using zvtest::SavePromise;

namespace {

constexpr char oldContent[] = "<?xml version=\"1.0\"?><old>the old content</old>";

enum class Shape {
    Pieces,
    OneBlock,
    LargeText,
    ManyElements,
};

enum class Place {
    File,
    Link,
    Missing,
};

template <typename C>
std::basic_string<C> widened(const std::string& text)
{
    return {text.begin(), text.end()};
}

template <typename C>
class Saver : public ZvBasicXMLSaveFile<C>
{
public:
    using ZvBasicXMLSaveFile<C>::ZvBasicXMLSaveFile;

    bool save(Shape shape)
    {
        write(shape);
        return this->commit();
    }

private:
    void write(Shape shape)
    {
        const auto root = this->writer().root_element(widened<C>("root").c_str());
        root->attribute(widened<C>("name").c_str(), widened<C>("value").c_str());
        if (shape == Shape::LargeText || shape == Shape::OneBlock) {
            // One block is larger than the buffers of Qt's files and smaller than the library's.
            const std::size_t length = shape == Shape::OneBlock ? 20'000 / sizeof(C) : 200'000;
            root->text(std::basic_string<C>(length, C('x')).c_str());
            return;
        }
        const int count = shape == Shape::Pieces ? 3 : 4'000;
        for (int i = 0; i < count; ++i)
            root->child(widened<C>("child").c_str())->text(widened<C>(std::to_string(i)).c_str());
    }
};

class Reader : public ZvXMLReadFile
{
public:
    using ZvXMLReadFile::ZvXMLReadFile;

    /// The number of children, or -1 without a root element.
    int count()
    {
        const auto root = reader().root_element();
        if (!root)
            return -1;
        int count = 0;
        while (root->next_child())
            ++count;
        return count;
    }
};

} // namespace

class tst_faults_xml : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_target = m_folder->filePath("a.xml");
    }

    void cleanupTestCase() { zvtest::Tally::print(); }

    void save_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("shape");
        QTest::addColumn<int>("place");
        QTest::addColumn<int>("kind");
        const char* const types[] = {"char", "char16_t", "char32_t", "wchar_t"};
        const char* const shapes[] = {"pieces", "one block", "large text", "many elements"};
        const char* const places[] = {"file", "link", "no file"};
        for (int type = 0; type < 4; ++type) {
            for (int shape = 0; shape < 4; ++shape) {
                for (int place = 0; place < (shape == 0 ? 3 : 1); ++place) {
                    for (int kind = 0; kind < zvtest::faultKindCount(); ++kind)
                        QTest::addRow("%s, %s, %s, %s", types[type], shapes[shape], places[place],
                                      zvtest::faultKind(kind).name)
                            << type << shape << place << kind;
                }
            }
        }
    }

    void save()
    {
        QFETCH(int, type);
        QFETCH(int, shape);
        QFETCH(int, place);
        QFETCH(int, kind);
        using Save = void (tst_faults_xml::*)(Shape, Place, int);
        const Save saves[] = {&tst_faults_xml::saveAs<char>, &tst_faults_xml::saveAs<char16_t>,
                              &tst_faults_xml::saveAs<char32_t>, &tst_faults_xml::saveAs<wchar_t>};
        (this->*saves[type])(static_cast<Shape>(shape), static_cast<Place>(place), kind);
    }

    void read_data() { zvtest::addFaultKinds(); }

    // By contract nobody is told of a file that can't be read: it has no root element, or ends early.
    void read()
    {
        QFETCH(int, kind);
        constexpr int children = 20'000;
        QByteArray document = "<root>";
        for (int i = 0; i < children; ++i)
            document += "<child>text</child>";
        QVERIFY(zvtest::writeTo(m_target, document + "</root>"));
        int count = -2;
        Operation operation;
        operation.folder = m_folder->path();
        operation.prepare = [] {};
        operation.run = [this, &count] {
            count = Reader(m_target.toStdWString()).count();
            zvtest::runEventLoop();
        };
        const bool mustSucceed = zvtest::faultKind(kind).isHarmless;
        operation.problem = [this, &count, mustSucceed](const Injected& fault) {
            if (count < -1 || count > children)
                return QString("%1 children").arg(count);
            if (count < children && (mustSucceed || fault.call.isEmpty()))
                return QString("only %1 children").arg(count);
            const QStringList open = zvtest::temporaryFiles(m_folder->path(), m_target);
            return open.isEmpty() ? QString() : "left open: " + open.join(", ");
        };
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

private:
    template <typename C>
    void saveAs(Shape shape, Place place, int kind)
    {
        const QString real = place == Place::Link ? m_folder->filePath("real.xml") : m_target;
#if defined(Q_OS_WIN)
        if (place == Place::Link)
            QSKIP("Symbolic links need privileges here");
#else
        if (place == Place::Link)
            QVERIFY(QFile::link("real.xml", m_target));
#endif
        SavePromise promise(m_folder->path(), real, {m_target});
        Operation operation;
        operation.folder = m_folder->path();
        operation.isLarge = shape == Shape::ManyElements;
        operation.prepare = [&real, place] {
            QFile::remove(real);
            if (place == Place::Missing)
                return;
            zvtest::writeTo(real, oldContent);
            QFile::setPermissions(real, QFile::ReadOwner | QFile::WriteOwner);
        };
        operation.run = [this, shape] {
            m_isSaved = Saver<C>(m_target.toStdWString()).save(shape);
            zvtest::runEventLoop();
        };
        operation.problem = [this, &promise, place](const Injected& fault) {
            if (place == Place::Link && !QFileInfo(m_target).isSymLink())
                return QString("the link is gone");
            return promise.problem(fault, m_isSaved);
        };
        operation.prepare();
        promise.setBefore();
        operation.run();
        promise.setAfter();
        QVERIFY(m_isSaved);
        const QString found = zvtest::drive(operation, zvtest::faultKind(kind));
        // The link is none of the temporary files.
        QFile::remove(m_target);
        QVERIFY2(found.isEmpty(), qPrintable(found));
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_target;
    bool m_isSaved = false;
};

QTEST_GUILESS_MAIN(tst_faults_xml)
#include "tst_faults_xml.moc"
