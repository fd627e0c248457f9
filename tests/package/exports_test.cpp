#include "built_package.h"
#include "dynamic_symbols.h"
#include "packageloader.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string>

namespace
{

const std::array<const char*, 6> nodeNames = {"Converter", "Decompressor",       "Decoupler",
                                              "Gate",      "HistogramExtractor", "SharpnessExtractor"};
// Every node has its factories in the package.
const std::set<std::string> builtNodes = {"Converter", "Decompressor",       "Decoupler",
                                          "Gate",      "HistogramExtractor", "SharpnessExtractor"};

std::set<std::string> allowedExports()
{
    std::set<std::string> names = {"get_InterfaceVersion", "create_StaticInfo", "create_DynamicInfo",
                                   "destroy_Info"};
    for (const char* node : nodeNames)
    {
        names.insert(std::string("create_") + node);
        names.insert(std::string("destroy_") + node);
    }
    return names;
}

} // namespace

TEST(PackageExports, OnlyTheExportTableLeavesTheLibrary)
{
    const std::set<std::string> defined = dynamicSymbols(builtPackagePath(), "--defined-only");
    const std::set<std::string> allowed = allowedExports();
    for (const std::string& name : defined)
        EXPECT_TRUE(allowed.count(name)) << "unexpected export " << name;

    std::set<std::string> expected = {"get_InterfaceVersion", "create_StaticInfo", "create_DynamicInfo",
                                      "destroy_Info"};
    for (const std::string& node : builtNodes)
    {
        expected.insert("create_" + node);
        expected.insert("destroy_" + node);
    }
    EXPECT_EQ(defined, expected);
}

TEST(PackageExports, ResolveByNameAfterDlopen)
{
    PackageLoader package{builtPackagePath()};
    for (const char* name :
         {"get_InterfaceVersion", "create_StaticInfo", "create_DynamicInfo", "destroy_Info"})
        EXPECT_NE(package.symbol(name), nullptr) << name;
    for (const std::string& node : builtNodes)
    {
        EXPECT_NE(package.symbol(("create_" + node).c_str()), nullptr) << node;
        EXPECT_NE(package.symbol(("destroy_" + node).c_str()), nullptr) << node;
    }
    EXPECT_EQ(package.interfaceVersion(), 2);
}

TEST(PackageExports, InfoBlocksAreFreshCopiesGivenBackThroughDestroyInfo)
{
    PackageLoader package{builtPackagePath()};
    const auto createStatic = package.function<char* (*)()>("create_StaticInfo");
    const auto createDynamic = package.function<char* (*)()>("create_DynamicInfo");
    const auto destroyInfo = package.function<void (*)(char**)>("destroy_Info");

    char* first = createStatic();
    char* second = createStatic();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    EXPECT_STREQ(first, second);
    destroyInfo(&first);
    EXPECT_EQ(first, nullptr);
    destroyInfo(&second);
    EXPECT_EQ(second, nullptr);

    char* dynamic = createDynamic();
    EXPECT_EQ(dynamic, nullptr);
    EXPECT_EQ(createDynamic(), nullptr);
    destroyInfo(&dynamic);
    EXPECT_EQ(dynamic, nullptr);
}

TEST(PackageExports, DestroyersIgnoreNull)
{
    PackageLoader package{builtPackagePath()};
    for (const std::string& node : builtNodes)
        package.function<PackageLoader::DestroyNode>(("destroy_" + node).c_str())(nullptr);
}
