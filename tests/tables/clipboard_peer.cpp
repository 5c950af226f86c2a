// Another program on the same clipboard.
//
//     clipboard_peer read                        prints what the library reads there
//     clipboard_peer offer FORMAT TEXT...        offers texts, tells that they are there, and stays
//     clipboard_peer table CELL...               the same with a table of one row

#include <zvutil/ZvClipboard.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QStringList>
#include <QVariant>

#include <cstdio>

#if defined(Q_OS_WIN)
#include <fcntl.h>
#include <io.h>
#endif

namespace {

void read()
{
    const ZvClipboard clipboard;
    std::printf("table %d own %d text %d\n", clipboard.hasTableData(),
                clipboard.hasType(ZvInternalMimeType::table), clipboard.hasText());
    if (clipboard.hasTableData())
        std::printf("%s\n", clipboard.tableData().toCSV().c_str());
    std::printf("--\n%s\n", clipboard.stringData().c_str());
}

void offer(const QStringList& formatsAndTexts)
{
    auto* const data = new QMimeData;
    for (int i = 0; i + 1 < formatsAndTexts.size(); i += 2)
        data->setData(formatsAndTexts[i], formatsAndTexts[i + 1].toUtf8());
    QGuiApplication::clipboard()->setMimeData(data);
}

void offerTable(const QStringList& cells)
{
    ZvTable table(1, static_cast<unsigned>(cells.size()), 0);
    for (int i = 0; i < cells.size(); ++i)
        table.value(0, static_cast<unsigned>(i)) = QVariant(cells[i]);
    ZvClipboard().setData(table);
}

} // namespace

int main(int argc, char* argv[])
{
#if defined(Q_OS_WIN)
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString command = arguments.value(1);
    if (command == QLatin1String("read")) {
        read();
        return 0;
    }
    if (command == QLatin1String("offer"))
        offer(arguments.mid(2));
    else if (command == QLatin1String("table"))
        offerTable(arguments.mid(2));
    else
        return 2;
    std::printf("ready\n");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
