#include <zvutil/uri.h>

#include <HostSupport/FuncConstruct.h>
#include <HostSupport/YString.h>

#include <string>

namespace {

std::string uriText(const std::string& path)
{
    if (path.compare(0, 2, "\\\\") == 0)
        return zvutil::uri("file:" + path).text();
    // By contract: PathToURI returns a text that begins with "file:", in lower case, unchanged,
    // blanks and backslashes included. Such a text is a URI already, and escaping it twice would
    // change it.
    if (path.compare(0, 5, "file:") == 0)
        return path;
    return zvutil::uri("file:///" + path).text();
}

FUNC_ERROR pathToURI(const FuncArgsMinimal& args, FuncResultMinimal* result,
                     YRef<MessageHandler> /*messages*/)
{
    const std::string path = *static_cast<const char* const*>(args.value(0));
    YString text;
    text = uriText(path).c_str();
    char** target = result->allotStrings(1);
    *target = text.detach();
    return FUNC_OK;
}

constexpr argType arguments[] = {ARG_STRING};
const FuncConstruct registration("PathToURI", arguments, 1, 1, &pathToURI);

} // namespace
