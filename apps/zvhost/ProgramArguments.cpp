#include "ProgramArguments.h"

#include <QString>

#include <algorithm>

#if defined(Q_OS_WIN)
#include <windows.h>

#include <shellapi.h>
#endif

namespace {

#if defined(Q_OS_WIN)

/// Returns the arguments in full. QCoreApplication::arguments() does, too, but not for a program that
/// has changed one of them: then it returns question marks for characters outside of the code page.
QStringList wideArguments()
{
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    QStringList arguments;
    for (int i = 0; words && i < count; ++i)
        arguments.append(QString::fromWCharArray(words[i]));
    LocalFree(words);
    return arguments;
}

#else

QStringList wideArguments()
{
    return {};
}

#endif

} // namespace

ProgramArguments::ProgramArguments(int count, char** arguments)
{
    const std::string name = "--style";
    for (int i = 1; i < count; ++i) {
        const std::string argument = arguments[i];
        if (argument != name && argument.compare(0, name.size() + 1, name + '=') != 0)
            continue;
        m_renamed.push_back(std::string("--") + hiddenStyle + argument.substr(name.size()));
        arguments[i] = m_renamed.back().data();
    }
    m_given.assign(arguments, arguments + count);
}

QStringList ProgramArguments::remaining(int count, char** arguments) const
{
    const QStringList wide = wideArguments();
    // The start-up code expands patterns of file names; then the two don't fit together.
    const bool fits = wide.size() == static_cast<int>(m_given.size());
    QStringList left;
    for (int i = 0; i < count; ++i) {
        const auto given = std::find(m_given.begin(), m_given.end(), arguments[i]);
        left.append(fits && given != m_given.end() ? wide[static_cast<int>(given - m_given.begin())]
                                                   : QString::fromLocal8Bit(arguments[i]));
    }
    return left;
}
