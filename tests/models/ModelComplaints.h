#pragma once

#include <QAbstractItemModelTester>
#include <QString>
#include <QStringList>

#include <cstring>
#include <mutex>

namespace zvtest {

/// Collects what Qt's testers of models complain of while this lives, so that a property fails and shrinks
/// where a tester in fatal mode would end the program.
class ModelComplaints
{
public:
    static constexpr auto mode = QAbstractItemModelTester::FailureReportingMode::Warning;

    ModelComplaints()
    {
        taken().clear();
        m_previous = qInstallMessageHandler(&take);
    }

    ~ModelComplaints() { qInstallMessageHandler(m_previous); }

    ModelComplaints(const ModelComplaints&) = delete;
    ModelComplaints& operator=(const ModelComplaints&) = delete;

    std::string text() const
    {
        const std::lock_guard lock(mutex());
        return taken().join(QLatin1Char('\n')).toStdString();
    }

private:
    static QStringList& taken()
    {
        static QStringList messages;
        return messages;
    }

    static std::mutex& mutex()
    {
        static std::mutex instance;
        return instance;
    }

    static void take(QtMsgType /*type*/, const QMessageLogContext& context, const QString& message)
    {
        if (!context.category || std::strcmp(context.category, "qt.modeltest") != 0)
            return;
        const std::lock_guard lock(mutex());
        taken().append(message);
    }

    QtMessageHandler m_previous = nullptr;
};

} // namespace zvtest
