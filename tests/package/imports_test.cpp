// The package must load next to the real closed libraries, so it may call of them
// only what their contract gives. Every symbol that the built package leaves
// undefined and one of our stand-ins defines must stand in the reviewed list.
//
// Only new imports fail: how much the compiler inlines differs between builds,
// so a listed operation that one build does not call is no fault. A build with
// the undefined-behaviour sanitizer also refers to the type information of
// every class whose objects it checks, so in such a build type information
// that the list lacks passes.
#include "built_package.h"
#include "dynamic_symbols.h"

#include <gtest/gtest.h>

#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <set>
#include <string>

namespace
{

const char* const reviewedList = TESSAL_TEST_DATA_DIR "/package/closed_library_imports.txt";

// The stand-ins of the closed libraries, as the build names them.
const char* const standIns[] = {"libTarvikDataProcessingCore.so",
                                "libTarvikViewerDataTypes2.so",
                                "libTarvikUtility.so",
                                "libTarvikBase.so",
                                "libGenApi.so",
                                "libGCBase.so"};

std::string demangled(const std::string& symbol)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), &std::free);
    return status == 0 ? std::string(text.get()) : symbol;
}

// The lines that are neither empty nor comments.
std::set<std::string> reviewedImports()
{
    std::ifstream file(reviewedList);
    std::set<std::string> entries;
    for (std::string line; std::getline(file, line);)
    {
        if (!line.empty() && line[0] != '#')
            entries.insert(line);
    }
    return entries;
}

} // namespace

TEST(PackageImports, CallsOnlyWhatTheContractOfTheClosedLibrariesGives)
{
    const std::set<std::string> reviewed = reviewedImports();
    ASSERT_FALSE(reviewed.empty()) << "cannot read " << reviewedList;

    std::set<std::string> standInSymbols;
    for (const char* library : standIns)
        standInSymbols.merge(
            dynamicSymbols(std::string(TESSAL_LIBRARY_DIR) + "/" + library, "--defined-only"));

    const std::set<std::string> undefined = dynamicSymbols(builtPackagePath(), "--undefined-only");
    const bool checkedForUndefinedBehaviour =
        std::any_of(undefined.begin(), undefined.end(),
                    [](const std::string& symbol) { return symbol.starts_with("__ubsan_"); });
    int imports = 0;
    for (const std::string& symbol : undefined)
    {
        if (!standInSymbols.count(symbol))
            continue;
        ++imports;
        const std::string name = demangled(symbol);
        if (checkedForUndefinedBehaviour && name.starts_with("typeinfo for "))
            continue;
        EXPECT_TRUE(reviewed.count(name) || reviewed.count(symbol))
            << "The package newly imports from a closed library:\n"
            << name << "\n(" << symbol << ")\nIf the contract gives this operation, add the line above to "
            << reviewedList << "; if only our stand-in has it, call what the contract gives instead.";
    }
    // Guards the check itself: the package cannot work without the framework.
    EXPECT_GT(imports, 0);
}
