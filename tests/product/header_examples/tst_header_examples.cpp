// The examples in the comments of the public headers do what they say.

#include <header_examples.inc>

#include <zvutil/ZvException.h>
#include <zvutil/ZvProcessingIndicator.h>

#include "support/EventLoop.h"
#include "support/StyleHost.h"

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QListView>
#include <QProcess>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <QWidget>

#include <map>
#include <string>
#include <type_traits>

namespace {

using Settings = std::map<std::string, std::string>;

/// A document whose only element has what the example writes.
class Siblings : public ZvBasicXMLSaveFile<char>
{
public:
    using ZvBasicXMLSaveFile::ZvBasicXMLSaveFile;

    bool save()
    {
        const auto root = writer().root_element("root");
        experimental_xml_basic_abstract_xml_element_writer_example::writeSiblings(*root);
        return true;
    }
};

/// Counts how often a model asks for the number of its rows.
class AskedModel : public QStandardItemModel
{
public:
    using QStandardItemModel::QStandardItemModel;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override
    {
        ++asked;
        return QStandardItemModel::rowCount(parent);
    }

    mutable int asked = 0;
};

} // namespace

class tst_header_examples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_styleHost.isValid());
        QVERIFY(m_directory.isValid());
    }

    void requestRunsInTheBackground_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<int>("status");
        QTest::newRow("file") << QStringLiteral("lines.txt") << QByteArray("3 lines") << 0;
        QTest::newRow("no file") << QStringLiteral("missing.txt") << QByteArray("failed: ") << 1;
    }

    void requestRunsInTheBackground()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, output);
        QFETCH(int, status);
        write("lines.txt", "a\nb\nc\n");
        QProcess program;
        program.start(QStringLiteral(PROGRAM_FILE), {m_directory.filePath(name)});
        QVERIFY(program.waitForFinished(60'000));
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), status);
        const QByteArray printed = program.readAllStandardOutput();
        QVERIFY2(printed.startsWith(output), printed);
    }

    void modelIsTested()
    {
        AskedModel model;
        ModelTest_example::keepTesting(&model);
        QVERIFY(model.asked > 0);
        model.asked = 0;
        model.appendRow(new QStandardItem);
        QVERIFY(model.asked > 0);
        QCOMPARE(model.findChildren<ModelTest*>().size(), 1);
    }

    void processRunsInSteps()
    {
        QLabel label;
        ZvAbstractIterativeProcess_example::Summation summation({0.5, 1, 2});
        ZvAbstractIterativeProcess_example::showSum(summation, &label);
        QCOMPARE(label.text(), QString());
        QTRY_COMPARE(label.text(), QStringLiteral("3.5"));
    }

    void xmlIsSaved()
    {
        save("saved.xml", {{"colour", "<red>"}, {"size", "7"}});
        QCOMPARE(contents("saved.xml"),
                 QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?><settings>"
                            "<setting name=\"colour\">&lt;red&gt;</setting>"
                            "<setting name=\"size\">7</setting></settings>"));
        ZvBasicXMLSaveFile_example::SettingsWriter impossible(pathOf("missing/saved.xml"));
        QVERIFY(!impossible.save({}));
    }

    void branchIsShown()
    {
        QStandardItemModel tree;
        auto* const root = new QStandardItem;
        root->appendRow(new QStandardItem(QStringLiteral("child")));
        tree.appendRow(root);
        QTreeView view;
        ZvChildProxyModel_example::showBranch(root->index(), &view);
        const QAbstractItemModel& shown = *view.model();
        QCOMPARE(shown.rowCount(QModelIndex()), 1);
        QCOMPARE(shown.index(0, 0, QModelIndex()).data().toString(), QStringLiteral("child"));
    }

    void tableIsCopiedAndPasted()
    {
        const QStringList names = {QStringLiteral("R1"), QStringLiteral("C2")};
        ZvClipboard_example::copyColumn(names);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("R1\nC2"));
        QCOMPARE(ZvClipboard_example::pasteFirstColumn(), names);
        QGuiApplication::clipboard()->setText(QStringLiteral("R3"));
        QCOMPARE(ZvClipboard_example::pasteFirstColumn(), QStringList());
    }

    void documentIsSaved()
    {
        ZvContentWidget_example::TestPlanWindow window(QStringLiteral("window"), nullptr);
        window.text = QStringLiteral("contents");
        window.setModified(true);
        QSignalSpy saved(&window, &ZvContentWidget::saved);
        window.saveAs(pathOf("missing/noise.testplan"));
        QCOMPARE(saved.count(), 0);
        QVERIFY(window.isModified());
        window.saveAs(pathOf("noise.testplan"));
        QCOMPARE(saved.count(), 1);
        QVERIFY(!window.isModified());
        QCOMPARE(contents("noise.testplan"), QByteArray("contents"));
        QCOMPARE(window.filename(), pathOf("noise.testplan"));
    }

    void pathsHaveParts() { ZvFilePath_example::run(); }

    void filesAreListed()
    {
        QVERIFY(QDir(m_directory.path()).mkpath(QStringLiteral("tree")));
        for (const char* const name : {"tree/a.txt", "tree/b.txt", "tree/c.zvsch", "tree/d.zvsch"})
            write(name, "");
        QListView view;
        ZvMultiDirectoryListModel_example::listSchematics(pathOf("tree"), &view);
        auto& model = dynamic_cast<ZvMultiDirectoryListModel&>(*view.model());
        QTRY_VERIFY(model.rowCount(QModelIndex()) > 0);
        for (int row = 0; row < model.rowCount(QModelIndex()); ++row)
            QVERIFY(model.index(row).data().toString().endsWith(QLatin1String(".zvsch")));
    }

    void searchFollowsTheText()
    {
        QWidget window;
        auto* const bar = new ZvSearchBar(&window);
        auto* const spinner = bar->findChild<ZvProcessingIndicator*>();
        window.show();
        ZvAbstractIterativeProcess_example::Summation search({1, 2});
        ZvSearchBar_example::connectSearch(bar, &search);
        bool wasVisible = false;
        connect(&search, &ZvAbstractIterativeProcess::started, spinner,
                [&] { wasVisible = spinner->isVisible(); });
        bar->setText(QStringLiteral("needle"));
        QTRY_COMPARE(search.sum, 3.0);
        QTRY_VERIFY(!spinner->isVisible());
        QVERIFY(wasVisible);
    }

    void styleIsUsedAndFollowed()
    {
        using libzvutil::ZvStyleManager;
        QWidget plot;
        ZvStyleManager_example::followStyle(&plot);
        ZvStyleManager_example::useStyle(QStringLiteral("Dark"));
        QCOMPARE(ZvStyleManager::CurrentStyle().name().toQString(), QStringLiteral("Dark"));
        const QColor panel = ZvStyleManager::Style(QStringLiteral("Dark"))
                                 .colour(libzvutil::ZvStyleBrush::Panel)
                                 .qColour();
        QVERIFY(qApp->styleSheet().contains(panel.name(QColor::HexArgb)));
        QCOMPARE(plot.palette().color(QPalette::Button), panel);
        QVERIFY_EXCEPTION_THROWN(ZvStyleManager_example::useStyle(QStringLiteral("No such style")),
                                 zvutil::ZvException);
        qApp->setStyleSheet(QString());
    }

    void xmlIsRead()
    {
        const Settings settings = {{"colour", "<red>"}, {"size", "7"}};
        save("settings.xml", settings);
        QCOMPARE(ZvXMLReadFile_example::SettingsReader(pathOf("settings.xml")).read(), settings);
        QCOMPARE(ZvXMLReadFile_example::SettingsReader(pathOf("missing.xml")).read(), Settings());
        write("other.xml", "<other><setting name='a'/></other>");
        QCOMPARE(ZvXMLReadFile_example::SettingsReader(pathOf("other.xml")).read(), Settings());
    }

    void implementationIsHidden()
    {
        basic_pimpl_example::Counter counter;
        QCOMPARE(counter.next(), 1);
        QCOMPARE(counter.next(), 2);
        static_assert(!std::is_copy_constructible_v<basic_pimpl_example::Counter>);
    }

    void siblingsAreWritten()
    {
        Siblings file(pathOf("siblings.xml"));
        file.save();
        QVERIFY(file.commit());
        QCOMPARE(contents("siblings.xml"),
                 QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?><root><a/><b/></root>"));
    }

    void workerStops() { stop_source_example::run(); }

private:
    QString nameOf(const char* name) const
    {
        return m_directory.filePath(QString::fromLatin1(name));
    }

    zvutil::ZvFilePath pathOf(const char* name) const
    {
        return zvutil::ZvFilePath(nameOf(name).toStdWString());
    }

    void write(const char* name, const QByteArray& bytes) const
    {
        QFile file(nameOf(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), qint64(bytes.size()));
    }

    QByteArray contents(const char* name) const
    {
        QFile file(nameOf(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("can't be read");
    }

    void save(const char* name, const Settings& settings) const
    {
        ZvBasicXMLSaveFile_example::SettingsWriter file(pathOf(name));
        QVERIFY(file.save(settings));
    }

    zvtest::StyleHost m_styleHost;
    QTemporaryDir m_directory;
};

QTEST_MAIN(tst_header_examples)

#include "tst_header_examples.moc"
