// A module that does nothing but register one script function.

#include <HostSupport/FuncConstruct.h>

namespace {

FUNC_ERROR returnNothing(const FuncArgsMinimal&, FuncResultMinimal*, YRef<MessageHandler>)
{
    return FUNC_OK;
}

const FuncConstruct function(FUNCTION_NAME, nullptr, 0, 1, &returnNothing);

} // namespace
