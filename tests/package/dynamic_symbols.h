// The dynamic symbols of a built library, as `nm -D` lists them.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <sstream>
#include <string>

// The names that `nm -D -j <selection> <library>` lists, one a line; `selection` is
// "--defined-only" or "--undefined-only". A failing nm fails the calling test.
inline std::set<std::string> dynamicSymbols(const std::string& library, const char* selection)
{
    const std::string command = std::string("nm -D -j ") + selection + " " + library;
    FILE* const pipe = popen(command.c_str(), "r");
    if (!pipe)
    {
        ADD_FAILURE() << "cannot run " << command;
        return {};
    }
    std::string output;
    char chunk[4096];
    for (size_t count; (count = fread(chunk, 1, sizeof chunk, pipe)) > 0;)
        output.append(chunk, count);
    EXPECT_EQ(pclose(pipe), 0) << command;

    std::set<std::string> names;
    std::istringstream lines(output);
    for (std::string name; std::getline(lines, name);)
        if (!name.empty())
            names.insert(name);
    return names;
}
