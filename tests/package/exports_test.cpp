#include "built_package.h"
#include "packageloader.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <set>
#include <sstream>
#include <string>

namespace
{

const std::array<const char*, 6> nodeNames = {"Converter", "Decompressor",       "Decoupler",
                                              "Gate",      "HistogramExtractor", "SharpnessExtractor"};
// The nodes whose factories the package holds so far; the others join as they are built.
const std::set<std::string> builtNodes = {"Converter", "Decompressor", "Decoupler", "Gate",
                                           "HistogramExtractor", "SharpnessExtractor"};

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

std::set<std::string> definedDynamicSymbols(const std::string& library)
{
    const std::string command = "nm -D --defined-only " + library;
    FILE* const pipe = popen(command.c_str(), "r");
    if (!pipe)
        return {};
    std::set<std::string> names;
    char line[1024];
    while (fgets(line, sizeof line, pipe))
    {
        std::istringstream fields(line);
        std::string address, kind, name;
        if (fields >> address >> kind >> name)
            names.insert(name);
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    return names;
}

} // namespace

TEST(PackageExports, OnlyTheExportTableLeavesTheLibrary)
{
    const std::set<std::string> defined = definedDynamicSymbols(builtPackagePath());
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
