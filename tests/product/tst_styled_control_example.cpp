// The example of a control that follows the user's style paints in that style's colours.

#include <zvutil/ZvStyle.h>
#include <zvutil/ZvStyleLibrary.h>

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using libzvutil::ZvStyle;
using libzvutil::ZvStyleBrush;

class tst_styled_control_example : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paintsInTheStylesColours_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("Light") << QString("Light");
        QTest::newRow("Dark") << QString("Dark");
    }

    void paintsInTheStylesColours()
    {
        QFETCH(QString, name);
        const QTemporaryDir folder;
        const QString file = folder.filePath("meter.png");
        QCOMPARE(QProcess::execute(LEVEL_METER, {name, "--picture", file}), 0);
        const QImage picture(file);
        QVERIFY(!picture.isNull());
        const libzvutil::ZvStyleLibrary library;
        const ZvStyle& style = library.style(name.toUtf8().constData());
        const int y = picture.height() / 2;
        const int width = picture.width();
        QCOMPARE(picture.pixelColor(0, y).name(),
                 style.colour(ZvStyleBrush::BorderEditorEnabled).qColour().name());
        QCOMPARE(picture.pixelColor(width / 2, y).name(),
                 style.colour(ZvStyleBrush::Accent).qColour().name());
        QCOMPARE(picture.pixelColor(width * 92 / 100, y).name(),
                 style.editorColour("Testplan", "ErrorBackground").name());
        QCOMPARE(picture.pixelColor(width * 98 / 100, y).name(),
                 style.colour(ZvStyleBrush::EditorEnabled).qColour().name());
    }

    void anUnknownStyleIsTold()
    {
        QProcess process;
        process.start(LEVEL_METER, {"None"});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        QVERIFY(process.readAllStandardError().contains("Style not found: None"));
    }
};

QTEST_GUILESS_MAIN(tst_styled_control_example)

#include "tst_styled_control_example.moc"
