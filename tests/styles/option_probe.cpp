// A process whose host fails to read the option ZvStyle; prints the style that the manager starts
// with.
//     option_probe DIRECTORY

#include <zvutil/ZvStyleManager.h>

#include <HostSupport/Options.h>
#include <HostSupport/host.h>

#include <QApplication>

#include <cstdio>
#include <stdexcept>
#include <string_view>

/// Takes the place of the host's in this process.
HOSTSUPPORT_EXPORT int sp_ReadOptionsInfo(const char* name, YString* value,
                                          const YString& defaultValue)
{
    if (std::string_view(name) == "ZvStyle")
        throw std::runtime_error("the options can't be read");
    *value = defaultValue;
    return 1;
}

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    host::setPathSymbol("ZVAPPDATAPATH", argv[1]);
    std::puts(libzvutil::ZvStyleManager::CurrentStyle().name().c_str());
    return 0;
}
