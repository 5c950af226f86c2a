#include <HostSupport/host.h>

#include "Registry.h"

#include <algorithm>
#include <cstdlib>

namespace host {

namespace {

/// Presents an argument list to a handler.
class Arguments final : public FuncArgsMinimal
{
public:
    explicit Arguments(const std::vector<Value>& values)
        : m_values(values)
    {
        m_texts.reserve(values.size());
        for (const Value& value : values) {
            const std::string* text = std::get_if<std::string>(&value);
            m_texts.push_back(text ? text->c_str() : nullptr);
        }
    }

    const void* value(int index) const override
    {
        const std::size_t position = static_cast<std::size_t>(index);
        if (const double* number = std::get_if<double>(&m_values.at(position)))
            return number;
        return &m_texts[position];
    }

private:
    const std::vector<Value>& m_values;
    std::vector<const char*> m_texts;
};

/// Owns the buffers that a handler returns.
class Result final : public FuncResultMinimal
{
public:
    Result() = default;
    Result(const Result&) = delete;
    Result& operator=(const Result&) = delete;
    ~Result() { release(); }

    char** allotStrings(int count) override
    {
        release();
        m_buffers.assign(static_cast<std::size_t>(count), nullptr);
        return m_buffers.data();
    }

    std::vector<std::string> texts() const
    {
        std::vector<std::string> result;
        for (const char* buffer : m_buffers)
            result.emplace_back(buffer ? buffer : "");
        return result;
    }

private:
    void release()
    {
        for (char* buffer : m_buffers)
            std::free(buffer);
    }

    std::vector<char*> m_buffers;
};

std::string typeName(argType type)
{
    return type == ARG_STRING ? "string" : "number";
}

argType typeOf(const Value& value)
{
    return std::holds_alternative<std::string>(value) ? ARG_STRING : ARG_NUMBER;
}

std::string expectation(const FunctionInfo& function)
{
    const std::size_t count = function.arguments.size();
    std::string text = function.name + " expects " + std::to_string(count)
        + (count == 1 ? " argument" : " arguments");
    for (std::size_t i = 0; i < count; ++i)
        text += (i == 0 ? " (" : ", ") + typeName(function.arguments[i]);
    return count == 0 ? text : text + ")";
}

void checkArguments(const FunctionInfo& function, const std::vector<Value>& arguments)
{
    if (arguments.size() != function.arguments.size())
        throw CallError(expectation(function) + ", not " + std::to_string(arguments.size()));
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (typeOf(arguments[i]) != function.arguments[i])
            throw CallError(expectation(function) + "; argument " + std::to_string(i + 1) + " is a "
                            + typeName(typeOf(arguments[i])));
    }
}

} // namespace

CallError::~CallError() = default;

std::vector<FunctionInfo> functions()
{
    std::vector<FunctionInfo> result;
    result.reserve(registry().functions.size());
    for (const Registry::Function& function : registry().functions)
        result.push_back(function.info);
    return result;
}

std::vector<CommandInfo> commands()
{
    return registry().commands;
}

std::vector<OptionInfo> options()
{
    return registry().options;
}

void setRegistrationObserver(RegistrationObserver observer)
{
    registry().observer = std::move(observer);
}

std::vector<std::string> callFunction(const std::string& name, const std::vector<Value>& arguments,
                                      const YRef<MessageHandler>& messages)
{
    const auto& all = registry().functions;
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&name](const auto& f) { return f.info.name == name; });
    if (found == all.end())
        throw CallError("Unknown function: " + name);
    // Copy the entry, since the handler may load or unload libraries.
    const FunctionInfo function = found->info;
    checkArguments(function, arguments);
    Result result;
    const FUNC_ERROR error = function.handler(Arguments(arguments), &result, messages);
    if (error != FUNC_OK)
        throw CallError(name + " failed with error " + std::to_string(error));
    return result.texts();
}

void callCommand(const std::string& name, const std::vector<std::string>& words,
                 const YRef<MessageHandler>& messages, const ScpParseContext& context)
{
    const auto& all = registry().commands;
    const auto found =
        std::find_if(all.begin(), all.end(), [&name](const auto& c) { return c.name == name; });
    if (found == all.end())
        throw CallError("Unknown command: " + name);
    std::vector<std::string> texts{name};
    texts.insert(texts.end(), words.begin(), words.end());
    std::vector<char*> pointers;
    pointers.reserve(texts.size());
    for (std::string& text : texts)
        pointers.push_back(text.data());
    const ComHandler handler = found->handler;
    const COMERROR error =
        handler(static_cast<int>(pointers.size()), pointers.data(), messages, context);
    if (error != COM_OK)
        throw CallError(name + " failed with error " + std::to_string(error));
}

} // namespace host
