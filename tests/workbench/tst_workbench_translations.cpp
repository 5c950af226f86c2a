// The English catalogue: each text that counts something has its singular there.

#include "common/translations.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

namespace {

/// A call of `tr` with a number, in the sources.
struct Plural
{
    QString context;
    QString text;
};

QList<Plural> pluralsOf(const QString& file)
{
    QFile source(file);
    if (!source.open(QIODevice::ReadOnly))
        return {};
    const QRegularExpression call(
        "(?:(\\w+)::)?\\btr\\(((?:\\s*\"(?:[^\"\\\\]|\\\\.)*\")+),\\s*nullptr,");
    QList<Plural> plurals;
    auto found = call.globalMatch(QString::fromUtf8(source.readAll()));
    while (found.hasNext()) {
        const QRegularExpressionMatch match = found.next();
        const QString name =
            match.captured(1).isEmpty() ? QFileInfo(file).baseName() : match.captured(1);
        QString text;
        for (const QString& piece : match.captured(2).split('"'))
            text += piece.trimmed().isEmpty() ? QString() : piece;
        plurals.append({"workbench::" + name, text});
    }
    return plurals;
}

} // namespace

class tst_workbench_translations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { workbench::installTranslations(); }

    void pluralsAreInTheCatalogue_data()
    {
        QTest::addColumn<QString>("context");
        QTest::addColumn<QString>("text");
        QDirIterator files(SOURCES, {"*.cpp"}, QDir::Files, QDirIterator::Subdirectories);
        int count = 0;
        while (files.hasNext()) {
            for (const Plural& plural : pluralsOf(files.next())) {
                QTest::addRow("%d %s", ++count, qPrintable(plural.text))
                    << plural.context << plural.text;
            }
        }
        QVERIFY(count >= 8);
    }

    void pluralsAreInTheCatalogue()
    {
        QFETCH(QString, context);
        QFETCH(QString, text);
        const auto translated = [&](int number) {
            return QCoreApplication::translate(context.toUtf8(), text.toUtf8(), nullptr, number);
        };
        const auto plain = [&](int number) {
            return QString(text).replace("%n", QString::number(number));
        };
        QCOMPARE(translated(2), plain(2));
        QCOMPARE(translated(0), plain(0));
        QString singular = plain(1);
        for (const char* const noun : {"document", "file", "folder", "line", "row"})
            singular.replace(QString(noun) + 's', noun);
        singular.replace("matches", "match");
        singular.replace(" are ", " is ");
        QVERIFY(singular != plain(1));
        QCOMPARE(translated(1), singular);
    }

    void installingTwiceDoesNothing()
    {
        const auto text = [] {
            return QCoreApplication::translate("workbench::FilesPanel", "%1 files", nullptr, 1);
        };
        QCOMPARE(text(), QString("%1 file"));
        workbench::installTranslations();
        QCOMPARE(text(), QString("%1 file"));
    }
};

QTEST_GUILESS_MAIN(tst_workbench_translations)
#include "tst_workbench_translations.moc"
