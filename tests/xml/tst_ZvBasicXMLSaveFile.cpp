#include "SaveFileTest.h"

#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvXMLReadFile.h>

#include "support/DeferredDeletes.h"
#include "support/EventLoop.h"
#include "support/Files.h"
#include "support/HeldFiles.h"
#include "support/StdString.h"
#include "support/XmlGeneration.h"

#include <QFile>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTest>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

using zvtest::contentOf;
using zvtest::declaration;
using zvtest::generationOf;
using zvtest::oldContent;
using zvtest::Reader;
using zvtest::Saver;

/// Does something with the file of this name.
using Action = bool (*)(const QString& path);

namespace {

template <typename C>
constexpr bool
    isHandle = sizeof(ZvBasicXMLSaveFile<C>) == 3 * sizeof(void*)
    && std::has_virtual_destructor_v<ZvBasicXMLSaveFile<C>>&& std::is_copy_constructible_v<
                   ZvBasicXMLSaveFile<C>>&& std::is_copy_assignable_v<ZvBasicXMLSaveFile<C>>;

static_assert(isHandle<char> && isHandle<char16_t> && isHandle<char32_t> && isHandle<wchar_t>);

/// A text of plain and other characters in the units of \p C.
template <typename C>
std::basic_string<C> textOf()
{
    const QString text = QString::fromUtf8("plain \xC3\xA4\xE2\x82\xAC\xF0\x9D\x84\x9E <&>\"' end");
    if constexpr (std::is_same_v<C, char>)
        return text.toStdString();
    else if constexpr (std::is_same_v<C, char16_t>)
        return text.toStdU16String();
    else if constexpr (std::is_same_v<C, char32_t>)
        return text.toStdU32String();
    else
        return text.toStdWString();
}

template <typename C>
std::basic_string<C> units(std::string_view text)
{
    return {text.begin(), text.end()};
}

/// A document with all that a writer can write.
template <typename C>
bool saveText(const QString& path)
{
    Saver<C> file(path);
    const std::basic_string<C> text = textOf<C>();
    {
        const auto root = file.writer().root_element(units<C>("root").c_str());
        root->attribute(units<C>("name").c_str(), text.c_str());
        root->attribute(units<C>("part").c_str(), text.c_str(), 5);
        root->child(units<C>("empty").c_str());
        const auto child = root->child(units<C>("child").c_str());
        child->text(text.c_str());
    }
    return file.commit();
}

} // namespace

Q_DECLARE_METATYPE(Action)

class tst_ZvBasicXMLSaveFile : public zvtest::SaveFileTest
{
    Q_OBJECT

private Q_SLOTS:
    void commitMakesTheFile()
    {
        Saver<char> file(m_target);
        file.writer().root_element("r")->attribute("x", "1");
        QVERIFY(!QFile::exists(m_target));
        QVERIFY(file.commit());
        QCOMPARE(contentOf(m_target), QByteArray(declaration) + "<r x=\"1\"/>");
    }

    void commitReplacesTheFileAtOnce()
    {
        writeOld();
        QFile before(m_target);
        QVERIFY(before.open(QIODevice::ReadOnly));
        Saver<char> file(m_target);
        zvtest::writeGeneration(file.writer(), 7);
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
#if defined(Q_OS_WIN)
        before.close();
        QVERIFY(file.commit());
#else
        QVERIFY(file.commit());
        // Who had it open reads the old content on.
        QCOMPARE(before.readAll(), QByteArray(oldContent));
#endif
        QCOMPARE(generationOf(m_target), 7);
    }

    void thereIsNoLineBreakAtTheEnd()
    {
        {
            Saver<char> file(m_target);
            file.writer().root_element("r");
            QVERIFY(file.commit());
        }
        zvtest::runEventLoop();
        QVERIFY(contentOf(m_target).endsWith("<r/>"));
    }

    void elementOpenAtCommitHasNoEndTag()
    {
        {
            Saver<char> file(m_target);
            const auto root = file.writer().root_element("r");
            root->child("a")->text("t");
            QVERIFY(file.commit());
            root->child("too late");
        }
        zvtest::runEventLoop();
        QCOMPARE(contentOf(m_target), QByteArray(declaration) + "<r><a>t</a>");
    }

    void startTagOpenAtCommitIsNotClosed()
    {
        Saver<char> file(m_target);
        const auto root = file.writer().root_element("r");
        QVERIFY(file.commit());
        QCOMPARE(contentOf(m_target), QByteArray(declaration) + "<r");
    }

