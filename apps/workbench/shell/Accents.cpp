#include "shell/Accents.h"

#include <zvutil/ZvXMLReadFile.h>

#include <string_view>

namespace workbench {

namespace {

class AccentsFile : public ZvXMLReadFile
{
public:
    using ZvXMLReadFile::ZvXMLReadFile;

    std::vector<Accent> read()
    {
        std::vector<Accent> result;
        const auto root = reader().root_element();
        while (const auto list = root ? root->next_child() : nullptr) {
            if (std::string_view(list->name()) != "Accents")
                continue;
            while (const auto accent = list->next_child())
                result.push_back({QString::fromUtf8(accent->attribute("name")),
                                  QColor(QString::fromUtf8(accent->attribute("colour")))});
        }
        return result;
    }
};

} // namespace

const std::vector<Accent>& accents()
{
    static const std::vector<Accent> accents = AccentsFile(L":/libzvutil/style/library.xml").read();
    return accents;
}

QString accentText(const QColor& colour)
{
    return colour.name(QColor::HexRgb);
}

} // namespace workbench
