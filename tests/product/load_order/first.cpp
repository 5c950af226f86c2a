#include <HostSupport/FuncConstruct.h>

namespace {

FUNC_ERROR handler(const FuncArgsMinimal&, FuncResultMinimal*, YRef<MessageHandler>)
{
    return FUNC_OK;
}

const FuncConstruct registration("first", nullptr, 0, 0, &handler);

} // namespace
