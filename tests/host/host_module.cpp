// A module of the application, as far as the tests of the host program need one.

#include <zvutil/uri.h>

#include <HostSupport/ComConstruct.h>
#include <HostSupport/FuncConstruct.h>
#include <HostSupport/MakeOption.h>
#include <HostSupport/YString.h>

#include <cstdio>
#include <stdexcept>

namespace {

constexpr argType pathAndTimes[] = {ARG_STRING, ARG_NUMBER};

FUNC_ERROR schemes(const FuncArgsMinimal& args, FuncResultMinimal* result, YRef<MessageHandler>)
{
    const zvutil::uri uri(*static_cast<const char* const*>(args.value(0)));
    const int times = static_cast<int>(*static_cast<const double*>(args.value(1)));
    char** texts = result->allotStrings(times);
    for (int i = 0; i < times; ++i)
        texts[i] = YString(std::string(uri.scheme()).c_str()).detach();
    return FUNC_OK;
}

FUNC_ERROR throwException(const FuncArgsMinimal&, FuncResultMinimal*, YRef<MessageHandler>)
{
    throw std::runtime_error("thrown by the module");
}

COMERROR tell(int count, char** words, YRef<MessageHandler> messages,
              const ScpParseContext& context)
{
    for (int i = 1; i < count; ++i)
        messages->message(words[i]);
    std::printf("%s in %s\n", words[0], context.source);
    std::fflush(stdout);
    return COM_OK;
}

COMERROR failCommand(int, char**, YRef<MessageHandler>, const ScpParseContext&)
{
    return COM_FAILED;
}

const FuncConstruct schemesFunction("Schemes", pathAndTimes, 2, 1, &schemes);
const FuncConstruct throwFunction("Throw", nullptr, 0, 1, &throwException);
const ComConstruct tellCommand("tell", &tell, 0);
const ComConstruct failingCommand("failing", &failCommand, 0);
const MakeOption option("host_module", 1, "ModuleOption", "some default", OPTION_DEFAULT_CACHING,
                        true);

} // namespace
