#pragma once

#include <zvutil/ZvBasicXMLSaveFile.h>
#include <zvutil/ZvXMLReadFile.h>
#include <zvutil/experimental/xml/attribute_not_found_xml_exception.h>

#include <map>
#include <optional>
#include <string>

using Settings = std::map<std::string, std::string>;

class SettingsWriter : public ZvBasicXMLSaveFile<char>
{
public:
    using ZvBasicXMLSaveFile::ZvBasicXMLSaveFile;

    bool save(const Settings& settings)
    {
        write(settings);
        // All element writers are destroyed by now, so each has written its end tag.
        return commit();
    }

private:
    void write(const Settings& settings)
    {
        const auto root = writer().root_element("settings");
        root->attribute("count", std::to_string(settings.size()).c_str());
        for (const auto& [name, value] : settings) {
            const auto setting = root->child("setting");
            setting->attribute("name", name.c_str());
            setting->attribute("value", value.c_str());
        }
    }
};

class SettingsReader : public ZvXMLReadFile
{
public:
    using ZvXMLReadFile::ZvXMLReadFile;

    /// Returns nothing if the file can't be read, is something else or breaks off.
    std::optional<Settings> read()
    {
        try {
            const auto root = reader().root_element();
            if (!root || std::string(root->name()) != "settings")
                return std::nullopt;
            const std::string count = root->attribute("count");
            Settings settings;
            while (const auto setting = root->next_child())
                settings[setting->attribute("name")] = setting->attribute("value");
            if (std::to_string(settings.size()) != count)
                return std::nullopt;
            return settings;
        } catch (const zvutil::experimental::xml::attribute_not_found_xml_exception&) {
            return std::nullopt;
        }
    }
};
