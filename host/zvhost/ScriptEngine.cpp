#include "ScriptEngine.h"

#include <HostSupport/host.h>

#include <QQmlEngine>
#include <QRegularExpression>
#include <QStringList>
#include <QUuid>

#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

/// The name under which our own script text shows in stack traces.
const QString binding = QStringLiteral("zvhost-binding");

class ConsoleMessages final : public MessageHandler
{
public:
    void message(const char* text) override { std::fprintf(stderr, "%s\n", text); }
};

host::Value toHostValue(const QString& function, quint32 index, const QJSValue& argument)
{
    if (argument.isNumber())
        return argument.toNumber();
    if (argument.isString())
        return argument.toString().toStdString();
    const QString message = QStringLiteral("%1: argument %2 is neither a string nor a number");
    throw host::CallError(message.arg(function).arg(index + 1).toStdString());
}

quint32 lengthOf(const QJSValue& array)
{
    return array.property(QStringLiteral("length")).toUInt();
}

/// The line of the innermost frame that is not our own, from a stack trace whose lines read
/// FUNCTION@SOURCE:LINE or FUNCTION@SOURCE; 0 if there is none.
int scriptLine(const QString& stack)
{
    static const QRegularExpression frame(QStringLiteral("@(.*):(\\d+)$"));
    const QStringList frames = stack.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : frames) {
        const QRegularExpressionMatch match = frame.match(line);
        if (match.hasMatch() && !match.captured(1).endsWith(binding))
            return match.captured(2).toInt();
    }
    return 0;
}

} // namespace

ScriptEngine::ScriptEngine(QObject* parent)
    : QObject(parent)
    , m_messages(std::make_unique<ConsoleMessages>())
{
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
    const QJSValue self = m_engine.newQObject(this);
    QJSValue makePrint = m_engine.evaluate(
        QStringLiteral("(function(host) {"
                       "  return function() { host.print(Array.prototype.slice.call(arguments)); };"
                       "})"),
        binding);
    m_engine.globalObject().setProperty(QStringLiteral("print"), makePrint.call({self}));

    QJSValue makeCall = m_engine.evaluate(
        QStringLiteral("(function(host, method, name) {"
                       "  return function() {"
                       "    return host[method](name, Array.prototype.slice.call(arguments));"
                       "  };"
                       "})"),
        binding);
    const auto define = [&](const QString& method, const std::string& registered) {
        const QString name = QString::fromStdString(registered);
        m_engine.globalObject().setProperty(name, makeCall.call({self, method, name}));
    };
    for (const host::FunctionInfo& function : host::functions())
        define(QStringLiteral("callFunction"), function.name);
    for (const host::CommandInfo& command : host::commands())
        define(QStringLiteral("callCommand"), command.name);
}

QString ScriptEngine::run(const QString& text, const QString& source)
{
    m_source = source;
    // The engine returns a value that was thrown like one that was computed, so the script is made
    // to compute a value that nobody throws.
    const QString completion = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QString program = text + QStringLiteral("\n;'%1'").arg(completion);
    const QJSValue result = m_engine.evaluate(program, source);
    if (result.isError())
        return describe(result);
    if (result.toString() == completion)
        return {};
    return source + QStringLiteral(": uncaught exception: ") + result.toString();
}

QJSValue ScriptEngine::callFunction(const QString& name, const QJSValue& arguments)
{
    try {
        std::vector<host::Value> values;
        for (quint32 i = 0; i < lengthOf(arguments); ++i)
            values.push_back(toHostValue(name, i, arguments.property(i)));
        const auto texts = host::callFunction(name.toStdString(), values, m_messages);
        if (texts.size() == 1)
            return QString::fromStdString(texts.front());
        QJSValue list = m_engine.newArray(static_cast<uint>(texts.size()));
        for (quint32 i = 0; i < texts.size(); ++i)
            list.setProperty(i, QString::fromStdString(texts[i]));
        return list;
    } catch (const std::exception& error) {
        m_engine.throwError(QString::fromUtf8(error.what()));
    }
    return {};
}

void ScriptEngine::callCommand(const QString& name, const QJSValue& arguments)
{
    try {
        std::vector<std::string> words;
        for (quint32 i = 0; i < lengthOf(arguments); ++i)
            words.push_back(arguments.property(i).toString().toStdString());
        const std::string source = m_source.toStdString();
        host::callCommand(name.toStdString(), words, m_messages, {source.c_str(), 0});
    } catch (const std::exception& error) {
        m_engine.throwError(QString::fromUtf8(error.what()));
    }
}

void ScriptEngine::print(const QJSValue& arguments)
{
    QStringList words;
    for (quint32 i = 0; i < lengthOf(arguments); ++i)
        words += arguments.property(i).toString();
    const QByteArray line = words.join(QLatin1Char(' ')).toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
    std::fflush(stdout);
}

QString ScriptEngine::describe(const QJSValue& error) const
{
    int line = scriptLine(error.property(QStringLiteral("stack")).toString());
    if (line == 0)
        line = error.property(QStringLiteral("lineNumber")).toInt();
    return QStringLiteral("%1:%2: %3").arg(m_source).arg(line).arg(error.toString());
}
