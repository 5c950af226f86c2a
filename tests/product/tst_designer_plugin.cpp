// The Qt Designer plugin, as Qt Designer and programs that load forms use it.

#include <zvutil/ZvProcessingIndicator.h>
#include <zvutil/ZvProgressLineEdit.h>
#include <zvutil/ZvResponsiveImage.h>
#include <zvutil/ZvSearchBar.h>

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QFormBuilder>
#include <QIcon>
#include <QImage>
#include <QPluginLoader>
#include <QRegularExpression>
#include <QSize>
#include <QTest>
#include <QUiLoader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>

#include <memory>

namespace {

constexpr char form[] = R"(<ui version="4.0"><class>Form</class>
<widget class="QWidget" name="Form"><layout class="QVBoxLayout" name="layout">
<item><widget class="ZvProcessingIndicator" name="spinner"/></item>
<item><widget class="ZvProgressLineEdit" name="progress">
<property name="text"><string>text</string></property></widget></item>
<item><widget class="ZvResponsiveImage" name="image"/></item>
<item><widget class="ZvSearchBar" name="search"/></item>
</layout></widget></ui>)";

/// Returns the classes of the widgets in \p xml, in their order.
QStringList classNames(const QByteArray& xml)
{
    const QRegularExpression expression("<widget class=\"([^\"]*)\"");
    QStringList names;
    QRegularExpressionMatchIterator matches = expression.globalMatch(QString::fromUtf8(xml));
    while (matches.hasNext())
        names.append(matches.next().captured(1));
    return names;
}

} // namespace

class tst_designer_plugin : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_loader.setFileName(PLUGIN_FILE);
        m_collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(m_loader.instance());
        QVERIFY2(m_collection, qPrintable(m_loader.errorString()));
    }

    void offersTheSmallWidgets_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("ZvProcessingIndicator") << 0;
        QTest::newRow("ZvProgressLineEdit") << 1;
        QTest::newRow("ZvResponsiveImage") << 2;
        QTest::newRow("ZvSearchBar") << 3;
    }

    void offersTheSmallWidgets()
    {
        QFETCH(int, index);
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        const auto widgets = m_collection->customWidgets();
        QCOMPARE(widgets.size(), 4);
        QDesignerCustomWidgetInterface* const offered = widgets.at(index);
        QCOMPARE(offered->name(), name);
        QCOMPARE(offered->includeFile(), QString("zvutil/%1.h").arg(name));
        QVERIFY(!offered->toolTip().isEmpty());
        QVERIFY(!offered->whatsThis().isEmpty());
        QVERIFY(!offered->group().isEmpty());
        QVERIFY(!offered->isContainer());
        QVERIFY(offered->icon().availableSizes().contains(QSize(22, 22)));
        const QImage icon = offered->icon().pixmap(22, 22).toImage();
        QVERIFY(!icon.isNull());
        bool isEmpty = true;
        for (int y = 0; y < icon.height(); ++y) {
            for (int x = 0; x < icon.width(); ++x)
                isEmpty = isEmpty && qAlpha(icon.pixel(x, y)) == 0;
        }
        QVERIFY(!isEmpty);
        QVERIFY(offered->domXml().contains(QString("class=\"%1\"").arg(name)));
    }

    void makesWhatItOffers()
    {
        QWidget parent;
        const auto widgets = m_collection->customWidgets();
        QVERIFY(dynamic_cast<ZvProcessingIndicator*>(widgets.at(0)->createWidget(&parent)));
        QVERIFY(dynamic_cast<ZvProgressLineEdit*>(widgets.at(1)->createWidget(&parent)));
        QVERIFY(dynamic_cast<ZvResponsiveImage*>(widgets.at(2)->createWidget(&parent)));
        QVERIFY(dynamic_cast<ZvSearchBar*>(widgets.at(3)->createWidget(&parent)));
        QCOMPARE(parent.children().size(), 4);
    }

    void formsLoad()
    {
        QUiLoader loader;
        loader.setWorkingDirectory(QDir::temp());
        loader.clearPluginPaths();
        loader.addPluginPath(QFileInfo(PLUGIN_FILE).path());
        QBuffer buffer;
        buffer.setData(form);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        const std::unique_ptr<QWidget> window(loader.load(&buffer));
        QVERIFY2(window, qPrintable(loader.errorString()));
        QVERIFY(window->findChild<ZvProcessingIndicator*>("spinner"));
        QVERIFY(window->findChild<ZvResponsiveImage*>("image"));
        QVERIFY(window->findChild<ZvSearchBar*>("search"));
        auto* const progress =
            dynamic_cast<ZvProgressLineEdit*>(window->findChild<QLineEdit*>("progress"));
        QVERIFY(progress);
        QCOMPARE(progress->text(), QString("text"));
    }

    void namesTheClassesOfItsWidgets()
    {
        QWidget parent;
        for (QDesignerCustomWidgetInterface* const offered : m_collection->customWidgets())
            QCOMPARE(QString(offered->createWidget(&parent)->metaObject()->className()),
                     offered->name());
        const QWidget* const progress = m_collection->customWidgets().at(1)->createWidget(&parent);
        QCOMPARE(progress->metaObject()->superClass(), &QLineEdit::staticMetaObject);
        QCOMPARE(progress->metaObject()->propertyCount(),
                 QLineEdit::staticMetaObject.propertyCount());
        QCOMPARE(progress->metaObject()->methodCount(), QLineEdit::staticMetaObject.methodCount());
    }

    void designerSavesWhatItHasLoaded()
    {
        QFormBuilder builder;
        builder.setPluginPath({QFileInfo(PLUGIN_FILE).path()});
        QBuffer loaded;
        loaded.setData(form);
        QVERIFY(loaded.open(QIODevice::ReadOnly));
        const std::unique_ptr<QWidget> window(builder.load(&loaded, nullptr));
        QVERIFY2(window, qPrintable(builder.errorString()));
        QBuffer saved;
        QVERIFY(saved.open(QIODevice::WriteOnly));
        builder.save(&saved, window.get());
        // The form builder writes the spinner inside the search bar, too; Designer itself doesn't.
        QCOMPARE(classNames(saved.data()), classNames(form) << "ZvProcessingIndicator");
        QCOMPARE(classNames(form).size(), 5);
    }

private:
    QPluginLoader m_loader;
    QDesignerCustomWidgetCollectionInterface* m_collection = nullptr;
};

QTEST_MAIN(tst_designer_plugin)

#include "tst_designer_plugin.moc"
