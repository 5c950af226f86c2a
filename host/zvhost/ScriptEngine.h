#pragma once

#include <HostSupport/MessageHandler.h>
#include <HostSupport/YRef.h>

#include <QJSEngine>
#include <QJSValue>
#include <QObject>
#include <QString>

/// Runs JavaScript in which each script function and command that is registered with the host is a
/// function of its name, and `print` writes a line to standard output.
class ScriptEngine : public QObject
{
    Q_OBJECT

public:
    /// Takes the functions and commands that are registered now.
    explicit ScriptEngine(QObject* parent = nullptr);

    /// Runs \p text. \p source stands for it in messages.
    /// Returns an empty text, or the error as "SOURCE:LINE: MESSAGE". A script
    /// that throws something other than an Error object gives no line.
    QString run(const QString& text, const QString& source);

    // What the script's functions end in. A failure is a script exception.
    Q_INVOKABLE QJSValue callFunction(const QString& name, const QJSValue& arguments);
    Q_INVOKABLE void callCommand(const QString& name, const QJSValue& arguments);
    Q_INVOKABLE void print(const QJSValue& arguments);

private:
    QString describe(const QJSValue& error) const;

    QJSEngine m_engine;
    YRef<MessageHandler> m_messages;
    QString m_source;
};