    void fileWithoutElementsIsTheDeclarationAlone()
    {
        {
            Saver<char> file(m_target);
            QVERIFY(file.commit());
        }
        zvtest::runEventLoop();
        QCOMPARE(contentOf(m_target), QByteArray(declaration));
        Reader reader(m_target);
        QVERIFY(!reader.reader().root_element());
    }

    void givenUp_data()
    {
        QTest::addColumn<Action>("giveUp");
        const auto row = [](const char* name, Action giveUp) { QTest::newRow(name) << giveUp; };
        row("abandoned at once", [](const QString& path) {
            const Saver<char> file(path);
            return true;
        });
        row("abandoned after writing", [](const QString& path) {
            Saver<char> file(path);
            zvtest::writeGeneration(file.writer(), 39);
            return true;
        });
        row("abandoned with open elements", [](const QString& path) {
            auto file = std::make_unique<Saver<char32_t>>(path);
            const auto root = file->writer().root_element(U"r");
            const auto child = root->child(U"c");
            file.reset();
            child->text(U"t");
            return true;
        });
        row("abandoned by an exception", [](const QString& path) {
            try {
                Saver<char> file(path);
                const auto root = file.writer().root_element("r");
                throw std::runtime_error("no more");
            } catch (const std::runtime_error&) {
                return true;
            }
        });
        row("cancelled", [](const QString& path) {
            Saver<char> file(path);
            zvtest::writeGeneration(file.writer(), 39);
            file.cancelWriting();
            return true;
        });
        row("cancelled at once, then written and committed", [](const QString& path) {
            Saver<char> file(path);
            file.cancelWriting();
            zvtest::writeGeneration(file.writer(), 39);
            return !file.commit();
        });
        row("cancelled after writing, then committed twice", [](const QString& path) {
            Saver<char> file(path);
            zvtest::writeGeneration(file.writer(), 39);
            file.cancelWriting();
            file.cancelWriting();
            return !file.commit() && !file.commit();
        });
        row("cancelled through the writer", [](const QString& path) {
            Saver<wchar_t> file(path);
            file.writer().root_element(L"r");
            file.writer().cancel_writing();
            return !file.commit();
        });
        row("cancelled through a copy", [](const QString& path) {
            Saver<char> file(path);
            Saver<char> copy(file);
            copy.cancelWriting();
            return !file.commit() && !copy.commit();
        });
    }

    void givenUp()
    {
        QFETCH(Action, giveUp);
        writeOld();
        QVERIFY(giveUp(m_target));
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
        zvtest::runEventLoop();
        QCOMPARE(contentOf(m_target), QByteArray(oldContent));
        QCOMPARE(zvtest::temporaryFiles(m_folder->path(), m_target), QStringList());

        const QString missing = m_folder->filePath("missing.xml");
        QVERIFY(giveUp(missing));
        zvtest::runEventLoop();
        QVERIFY(!QFile::exists(missing));
    }

    void secondCommitFailsAndChangesNothing()
    {
        Saver<char> file(m_target);
        file.writer().root_element("r");
        QVERIFY(file.commit());
        QVERIFY(!file.commit());
        file.cancelWriting();
        QVERIFY(!file.commit());
        QVERIFY(contentOf(m_target).endsWith("<r/>"));
    }

    void copiesShareOneFile()
    {
        writeOld();
        {
            Saver<char> file(m_target);
            const auto root = file.writer().root_element("r");
            Saver<char> copy(file);
            QCOMPARE(&copy.writer(), &file.writer());
            // The element is open in both.
            copy.writer().root_element("within");
            root->attribute("none", "");
        }
        writeOld();
        {
            Saver<char> file(m_target);
            file.writer().root_element("r");
            Saver<char> copy(file);
            copy.writer().root_element("s");
            QVERIFY(copy.commit());
            QVERIFY(!file.commit());
        }
        zvtest::runEventLoop();
        QCOMPARE(contentOf(m_target), QByteArray(declaration) + "<r/><s/>");
    }

    void lastHandleEndsTheFile()
    {
        auto first = std::make_unique<Saver<char>>(m_target);
        Saver<char> second(*first);
        first.reset();
        zvtest::runEventLoop();
        second.writer().root_element("r");
        QVERIFY(second.commit());
        QVERIFY(contentOf(m_target).endsWith("<r/>"));
    }

