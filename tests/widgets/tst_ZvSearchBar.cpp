#include <zvutil/ZvProcessingIndicator.h>
#include <zvutil/ZvSearchBar.h>

#include <QMetaMethod>
#include <QTest>
#include <QVBoxLayout>
#include <QWidgetAction>

#include <type_traits>

namespace {

/// A bar that is shown, along with its spinner.
struct Shown
{
    explicit Shown(ZvSearchBar* widget = new ZvSearchBar)
        : bar(widget)
        , spinner(bar->findChild<ZvProcessingIndicator*>())
    {
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(bar);
        window.resize(300, 60);
        window.show();
    }

    QWidget window;
    ZvSearchBar* bar;
    ZvProcessingIndicator* spinner;
};

} // namespace

class tst_ZvSearchBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shape()
    {
        static_assert(std::is_base_of_v<QLineEdit, ZvSearchBar>);
        static_assert(!std::is_convertible_v<QWidget*, ZvSearchBar>);
        const QMetaObject& meta = ZvSearchBar::staticMetaObject;
        QCOMPARE(meta.className(), "ZvSearchBar");
        QCOMPARE(meta.methodOffset(), meta.methodCount());
        QCOMPARE(meta.propertyOffset(), meta.propertyCount());
    }

    void newBar_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("without text") << QString();
        QTest::newRow("with text") << "needle";
    }

    void newBar()
    {
        QFETCH(QString, text);
        QWidget parent;
        auto* const bar =
            text.isEmpty() ? new ZvSearchBar(&parent) : new ZvSearchBar(text, &parent);
        QCOMPARE(bar->parentWidget(), &parent);
        QCOMPARE(bar->text(), text);
        QCOMPARE(bar->placeholderText(), QString("Search"));
        QCOMPARE(bar->findChildren<ZvProcessingIndicator*>().size(), 1);
        parent.show();
        const Shown shown(text.isEmpty() ? new ZvSearchBar : new ZvSearchBar(text, nullptr));
        QVERIFY(shown.bar->isVisible());
        QVERIFY(!shown.spinner->isVisible());
    }

    void actionIsAChildWithTwoSignals()
    {
        const ZvSearchBar bar;
        const auto actions = bar.findChildren<QWidgetAction*>();
        QCOMPARE(actions.size(), 1);
        QCOMPARE(actions.constFirst()->parent(), &bar);
        QCOMPARE(bar.actions(), (QList<QAction*>{actions.constFirst()}));
        const QMetaObject* const meta = actions.constFirst()->metaObject();
        QCOMPARE(meta->className(), "ZvSearchBarProcessingAction");
        QCOMPARE(meta->methodCount() - meta->methodOffset(), 2);
        const QMetaMethod started = meta->method(meta->methodOffset());
        QCOMPARE(started.methodSignature(), QByteArray("searchStarted()"));
        QCOMPARE(started.methodType(), QMetaMethod::Signal);
        const QMetaMethod stopped = meta->method(meta->methodOffset() + 1);
        QCOMPARE(stopped.methodSignature(), QByteArray("searchStopped()"));
        QCOMPARE(stopped.methodType(), QMetaMethod::Signal);
    }

    void searchesAreNotCounted_data()
    {
        QTest::addColumn<QString>("calls");
        QTest::addColumn<bool>("visible");
        QTest::newRow("start") << "+" << true;
        QTest::newRow("start twice") << "++" << true;
        QTest::newRow("stop first") << "-" << false;
        QTest::newRow("start, stop") << "+-" << false;
        QTest::newRow("two starts, one stop") << "++-" << false;
        QTest::newRow("two stops, one start") << "--+" << true;
        QTest::newRow("once more") << "+-+" << true;
    }

    void searchesAreNotCounted()
    {
        QFETCH(QString, calls);
        QFETCH(bool, visible);
        const Shown shown;
        for (const QChar call : calls) {
            if (call == QLatin1Char('+'))
                shown.bar->searchStarted();
            else
                shown.bar->searchStopped();
        }
        QCOMPARE(shown.spinner->isVisible(), visible);
    }

    void operationsConnectByAddress()
    {
        const Shown shown;
        QObject search;
        connect(&search, &QObject::objectNameChanged, shown.bar, &ZvSearchBar::searchStarted);
        search.setObjectName("x");
        QVERIFY(shown.spinner->isVisible());
    }

    void textNeitherStartsNorStops()
    {
        const Shown shown;
        QTest::keyClicks(shown.bar, "abc");
        QCOMPARE(shown.bar->text(), QString("abc"));
        QVERIFY(!shown.spinner->isVisible());
        shown.bar->searchStarted();
        QTest::keyClicks(shown.bar, "def");
        QVERIFY(shown.spinner->isVisible());
        shown.bar->clear();
        QVERIFY(shown.spinner->isVisible());
        shown.bar->searchStopped();
        shown.bar->setText("x");
        shown.bar->clear();
        QVERIFY(!shown.spinner->isVisible());
    }

    void spinnerSitsAtTheTrailingEnd_data()
    {
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("left to right") << Qt::LeftToRight;
        QTest::newRow("right to left") << Qt::RightToLeft;
    }

    void spinnerSitsAtTheTrailingEnd()
    {
        QFETCH(Qt::LayoutDirection, direction);
        Shown shown;
        shown.window.setLayoutDirection(direction);
        shown.bar->searchStarted();
        QCoreApplication::processEvents();
        const QRect room = shown.bar->rect();
        const QRect spinner = shown.spinner->geometry();
        QVERIFY(room.contains(spinner));
        if (direction == Qt::LeftToRight)
            QVERIFY(spinner.left() > room.width() * 3 / 4);
        else
            QVERIFY(spinner.right() < room.width() / 4);
        QVERIFY(spinner.width() >= 16 && spinner.height() >= 16);
    }
};

QTEST_MAIN(tst_ZvSearchBar)

#include "tst_ZvSearchBar.moc"
