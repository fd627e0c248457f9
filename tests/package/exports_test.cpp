#include "built_package.h"
#include "dynamic_symbols.h"
#include "packageloader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace
{

// Every node has its factories in the package.
const std::set<std::string> builtNodes = {"Converter", "Decompressor",       "Decoupler",
                                          "Gate",      "HistogramExtractor", "SharpnessExtractor"};

std::set<std::string> exportTable()
{
    std::set<std::string> names = {"get_InterfaceVersion", "create_StaticInfo", "create_DynamicInfo",
                                   "destroy_Info"};
    for (const std::string& node : builtNodes)
    {
        names.insert("create_" + node);
        names.insert("destroy_" + node);
    }
    return names;
}

} // namespace

// Each destroyer also takes null.
TEST(PackageExports, OnlyTheExportTableLeavesTheLibraryAndResolvesAfterDlopen)
{
    EXPECT_EQ(dynamicSymbols(builtPackagePath(), "--defined-only"), exportTable());
    PackageLoader package{builtPackagePath()};
    for (const std::string& name : exportTable())
        EXPECT_NE(package.symbol(name.c_str()), nullptr) << name;
    EXPECT_EQ(package.interfaceVersion(), 2);
    for (const std::string& node : builtNodes)
        package.function<PackageLoader::DestroyNode>(("destroy_" + node).c_str())(nullptr);
}

// The static info is the manifest, byte for byte as the reference has it.
TEST(PackageExports, InfoBlocksAreFreshCopiesOfTheManifestGivenBackThroughDestroyInfo)
{
    PackageLoader package{builtPackagePath()};
    const auto createStatic = package.function<char* (*)()>("create_StaticInfo");
    const auto createDynamic = package.function<char* (*)()>("create_DynamicInfo");
    const auto destroyInfo = package.function<void (*)(char**)>("destroy_Info");

    char* first = createStatic();
    char* second = createStatic();
    char* dynamic = createDynamic();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    EXPECT_STREQ(first, second);
    std::ifstream reference(TESSAL_TEST_DATA_DIR "/package/manifest.json", std::ios::binary);
    ASSERT_TRUE(reference);
    EXPECT_EQ(first, std::string(std::istreambuf_iterator<char>(reference), {}));
    EXPECT_EQ(dynamic, nullptr);
    EXPECT_EQ(createDynamic(), nullptr);
    for (char** info : {&first, &second, &dynamic})
    {
        destroyInfo(info);
        EXPECT_EQ(*info, nullptr);
    }
}
