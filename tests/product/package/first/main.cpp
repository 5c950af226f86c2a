#include <zvutil/uri.h>

#include <iostream>

int main()
{
    const zvutil::uri uri("http://srv/a b?x=1#top");
    if (uri.kind() != zvutil::UriKind::Http)
        return 1;
    std::cout << "host " << uri.host() << ", path " << uri.path() << '\n';
    return 0;
}
