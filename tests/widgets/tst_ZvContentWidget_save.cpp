// Saving documents, and asking where to.

#include "ContentDocument.h"

#include "support/Files.h"
#include "support/WindowResponder.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

#include <stdexcept>

using zvtest::contentOf;
using zvtest::Document;
using zvtest::pathOf;
using zvtest::textOf;
using zvutil::ZvFilePath;

namespace {

/// Answers the file dialog that opens next, by a file or, without one, by Cancel, and keeps what it
/// showed.
struct DialogAnswer
{
    explicit DialogAnswer(const QString& file)
        : answer([this, file](QFileDialog& dialog) {
            title = dialog.windowTitle();
            filters = dialog.nameFilters();
            parent = dialog.parentWidget();
            if (file.isEmpty()) {
                dialog.reject();
                return;
            }
            dialog.findChild<QLineEdit*>("fileNameEdit")->setText(file);
            QMetaObject::invokeMethod(&dialog, "accept");
        })
    {
    }

    QString title;
    QStringList filters;
    QWidget* parent = nullptr;
    zvtest::WindowResponder<QFileDialog> answer;
};

} // namespace

class tst_ZvContentWidget_save : public zvtest::ContentWidgetTest
{
    Q_OBJECT

private Q_SLOTS:
    void goodSave()
    {
        Document document;
        const QString file = m_dir.filePath("good.zvsch");
        document.setModified(true);
        document.takeNotes();
        document.saveAs(pathOf(file));
        // Those of the document come behind what the library does in the same place.
        QCOMPARE(document.takeNotes(),
                 (QStringList{"changes are ignored", "write " + file, "changes are ignored",
                              "begin " + file, "written", "changes are heeded", "not watched",
                              "not modified", "saved " + file, "ended well " + file,
                              "changes are heeded"}));
        QCOMPARE(contentOf(file), QByteArray("contents"));
        QCOMPARE(document.getFilename(), file);
        QVERIFY(!document.isModified());
        // Now without asking.
        document.text = "more";
        document.setModified(true);
        document.takeNotes();
        QCOMPARE(document.save(), pathOf(file));
        QVERIFY(!document.takeNotes().contains("not watched"));
        QCOMPARE(contentOf(file), QByteArray("more"));
        QVERIFY(!document.isModified());
    }

    void failingWrite()
    {
        Document document;
        const QString before = m_dir.filePath("before.zvsch");
        document.saveAs(pathOf(before));
        document.setModified(true);
        document.takeNotes();
        const QString file = m_dir.filePath("no such folder/x.zvsch");
        document.saveAs(pathOf(file));
        QCOMPARE(document.takeNotes(),
                 (QStringList{"changes are ignored", "write " + file, "changes are ignored",
                              "begin " + file, "written", "changes are heeded",
                              "ended badly " + file, "changes are heeded"}));
        QCOMPARE(document.getFilename(), before);
        QVERIFY(document.isModified());
        // The result is the path that was tried.
        document.setFilename(pathOf(file));
        QCOMPARE(document.save(), pathOf(file));
        QVERIFY(document.isModified());
    }

    void throwingWrite_data()
    {
        QTest::addColumn<bool>("begins");
        QTest::newRow("at once") << false;
        QTest::newRow("behind beginSave") << true;
    }

    void throwingWrite()
    {
        QFETCH(bool, begins);
        Document document;
        const QString file = m_dir.filePath("throwing.zvsch");
        document.write = [begins](const Document& self, const ZvFilePath& path) {
            if (begins)
                self.begin(path);
            throw 42;
        };
        document.setModified(true);
        document.takeNotes();
        bool isCaught = false;
        try {
            document.saveAs(pathOf(file));
        } catch (int number) {
            isCaught = number == 42;
        }
        QVERIFY(isCaught);
        QStringList expected{"changes are ignored", "write " + file};
        if (begins)
            expected << "changes are ignored"
                     << "begin " + file;
        expected << "changes are heeded";
        QCOMPARE(document.takeNotes(), expected);
        QVERIFY(document.filename().isEmpty());
        QVERIFY(document.isModified());
        document.setFilename(pathOf(file));
        QVERIFY_EXCEPTION_THROWN(document.save(), int);
    }

    void writeThatTellsNothing()
    {
        Document document;
        document.write = [](const Document& /*self*/, const ZvFilePath& /*path*/) {};
        document.setModified(true);
        document.takeNotes();
        document.saveAs(pathOf("/x"));
        QCOMPARE(document.takeNotes(),
                 (QStringList{"changes are ignored", "write /x", "changes are heeded"}));
        QVERIFY(document.filename().isEmpty());
        QVERIFY(document.isModified());
    }

