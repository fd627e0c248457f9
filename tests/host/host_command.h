// What the host tests share: the built tessal-host run with arguments, keeping
// its exit code and output; empty folders for a run's outputs; its CSV files.
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

struct Command
{
    int exitCode;
    std::string output;
};

inline Command host(const std::string& arguments)
{
    const std::string command = std::string(TESSAL_HOST) + " " + arguments + " 2>&1";
    FILE* const pipe = popen(command.c_str(), "r");
    std::string output;
    char chunk[512];
    while (pipe && std::fgets(chunk, sizeof chunk, pipe))
        output += chunk;
    const int status = pipe ? pclose(pipe) : -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

inline std::filesystem::path freshFolder(const std::string& name)
{
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("tessal-host-test-" + name);
    std::filesystem::remove_all(folder);
    return folder;
}

// The fields of each line after the header; an empty last field counts.
inline std::vector<std::vector<std::string>> csvRows(const std::filesystem::path& file)
{
    std::ifstream in(file);
    std::vector<std::vector<std::string>> rows;
    std::string line;
    std::getline(in, line);
    while (std::getline(in, line))
    {
        // Each field ends in a comma here, so that getline gives an empty last one too.
        std::stringstream fieldsOf(line + ",");
        rows.emplace_back();
        for (std::string field; std::getline(fieldsOf, field, ',');)
            rows.back().push_back(field);
    }
    return rows;
}
