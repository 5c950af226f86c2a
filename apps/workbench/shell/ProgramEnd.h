#pragma once

#include <QObject>

namespace workbench {

class Workbench;

/// Has a window keep all work when the system ends the program or the user's session, and asks nothing: nobody
/// may be there to answer.
class ProgramEnd : public QObject
{
    Q_OBJECT

public:
    explicit ProgramEnd(Workbench& window);
};

} // namespace workbench