    void savedClearsTheMarkAlsoForTheSameName()
    {
        Document document;
        const ZvFilePath path = pathOf("/a/b");
        document.setFilename(path);
        document.setModified(true);
        document.takeNotes();
        document.tellSaved(path);
        QVERIFY(!document.isModified());
        QCOMPARE(document.takeNotes(), (QStringList{"not modified", "saved /a/b"}));
    }

    void emptyPathDoesNothing()
    {
        Document document;
        document.saveAs(ZvFilePath());
        QVERIFY(document.takeNotes().isEmpty());
    }

    void dialogAsksForThePath_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("filter");
        QTest::newRow("schematic") << 1 << "Schematic"
                                   << "Save Schematic as..."
                                   << "Schematics (*.zvsch)";
        QTest::newRow("test plan") << 2 << "Test plan"
                                   << "Save Test plan as..."
                                   << "Test plans (*.testplan)";
        QTest::newRow("plural by an s") << 1 << "Entry"
                                        << "Save Entry as..."
                                        << "Entrys (*.zvsch)";
        // Qt itself shows the filter without needless blanks.
        QTest::newRow("blanks stay") << 1 << " My  type "
                                     << "Save  My  type  as..."
                                     << "My type s (*.zvsch)";
    }

    void dialogAsksForThePath()
    {
        QFETCH(int, type);
        QFETCH(QString, name);
        QFETCH(QString, title);
        QFETCH(QString, filter);
        Document document(type);
        document.typeName = name;
        const QString file = m_dir.filePath("chosen \u00E4.x");
        const DialogAnswer answer(file);
        QCOMPARE(textOf(document.requestSavePath()), file);
        QCOMPARE(answer.answer.count, 1);
        QCOMPARE(answer.title, title);
        QCOMPARE(answer.filters, QStringList{filter});
        QVERIFY(!answer.parent);
    }

    void firstSaveAsks()
    {
        Document document;
        // Without an extension, which nobody adds.
        const QString file = m_dir.filePath("first");
        {
            const DialogAnswer answer(file);
            QCOMPARE(textOf(document.save()), file);
            QCOMPARE(answer.answer.count, 1);
        }
        QCOMPARE(contentOf(file), QByteArray("contents"));
        QCOMPARE(document.getFilename(), file);
        {
            const DialogAnswer answer(file);
            QCOMPARE(textOf(document.save()), file);
            QCOMPARE(answer.answer.count, 0);
        }
        const QString other = m_dir.filePath("other.zvsch");
        const DialogAnswer answer(other);
        QCOMPARE(textOf(document.saveAs()), other);
        QCOMPARE(answer.answer.count, 1);
        QCOMPARE(document.getFilename(), other);
    }

    void cancelledDialogChangesNothing()
    {
        Document document;
        document.setModified(true);
        document.takeNotes();
        {
            const DialogAnswer answer{QString()};
            QVERIFY(document.save().isEmpty());
            QCOMPARE(answer.answer.count, 1);
        }
        {
            const DialogAnswer answer{QString()};
            QVERIFY(document.saveAs().isEmpty());
        }
        QVERIFY(document.takeNotes().isEmpty());
        QVERIFY(document.isModified());
        QVERIFY(document.filename().isEmpty());
    }

    void documentWithoutAFile()
    {
        Document document(0);
        const DialogAnswer answer(m_dir.filePath("x"));
        QVERIFY(document.save().isEmpty());
        QVERIFY(document.saveAs().isEmpty());
        QCOMPARE(answer.answer.count, 0);
        QVERIFY(document.takeNotes().isEmpty());
        // One that has a name all the same is written.
        const QString file = m_dir.filePath("type 0");
        document.setFilename(pathOf(file));
        QCOMPARE(textOf(document.save()), file);
        QCOMPARE(contentOf(file), QByteArray("contents"));
        QVERIFY(document.saveAs().isEmpty());
        QCOMPARE(answer.answer.count, 0);
    }

    void unknownTypeIsAnError()
    {
        const Document document(3);
        QVERIFY_EXCEPTION_THROWN(document.requestSavePath(), std::out_of_range);
        const Document negative(-1);
        QVERIFY_EXCEPTION_THROWN(negative.requestSavePath(), std::out_of_range);
    }

    void subclassMayAskOtherwise()
    {
        class Asking : public Document
        {
        public:
            QString answer;

        protected:
            ZvFilePath requestSavePath() const override { return pathOf(answer); }
        };
        Asking document;
        QVERIFY(document.save().isEmpty());
        document.answer = m_dir.filePath("asked");
        QCOMPARE(textOf(document.save()), document.answer);
        document.answer = m_dir.filePath("asked again");
        QCOMPARE(textOf(document.saveAs()), document.answer);
    }
};

QTEST_MAIN(tst_ZvContentWidget_save)

#include "tst_ZvContentWidget_save.moc"