    void fileIsNeverDeletedAtOnce()
    {
        // What a document writes at its end goes to a device that must be there yet.
        zvtest::DeferredDeletes<QSaveFile> deletes;
        {
            Saver<char> abandoned(m_target);
            abandoned.writer().root_element("r");
            Saver<char32_t> cancelled(m_target);
            cancelled.cancelWriting();
            Saver<wchar_t> committed(m_target);
            QVERIFY(committed.commit());
            const Saver<char16_t> unwritable(m_folder->filePath("missing/a.xml"));
        }
        QCOMPARE(deletes.count, 0);
        zvtest::runEventLoop();
        QCOMPARE(deletes.count, 4);
    }

    void assignmentSharesTheOthersFileAndLetsItsOwnGo()
    {
        const QString other = m_folder->filePath("other.xml");
        {
            Saver<char> file(m_target);
            Saver<char> target(other);
            target.writer().root_element("lost");
            Saver<char>& result = target = file;
            QCOMPARE(&result, &target);
            target.writer().root_element("r");
            const Saver<char>& same = target;
            target = same;
            QVERIFY(target.commit());
        }
        zvtest::runEventLoop();
        QVERIFY(!QFile::exists(other));
        QVERIFY(contentOf(m_target).endsWith("<r/>"));
    }

    void writtenInFourEncodingsAndReadBack_data()
    {
        QTest::addColumn<Action>("save");
        QTest::addColumn<QString>("encoding");
        QTest::newRow("char") << Action(&saveText<char>) << "utf-8";
        QTest::newRow("char16_t") << Action(&saveText<char16_t>) << "utf-16-le";
        QTest::newRow("char32_t") << Action(&saveText<char32_t>) << "utf-32-le";
        QTest::newRow("wchar_t") << Action(&saveText<wchar_t>) << "utf-16-le";
    }

    void writtenInFourEncodingsAndReadBack()
    {
        QFETCH(Action, save);
        QVERIFY(save(m_target));
        const std::string text = textOf<char>();
        Reader file(m_target);
        const auto root = file.reader().root_element();
        QVERIFY(root);
        QCOMPARE(root->name(), "root");
        QCOMPARE(std::string(root->attribute("name")), text);
        QCOMPARE(std::string(root->attribute("part")), text.substr(0, 5));
        QCOMPARE(root->next_child()->name(), "empty");
        const auto child = root->next_child();
        QCOMPARE(child->name(), "child");
        QCOMPARE(std::string(child->text()), text);
        QVERIFY(!root->next_child());
    }

    void readByAnotherParser_data()
    {
        writtenInFourEncodingsAndReadBack_data();
    }

    void readByAnotherParser()
    {
        QFETCH(Action, save);
        QFETCH(QString, encoding);
        const QString python = QStandardPaths::findExecutable("python3");
        if (python.isEmpty())
            QSKIP("There is no python3 here");
        QVERIFY(save(m_target));
        // Python's parser doesn't know UTF-32, so it gets text, and the declaration is looked at.
        const QString script = "import sys, xml.etree.ElementTree as tree\n"
                               "text = open(sys.argv[1], 'rb').read().decode(sys.argv[2])\n"
                               "start = '<?xml version=\"1.0\" encoding=\"' + "
                               "sys.argv[2].upper().replace('-LE', '') + '\"?>'\n"
                               "assert text.startswith(start), text\n"
                               "root = tree.fromstring(text[len(start):])\n"
                               "assert [e.tag for e in root.iter()] == ['root', 'empty', 'child']\n"
                               "assert list(root.attrib) == ['name', 'part']\n"
                               "out = [root.attrib['name'], root.attrib['part'], root[1].text]\n"
                               "sys.stdout.buffer.write('\\n'.join(out).encode('utf-8'))\n";
        QProcess process;
        process.start(python, {"-c", script, m_target, encoding});
        QVERIFY(process.waitForFinished());
        const QByteArray text = QByteArray::fromStdString(textOf<char>());
        QCOMPARE(process.readAllStandardError(), QByteArray());
        QCOMPARE(process.readAllStandardOutput(), text + "\nplain\n" + text);
    }
};

QTEST_GUILESS_MAIN(tst_ZvBasicXMLSaveFile)
#include "tst_ZvBasicXMLSaveFile.moc"
