#pragma once

#include <HostSupport/ScriptSession.h>

#include <QJSEngine>
#include <QJSValue>
#include <QObject>
#include <QString>

#include <optional>

class ScriptHost;
struct ScriptNames;

/// Runs JavaScript in which each script function and command that is registered with the host is a
/// function of its name, and `print` writes a line.
///
/// Belongs to the thread that makes it, but for `interrupt`.
class ScriptEngine : public QObject
{
    Q_OBJECT

public:
    /// \p scriptHost must live longer.
    ScriptEngine(const ScriptNames& names, ScriptHost& scriptHost);

    /// Runs \p text. \p source stands for it in messages. A script that throws something other than
    /// an Error object gives no line.
    host::ScriptOutcome run(const QString& text, const QString& source);

    /// Runs \p text and tells its value, in a form for people; nothing for undefined. What is
    /// declared by let and const is gone afterwards.
    host::ScriptOutcome evaluate(const QString& text);

    /// Ends what runs, or ends what runs next as soon as it has begun, until it is called with false.
    /// On any thread.
    void interrupt(bool interrupt);

    // What the script's functions end in. A failure is a script exception.
    Q_INVOKABLE QJSValue callFunction(const QString& name, const QJSValue& arguments);
    Q_INVOKABLE void callCommand(const QString& name, const QJSValue& arguments);
    Q_INVOKABLE void print(const QJSValue& arguments);
    Q_INVOKABLE void show(const QString& value);

private:
    void defineFunctions(const ScriptNames& names);
    host::ScriptOutcome failure(const QJSValue& thrown) const;

    QJSEngine m_engine;
    QJSValue m_evaluate;
    ScriptHost& m_host;
    QString m_source;
    std::optional<QString> m_value;
};
