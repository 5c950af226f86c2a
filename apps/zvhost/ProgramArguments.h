#pragma once

#include <QStringList>

#include <deque>
#include <string>
#include <vector>

/// The arguments of the program while Qt reads those of its own.
class ProgramArguments
{
public:
    /// The name that --style has for the parser of the command line.
    static constexpr char hiddenStyle[] = "workbench-style";

    /// Renames --style in \p arguments, which Qt would take as one of its own; call it before the
    /// application is made. The texts that it puts there live as long as this object.
    ProgramArguments(int count, char** arguments);

    /// Returns what Qt has left of the arguments. On Windows these have all of their characters, also those
    /// outside of the code page.
    QStringList remaining(int count, char** arguments) const;

private:
    std::deque<std::string> m_renamed;
    std::vector<const char*> m_given;
};
