#include "built_package.h"
#include "packageloader.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>

namespace
{

std::string manifestText()
{
    return PackageLoader(builtPackagePath()).manifest();
}

} // namespace

TEST(Manifest, MatchesTheReferenceByteForByte)
{
    std::ifstream file(std::string(TESSAL_TEST_DATA_DIR) + "/package/manifest.json", std::ios::binary);
    ASSERT_TRUE(file);
    std::stringstream reference;
    reference << file.rdbuf();
    EXPECT_EQ(manifestText(), reference.str());
}

TEST(Manifest, EveryLineEndsInCrLf)
{
    const std::string text = manifestText();
    ASSERT_GE(text.size(), 2u);
    EXPECT_EQ(text.substr(text.size() - 2), "\r\n");
    for (size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] == '\n')
        {
            ASSERT_EQ(text[i - 1], '\r') << "bare line feed at byte " << i;
        }
    }
    EXPECT_EQ(text.rfind("\xEF\xBB\xBF", 0), std::string::npos) << "no byte order mark";
}

TEST(Manifest, ParsesAsSixModulesOfTwelveMembersInOrder)
{
    const nlohmann::ordered_json manifest = nlohmann::ordered_json::parse(manifestText());
    std::vector<std::string> topKeys;
    for (const auto& [key, value] : manifest.items())
        topKeys.push_back(key);
    EXPECT_EQ(topKeys, (std::vector<std::string>{"Version", "Vendor", "Copyright", "License", "Modules"}));
    EXPECT_EQ(manifest["Version"], "0.1.0");
    EXPECT_EQ(manifest["Vendor"], "Ostrel AG");
    EXPECT_NE(manifest["License"].get<std::string>().find("\n\n"), std::string::npos);

    const std::vector<std::string> names = {"Converter", "Decompressor",       "Decoupler",
                                            "Gate",      "HistogramExtractor", "SharpnessExtractor"};
    const std::vector<std::string> memberOrder = {"Name",
                                                  "Uuid",
                                                  "ObjectVersion",
                                                  "MinRequiredSoftwareVersion",
                                                  "MinRequiredFileVersion",
                                                  "InterfaceType",
                                                  "DisplayName",
                                                  "Tags",
                                                  "ShortDescription",
                                                  "DetailedDescription",
                                                  "SupportedUuids",
                                                  "HasDynamicInfo"};
    const auto& modules = manifest["Modules"];
    ASSERT_EQ(modules.size(), names.size());
    for (size_t i = 0; i < names.size(); ++i)
    {
        const auto& module = modules[i];
        std::vector<std::string> keys;
        for (const auto& [key, value] : module.items())
            keys.push_back(key);
        EXPECT_EQ(keys, memberOrder) << names[i];
        EXPECT_EQ(module["Name"], names[i]);
        EXPECT_TRUE(module["HasDynamicInfo"].is_string());
        EXPECT_EQ(module["HasDynamicInfo"], "False");
        EXPECT_EQ(module["SupportedUuids"], nlohmann::ordered_json::array({module["Uuid"]}));
        EXPECT_EQ(module["ShortDescription"], module["DetailedDescription"]);
        EXPECT_EQ(module["Tags"], nlohmann::ordered_json::array());
        for (const char* version : {"ObjectVersion", "MinRequiredSoftwareVersion", "MinRequiredFileVersion"})
            EXPECT_EQ(module[version], "0.1.0");
        EXPECT_EQ(module["InterfaceType"], "Native");
    }
    EXPECT_EQ(modules[3]["Uuid"], "123f0581-5f95-475f-9e20-5d11c3526bd2");
}
