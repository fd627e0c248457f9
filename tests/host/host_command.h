// Runs the built tessal-host with arguments and keeps its exit code and output.
#pragma once

#include <cstdio>
#include <string>
#include <sys/wait.h>

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
