#pragma once

#include <QObject>

namespace workbench {

/// Reports on the thread of the object that the system asks the program to end: SIGTERM, SIGHUP and SIGINT, on Windows
/// what ends a console program. One object at a time.
class EndSignals : public QObject
{
    Q_OBJECT

public:
    explicit EndSignals(QObject* parent);
    ~EndSignals() override;

Q_SIGNALS:
    void received();
};

} // namespace workbench
