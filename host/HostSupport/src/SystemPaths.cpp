#include <HostSupport/SystemPaths.h>

#include "Registry.h"

#include <QStandardPaths>
#include <QString>
#include <QStringList>

namespace {

QString standardPath(const std::string& symbol)
{
    const auto location = QStandardPaths::GenericDataLocation;
    if (symbol == "ZVAPPDATAPATH")
        return QStandardPaths::writableLocation(location) + QStringLiteral("/zvhost");
    if (symbol == "ZVDOCSPATH")
        return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (symbol == "COMMON_APPDATAPATH") {
        // The first location is the user's own, the second is shared by all users, on every
        // platform.
        return QStandardPaths::standardLocations(location).value(1);
    }
    return {};
}

} // namespace

int sp_GetSystemPathSymbolValue(const char* symbol, YString* value, bool /*create*/)
{
    const auto& symbols = host::registry().pathSymbols;
    const auto set = symbols.find(symbol);
    if (set != symbols.end()) {
        *value = set->second.c_str();
        return 0;
    }
    const QString path = standardPath(symbol);
    *value = path.toUtf8().constData();
    return path.isEmpty() ? 1 : 0;
}

YString sp_GetProductFolderName()
{
    return host::registry().productFolderName.c_str();
}

namespace host {

void setPathSymbol(const std::string& symbol, const std::string& value)
{
    registry().pathSymbols[symbol] = value;
}

void setProductFolderName(const std::string& name)
{
    registry().productFolderName = name;
}

} // namespace host
