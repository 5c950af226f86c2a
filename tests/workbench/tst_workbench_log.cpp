// The panel with the log.

#include "common/style_options.h"
#include "log/LogModel.h"
#include "log/LogPanel.h"

#include <zv_logging/host.h>
#include <zv_logging/zv_logging.h>

#include "support/BuiltInStyles.h"
#include "support/FileTree.h"
#include "support/StyleHost.h"
#include "support/Workbench.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

#include <string>
#include <thread>
#include <vector>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using namespace workbench;
using zvtest::longWait;
namespace logging = zvutil::logging;

namespace {

std::vector<logging::host::Record> records(int first, int count)
{
    std::vector<logging::host::Record> result;
    for (int i = first; i < first + count; ++i)
        result.push_back({2, "test", std::to_string(i)});
    return result;
}

/// The panel with names for what a user sees.
class Panel
{
public:
    Panel()
    {
        panel.resize(720, 220);
        panel.show();
        QApplication::setActiveWindow(&panel);
    }

    QTreeView* view() const { return panel.findChild<QTreeView*>("lines"); }
    QComboBox* level() const { return panel.findChild<QComboBox*>("level"); }
    QLineEdit* text() const { return panel.findChild<QLineEdit*>("text"); }
    void click(const QString& name) const { panel.findChild<QToolButton*>(name)->click(); }

    QStringList shown() const
    {
        QStringList lines;
        const QAbstractItemModel& model = *view()->model();
        for (int row = 0; row < model.rowCount(); ++row)
            lines.append(model.index(row, LogModel::TextColumn).data().toString());
        return lines;
    }

    LogPanel panel;
};

} // namespace

