#include <zvutil/uri.h>
#include <zvutil/zvlogging.h>

#include <iostream>

int main()
{
    const zvutil::uri uri("http://srv/a b?x=1#top");
    if (uri.kind() != zvutil::UriKind::Http)
        return 1;
    std::cout << uri.text() << '\n';
    std::cout << "host " << uri.host() << ", path " << uri.path() << '\n';

    zvlogging_EnableDiagnosticMode();
    return 0;
}
