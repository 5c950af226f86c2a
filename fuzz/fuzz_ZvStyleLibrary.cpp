// Any bytes as a user's style library: it is loaded or refused, the built-in styles stay what they
// are, and what has been loaded can be saved and loaded again.

#include "support/files.h"

#include <zvutil/ZvFilePath.h>
#include <zvutil/ZvStyleLibrary.h>
#include <zvutil/experimental/xml/xml_exception.h>

#include <HostSupport/host.h>

#include <QColor>
#include <QCoreApplication>
#include <QEvent>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <optional>

using libzvutil::ZvStyleBrush;
using libzvutil::ZvStyleLibrary;
using zvfuzz::require;
using zvfuzz::write;
using zvutil::ZvFilePath;

namespace {

std::optional<ZvStyleLibrary> loaded(const ZvFilePath& path)
{
    try {
        return ZvStyleLibrary(path);
    } catch (const zvutil::experimental::xml::xml_exception&) {
        return {};
    }
}

void checkMerged(const ZvStyleLibrary& library)
{
    ZvStyleLibrary merged;
    const QColor panel = merged.dark().colour(ZvStyleBrush::Panel).qColour();
    merged.add(library);
    require(merged.dark().isDefaultStyle() && merged.light().isDefaultStyle());
    require(merged.dark().colour(ZvStyleBrush::Panel).qColour() == panel);
    require(merged.names().size() <= library.names().size() + 2);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    static const QTemporaryDir dir;
    static const QString file = dir.filePath(QStringLiteral("styles.xml"));
    host::setOptionsFile(dir.filePath(QStringLiteral("options.ini")).toStdString());

    write(file, QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)));
    const ZvFilePath path(file.toStdWString());
    if (const std::optional<ZvStyleLibrary> library = loaded(path)) {
        checkMerged(*library);
        library->save(path);
        const std::optional<ZvStyleLibrary> again = loaded(path);
        require(again && again->names() == library->names());
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
