#include "utf8_console.h"

#include <QtGlobal>

#if defined(Q_OS_WIN)

#include <windows.h>

#include <cstdlib>

void useUtf8Console()
{
    static const UINT before = GetConsoleOutputCP();
    if (before == 0)
        return;
    SetConsoleOutputCP(CP_UTF8);
    // The console outlives the program. The parser of the command line ends it for --help, so no
    // destructor can do this.
    std::atexit([] { SetConsoleOutputCP(before); });
}

#else

void useUtf8Console()
{
}

#endif
