#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

namespace zvtest {

/// What Qt warns of while \p work runs.
template <typename Work>
QStringList warningsOf(Work work)
{
    static QStringList warnings;
    warnings.clear();
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& text) { warnings.append(text); });
    work();
    qInstallMessageHandler(before);
    return warnings;
}

} // namespace zvtest
