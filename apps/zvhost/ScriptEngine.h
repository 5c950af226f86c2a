#pragma once

#include <HostSupport/ScriptSession.h>

#include <QJSEngine>
#include <QJSValue>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

class ScriptHost;
struct ScriptNames;

/// Runs JavaScript in which each script function and command that is registered with the host is a
/// function of its name, and `print` writes a line.
///
/// The engine belongs to the thread that creates it, except for `interrupt`.
class ScriptEngine : public QObject
{
    Q_OBJECT

public:
    /// Creates the engine. \p scriptHost must outlive it.
    ScriptEngine(const ScriptNames& names, ScriptHost& scriptHost);

    /// Gives scripts \p arguments as the array `scriptArguments`.
    void setArguments(const QStringList& arguments);

    /// Runs \p text, which is called \p source in messages, and what then waits for its promises. The
    /// outcome has no line if the script throws something other than an Error object.
    host::ScriptOutcome run(const QString& text, const QString& source);

    /// Runs \p text and returns its value in a form for people; nothing for undefined. Variables
    /// that are declared by let and const don't exist afterwards.
    host::ScriptOutcome evaluate(const QString& text);

    /// Stops the script that is running, or else each script that begins, until called with false.
    /// Can be called on any thread.
    void interrupt(bool interrupt);

    // The script's functions call these. A failure becomes an exception of the script.
    Q_INVOKABLE QJSValue callFunction(const QString& name, const QJSValue& arguments);
    Q_INVOKABLE void callCommand(const QString& name, const QJSValue& arguments);
    Q_INVOKABLE void print(const QJSValue& arguments);
    Q_INVOKABLE void show(const QString& value);

private:
    void defineFunctions(const ScriptNames& names);
    void runCallbacks();
    host::ScriptOutcome failure(const QJSValue& thrown) const;

    QJSEngine m_engine;
    QJSValue m_evaluate;
    ScriptHost& m_host;
    QString m_source;
    std::optional<QString> m_value;
};
