#include "ScriptEngine.h"

#include "ScriptHost.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QEventLoop>
#include <QList>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QStringList>
#include <QUuid>

#include <exception>
#include <string>
#include <vector>

namespace {

/// The name of our own script text in stack traces.
const QString binding = QStringLiteral("zvhost-binding");

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

/// A call in a script.
struct Frame
{
    QString function; ///< empty for what stands outside of functions
    int line;
};

/// The most calls that are told: a recursion without an end has thousands.
constexpr int maxFrames = 10;

/// Returns the calls that led to an error, the innermost first, without our own. The lines of \p stack read
/// FUNCTION@SOURCE:LINE or FUNCTION@SOURCE.
QList<Frame> framesOf(const QString& stack)
{
    static const QRegularExpression format(QStringLiteral("^(.*)@(.*):(\\d+)$"));
    QList<Frame> frames;
    for (const QString& line : stack.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QRegularExpressionMatch match = format.match(line);
        if (!match.hasMatch() || match.captured(2).endsWith(binding))
            continue;
        // A call for which there was no room any more has no line.
        if (match.captured(3).toInt() == 0)
            continue;
        const QString function = match.captured(1);
        const bool isOutside = function == QLatin1String("%entry");
        frames.append({isOutside ? QString() : function, match.captured(3).toInt()});
    }
    return frames;
}

/// Describes calls, a line for each.
QString described(const QList<Frame>& frames)
{
    QStringList lines;
    for (const Frame& frame : frames.mid(0, maxFrames)) {
        const QString name =
            frame.function.isEmpty() ? QString() : frame.function + QStringLiteral(", ");
        lines.append(QStringLiteral("    at %1line %2").arg(name).arg(frame.line));
    }
    if (frames.size() > maxFrames)
        lines.append(QStringLiteral("    … and %1 more calls").arg(frames.size() - maxFrames));
    return lines.join(QLatin1Char('\n'));
}

/// Returns \p text as the engine takes it: a first line for the shell becomes a comment.
QString withoutShellLine(const QString& text)
{
    return text.startsWith(QLatin1String("#!")) ? QStringLiteral("//") + text : text;
}

} // namespace

ScriptEngine::ScriptEngine(const ScriptNames& names, ScriptHost& scriptHost)
    : m_host(scriptHost)
{
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
    defineFunctions(names);
    setArguments({});
    // The evaluation is indirect, so that what the text defines is global. The script hands its
    // value to show(), since the engine returns a value that was thrown like one that was computed.
    // JSON shows objects as people write them, but doesn't cover all values.
    QJSValue makeEvaluate = m_engine.evaluate(
        QStringLiteral("(function(host) {"
                       "  function described(value) {"
                       "    if (typeof value == 'string' || (typeof value == 'object' && value)) {"
                       "      try { return String(JSON.stringify(value)); } catch (circular) {}"
                       "    }"
                       "    return value === undefined ? '' : String(value);"
                       "  }"
                       "  return function(text) { host.show(described((0, eval)(text))); };"
                       "})"),
        binding);
    m_evaluate = makeEvaluate.call({m_engine.newQObject(this)});
}

void ScriptEngine::defineFunctions(const ScriptNames& names)
{
    const QJSValue self = m_engine.newQObject(this);
    QJSValue makePrint = m_engine.evaluate(
        QStringLiteral(
            "(function(host) {"
            "  function described(value) {"
            "    var text = String(value);"
            "    if (text.indexOf('[object ') < 0) return text;"
            "    try { return JSON.stringify(value); } catch (circular) { return text; }"
            "  }"
            "  return function() { host.print(Array.prototype.map.call(arguments, described)); };"
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
    const auto define = [&](const QString& method, const std::vector<std::string>& registered) {
        for (const std::string& text : registered) {
            const QString name = QString::fromStdString(text);
            m_engine.globalObject().setProperty(name, makeCall.call({self, method, name}));
        }
    };
    define(QStringLiteral("callFunction"), names.functions);
    define(QStringLiteral("callCommand"), names.commands);
}

void ScriptEngine::setArguments(const QStringList& arguments)
{
    m_engine.globalObject().setProperty(QStringLiteral("scriptArguments"),
                                        m_engine.toScriptValue(arguments));
}

host::ScriptOutcome ScriptEngine::run(const QString& text, const QString& source)
{
    m_source = source;
    // The engine returns a value that was thrown like one that was computed, so the script is made
    // to compute a value that nobody throws.
    const QString completion = QUuid::createUuid().toString(QUuid::WithoutBraces);
    const QString program = withoutShellLine(text) + QStringLiteral("\n;'%1'").arg(completion);
    const QJSValue result = m_engine.evaluate(program, source);
    if (result.isError() || result.toString() != completion)
        return failure(result);
    runCallbacks();
    return {};
}

host::ScriptOutcome ScriptEngine::evaluate(const QString& text)
{
    m_source.clear();
    m_value.reset();
    const QJSValue result = m_evaluate.call({text});
    if (!m_value)
        return failure(result);
    runCallbacks();
    host::ScriptOutcome outcome;
    outcome.value = m_value->toStdString();
    return outcome;
}

/// Calls what waits for promises: the engine posts it to objects of its thread, and what one call posts is
/// handled in the next round.
void ScriptEngine::runCallbacks()
{
    // A window that paints itself without end would keep the script from ending.
    constexpr int maxRounds = 100'000;
    QAbstractEventDispatcher* const dispatcher = QAbstractEventDispatcher::instance();
    for (int round = 0; round < maxRounds && dispatcher && dispatcher->hasPendingEvents(); ++round)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void ScriptEngine::interrupt(bool interrupt)
{
    m_engine.setInterrupted(interrupt);
}

QJSValue ScriptEngine::callFunction(const QString& name, const QJSValue& arguments)
{
    try {
        std::vector<host::Value> values;
        for (quint32 i = 0; i < lengthOf(arguments); ++i)
            values.push_back(toHostValue(name, i, arguments.property(i)));
        const std::vector<std::string> texts = m_host.callFunction(name.toStdString(), values);
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
        m_host.callCommand(name.toStdString(), words, m_source.toStdString());
    } catch (const std::exception& error) {
        m_engine.throwError(QString::fromUtf8(error.what()));
    }
}

void ScriptEngine::print(const QJSValue& arguments)
{
    QStringList words;
    for (quint32 i = 0; i < lengthOf(arguments); ++i)
        words += arguments.property(i).toString();
    m_host.print(words.join(QLatin1Char(' ')).toStdString());
}

void ScriptEngine::show(const QString& value)
{
    m_value = value;
}

host::ScriptOutcome ScriptEngine::failure(const QJSValue& thrown) const
{
    host::ScriptOutcome outcome;
    if (!thrown.isError()) {
        outcome.error = "uncaught exception: " + thrown.toString().toStdString();
        return outcome;
    }
    outcome.error = thrown.toString().toStdString();
    const QList<Frame> frames = framesOf(thrown.property(QStringLiteral("stack")).toString());
    if (!frames.isEmpty())
        outcome.line = frames.constFirst().line;
    if (frames.size() > 1)
        outcome.stack = described(frames).toStdString();
    if (outcome.line == 0)
        outcome.line = thrown.property(QStringLiteral("lineNumber")).toInt();
    return outcome;
}