class tst_workbench_log : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { logging::host::reset(); }

    void linesMakeAModel()
    {
        LogModel model(nullptr);
        const QAbstractItemModelTester tester(
            &model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.append({});
        QCOMPARE(model.rowCount(), 0);
        model.append(records(0, 10));
        model.append(records(10, 2));
        QCOMPARE(model.rowCount(), 12);
        model.recolour();
        model.clear();
        QCOMPARE(model.rowCount(), 0);
    }

    void linesAreBounded()
    {
        LogModel model(nullptr);
        const auto text = [&model](int row) {
            return model.index(row, LogModel::TextColumn).data().toString();
        };
        model.append(records(0, 10));
        model.append(records(10, LogModel::maxLines - 10));
        QCOMPARE(model.rowCount(), LogModel::maxLines);
        QCOMPARE(text(0), QString("0"));
        model.append(records(LogModel::maxLines, 3));
        QCOMPARE(model.rowCount(), LogModel::maxLines);
        QCOMPARE(text(0), QString("3"));
        QCOMPARE(text(LogModel::maxLines - 1), QString::number(LogModel::maxLines + 2));
        model.append(records(0, LogModel::maxLines + 5));
        QCOMPARE(model.rowCount(), LogModel::maxLines);
        QCOMPARE(text(0), QString("5"));
    }

    void showsWhatIsLogged()
    {
        add_sink(2);
        logging::write(2, "Start", "before the panel");
        const Panel panel;
        QCOMPARE(panel.shown(), QStringList{"before the panel"});
        QCOMPARE(panel.panel.getPreferredDockLocation(), DockLocationPreference::Bottom);
        QCOMPARE(panel.panel.shortTitle(), QString("Log"));
        QVERIFY(panel.panel.isSystemWidget());
        std::thread([] { logging::write(4, "Other", "two\nlines ü"); }).join();
        QTRY_COMPARE_WITH_TIMEOUT(panel.shown(), (QStringList{"before the panel", "two lines ü"}),
                                  longWait);
        const QModelIndex second = panel.view()->model()->index(1, 0);
        QCOMPARE(second.data().toString(), QString("Error"));
        QCOMPARE(second.siblingAtColumn(1).data().toString(), QString("Other"));
        QCOMPARE(second.siblingAtColumn(2).data(Qt::ToolTipRole).toString(),
                 QString("two\nlines ü"));
        logging::write(2, "Other", "<b>bold</b>");
        QTRY_COMPARE_WITH_TIMEOUT(panel.shown().size(), 3, longWait);
        const QModelIndex third = panel.view()->model()->index(2, 2);
        QVERIFY(third.data(Qt::ToolTipRole).toString().contains("&lt;b&gt;bold"));
    }

    void looksOnlyWhileItIsVisible()
    {
        Panel panel;
        panel.panel.hide();
        logging::write(2, "Test", "meanwhile");
        QTest::qWait(400);
        QVERIFY(panel.shown().isEmpty());
        panel.panel.show();
        QCOMPARE(panel.shown(), QStringList{"meanwhile"});
    }

    void filters()
    {
        const Panel panel;
        set_log_level(2, 0);
        logging::write(0, "Test", "trace");
        logging::write(2, "Test", "information");
        logging::write(3, "Test", "warning");
        logging::write(4, "Disk", "error");
        logging::write(5, "Disk", "critical");
        QTRY_COMPARE_WITH_TIMEOUT(panel.shown().size(), 5, longWait);
        const QList<int> counts = {5, 4, 3, 2};
        for (int i = 0; i < counts.size(); ++i) {
            panel.level()->setCurrentIndex(i);
            QCOMPARE(panel.shown().size(), counts[i]);
        }
        QTest::keyClicks(panel.text(), "CRIT");
        QCOMPARE(panel.shown(), QStringList{"critical"});
        panel.text()->setText("disk");
        QCOMPARE(panel.shown(), (QStringList{"error", "critical"}));
        logging::write(4, "Disk", "another");
        logging::write(4, "Test", "not this");
        logging::write(3, "Disk", "nor this");
        QTRY_COMPARE_WITH_TIMEOUT(panel.shown(), (QStringList{"error", "critical", "another"}),
                                  longWait);
        panel.text()->clear();
        panel.level()->setCurrentIndex(0);
        QCOMPARE(panel.shown().size(), 8);
    }

    void clearsAndCopies()
    {
        Panel panel;
        logging::write(2, "A", "one");
        logging::write(3, "B", "two\nhalves");
        QTRY_COMPARE_WITH_TIMEOUT(panel.shown().size(), 2, longWait);
        panel.click("copy");
        QCOMPARE(QApplication::clipboard()->text(),
                 QString("Info\tA\tone\nWarning\tB\ttwo\nhalves\n"));
        QVERIFY(zvtest::activate(panel.panel));
        panel.view()->setFocus();
        panel.view()->setCurrentIndex(panel.view()->model()->index(1, 0));
        QTest::keySequence(panel.view(), QKeySequence::Copy);
        QCOMPARE(QApplication::clipboard()->text(), QString("Warning\tB\ttwo\nhalves\n"));
        panel.click("clear");
        QVERIFY(panel.shown().isEmpty());
        logging::write(2, "A", "three");
        QTRY_COMPARE_WITH_TIMEOUT(panel.shown(), QStringList{"three"}, longWait);
        QCOMPARE(logging::host::records().size(), std::size_t(3));
    }

    void followsTheEndUnlessScrolledUp()
    {
        const Panel panel;
        const auto log = [](int count) {
            for (int i = 0; i < count; ++i)
                logging::write(2, "Test", "line");
        };
        const QScrollBar& bar = *panel.view()->verticalScrollBar();
        log(100);
        QTRY_COMPARE_WITH_TIMEOUT(panel.shown().size(), 100, longWait);
        QTRY_VERIFY_WITH_TIMEOUT(bar.maximum() > 0, longWait);
        QCOMPARE(bar.value(), bar.maximum());
        log(100);
        QTRY_COMPARE_WITH_TIMEOUT(panel.shown().size(), 200, longWait);
        QCOMPARE(bar.value(), bar.maximum());
        panel.view()->verticalScrollBar()->setValue(5);
        log(100);
        QTRY_COMPARE_WITH_TIMEOUT(panel.shown().size(), 300, longWait);
        QCOMPARE(bar.value(), 5);
    }

    void pictures_data() { zvtest::addStyleRows(); }

    void pictures()
    {
        QFETCH(QString, style);
        Panel panel;
        set_log_level(2, 0);
        logging::write(1, "FileView", "Start invoked, already running: false");
        logging::write(2, "Workbench", "The session has been restored.");
        logging::write(3, "Workbench", "“bridge.testplan” has changed outside.");
        logging::write(4, "Workbench",
                       "Test plan “C:\\plans\\bridge.testplan” was not saved. The disk is full.");
        QTRY_COMPARE_WITH_TIMEOUT(panel.shown().size(), 4, longWait);
        zvtest::showStyle(style);
        const auto colour = [&panel](int row) {
            return panel.view()->model()->index(row, 0).data(Qt::ForegroundRole).value<QColor>();
        };
        const ZvStyle& current = ZvStyle::Current();
        QCOMPARE(colour(0), pageTextColour(current.colour(ZvStyleBrush::TextDisabled)));
        QCOMPARE(colour(1), current.colour(ZvStyleBrush::TextEnabled).qColour());
        QCOMPARE(colour(2), pageTextColour(current.editorColour("Testplan", "WarningBorder")));
        QCOMPARE(colour(3), pageTextColour(current.editorColour("Testplan", "ErrorBorder")));
        QCOMPARE(panel.text()->palette().color(QPalette::PlaceholderText),
                 pageTextColour(current.colour(ZvStyleBrush::TextDisabled)));
        LogPanel later;
        later.show();
        const auto* const text = later.findChild<QLineEdit*>("text");
        QCOMPARE(text->palette().color(QPalette::PlaceholderText),
                 pageTextColour(current.colour(ZvStyleBrush::TextDisabled)));
        QVERIFY(QDir().mkpath(PICTURES));
        QVERIFY(panel.panel.grab().save(QString(PICTURES "/log-%1.png").arg(style)));
        qApp->setStyleSheet(QString());
    }

private:
    const zvtest::StyleHost m_host;
};

QTEST_MAIN(tst_workbench_log)

#include "tst_workbench_log.moc"
