// What the widgets and the document windows look like in the built-in styles: as pictures for people, and
// where a program can tell.

#include <zvutil/ZvContentWidget.h>
#include <zvutil/ZvProcessingIndicator.h>
#include <zvutil/ZvProgressLineEdit.h>
#include <zvutil/ZvResponsiveImage.h>
#include <zvutil/ZvSearchBar.h>
#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>

#include "support/StyleHost.h"

#include <DockFramework/DockFrame.h>
#include <DockFramework/DockableWidget.h>

#include <QApplication>
#include <QFormLayout>
#include <QImage>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSet>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

#include <memory>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;
using libzvutil::ZvStyleLibrary;

namespace {

class Document : public ZvContentWidget
{
public:
    explicit Document(const QString& name)
        : ZvContentWidget(name, nullptr)
    {
        auto* const text = new QPlainTextEdit("Wire 1 from A to B");
        auto* const layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(text);
        setFocusProxy(text);
    }

    int fileType() const override { return 1; }
    QString documentTypeName() const override { return "Schematic"; }
    QString closeEventText(int /*index*/) const override { return QString(); }
    void writeFile(const zvutil::ZvFilePath& /*path*/) const override { }
};

/// A panel with all small widgets at work.
class Widgets : public DockableWidgetContents
{
public:
    Widgets()
        : DockableWidgetContents(QString("Widgets"), nullptr)
        , search(new ZvSearchBar(QString("needle"), nullptr))
        , progress(new ZvProgressLineEdit(QString("C:\\Plans\\bridge.zvsch"), nullptr))
        , spinner(new ZvProcessingIndicator)
    {
        auto* const form = new QFormLayout;
        form->addRow(QString("Idle"), new ZvSearchBar);
        form->addRow(QString("Searching"), search);
        form->addRow(QString("40 %"), progress);
        auto* const layout = new QVBoxLayout(this);
        layout->addLayout(form);
        layout->addWidget(spinner);
        layout->addWidget(new ZvResponsiveImage(wheel(), nullptr));
        layout->addStretch();
        spinner->setFixedHeight(80);
        search->searchStarted();
    }

    DockLocationPreference getPreferredDockLocation() const override
    {
        return DockLocationPreference::Left;
    }

    ZvSearchBar* search;
    ZvProgressLineEdit* progress;
    ZvProcessingIndicator* spinner;

private:
    static QPixmap wheel()
    {
        QPixmap pixmap(600, 200);
        pixmap.fill(Qt::white);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        for (int i = 0; i < 9; ++i) {
            painter.setBrush(QColor::fromHsv(i * 40, 200, 220));
            painter.drawEllipse(QPoint(60 + i * 60, 100), 50, 90 - i * 8);
        }
        return pixmap;
    }
};

QSet<QRgb> coloursOf(const QImage& image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y));
    }
    return colours;
}

} // namespace

class tst_widgets_look : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pictures_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::newRow("Light") << "Light" << Qt::LeftToRight;
        QTest::newRow("Dark") << "Dark" << Qt::LeftToRight;
        QTest::newRow("Light, right to left") << "Light" << Qt::RightToLeft;
        QTest::newRow("Dark, right to left") << "Dark" << Qt::RightToLeft;
    }

    void pictures()
    {
        QFETCH(QString, style);
        QFETCH(Qt::LayoutDirection, direction);
        const zvtest::StyleHost host;
        const ZvStyle shown = ZvStyleLibrary().style(style.toUtf8().constData());
        QVERIFY(shown.apply());
        QApplication::setLayoutDirection(direction);

        DockFrame frame;
        frame.resize(900, 600);
        auto* const plain = frame.addContents(new Document("bridge.zvsch"));
        auto* const widgets = new Widgets;
        frame.addContents(widgets);
        auto* const document = frame.addContents(new Document("tower.zvsch"));
        document->contents()->setModified(true);
        frame.show();
        widgets->progress->setProgressMaximum(100);
        widgets->progress->setProgressValue(40);
        frame.activate(document);
        QCoreApplication::processEvents();

        QVERIFY(QDir().mkpath(PICTURES));
        const double ratio = frame.devicePixelRatioF();
        const QPixmap picture = frame.grab();
        QVERIFY(picture.save(QString(PICTURES "/widgets-%1%2%3.png")
                                 .arg(style)
                                 .arg(direction == Qt::RightToLeft ? QString("-rtl") : QString())
                                 .arg(ratio > 1 ? QString("-%1x").arg(ratio) : QString())));

        const auto* const label = document->findChild<QLabel*>("TitleBarLabel");
        QCOMPARE(label->palette().color(label->foregroundRole()).rgb(),
                 shown.colour(ZvStyleBrush::AccentD1).qColour().rgb());
        const auto* const other = plain->findChild<QLabel*>("TitleBarLabel");
        QCOMPARE(other->palette().color(other->foregroundRole()).rgb(),
                 shown.colour(ZvStyleBrush::TextEnabled).qColour().rgb());
        for (QToolButton* const button : document->findChildren<QToolButton*>()) {
            if (button->objectName().startsWith("toolButton_DockWidget"))
                QVERIFY(coloursOf(button->grab().toImage()).size() > 3);
        }
        const QRect field = widgets->search->rect();
        const QRect spinner = widgets->search->findChild<ZvProcessingIndicator*>()->geometry();
        QCOMPARE(spinner.center().x() > field.center().x(), direction == Qt::LeftToRight);
        QApplication::setLayoutDirection(Qt::LeftToRight);
        qApp->setStyleSheet(QString());
    }
};

QTEST_MAIN(tst_widgets_look)

#include "tst_widgets_look.moc"
