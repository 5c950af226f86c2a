// Another program that uses Qt's format: packs or unpacks standard input to standard output.

#include <QByteArray>
#include <QFile>

#include <cstdio>
#include <cstring>

#if defined(Q_OS_WIN)
#include <fcntl.h>
#include <io.h>
#endif

int main(int argc, char* argv[])
{
#if defined(Q_OS_WIN)
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    QFile in;
    QFile out;
    if (argc != 2 || !in.open(stdin, QIODevice::ReadOnly)
        || !out.open(stdout, QIODevice::WriteOnly))
        return 2;
    const QByteArray bytes = in.readAll();
    const QByteArray result =
        std::strcmp(argv[1], "pack") == 0 ? qCompress(bytes) : qUncompress(bytes);
    return out.write(result) == result.size() ? 0 : 1;
}
