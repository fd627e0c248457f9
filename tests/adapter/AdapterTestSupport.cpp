#include "AdapterTestSupport.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace AdapterTest
{
namespace
{

std::string findXmllint()
{
    const char* path = std::getenv("PATH");
    std::stringstream directories(path ? path : "/usr/bin:/bin");
    std::string directory;
    while (std::getline(directories, directory, ':'))
    {
        const std::filesystem::path candidate = std::filesystem::path(directory) / "xmllint";
        if (!directory.empty() && ::access(candidate.c_str(), X_OK) == 0)
        {
            return candidate.string();
        }
    }
    return {};
}

} // namespace

std::string readReference(const std::string& name)
{
    const std::string path = std::string(TESSAL_TEST_DATA_DIR) + "/adapter/" + name;
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << "cannot read " << path;
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

::testing::AssertionResult isValidRegisterDescription(const std::string& text)
{
    const std::string xmllint = findXmllint();
    if (xmllint.empty())
    {
        return ::testing::AssertionFailure() << "xmllint is not on PATH (Debian package libxml2-utils)";
    }
    char documentPath[] = "/tmp/adapter-description-XXXXXX";
    const int descriptor = ::mkstemp(documentPath);
    if (descriptor < 0)
    {
        return ::testing::AssertionFailure() << "cannot create a temporary file";
    }
    const bool written = ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::close(descriptor);
    const std::string command =
        xmllint + " --noout --schema '" TESSAL_SHARED_DIR "/genicam/GenApiSchema_Version_1_1.xsd' " +
        documentPath + " 2>&1";
    std::string output;
    int status = -1;
    if (written)
    {
        if (FILE* pipe = ::popen(command.c_str(), "r"))
        {
            char chunk[512];
            while (const size_t got = std::fread(chunk, 1, sizeof chunk, pipe))
            {
                output.append(chunk, got);
            }
            status = ::pclose(pipe);
        }
    }
    std::filesystem::remove(documentPath);
    if (written && WIFEXITED(status) && WEXITSTATUS(status) == 0)
    {
        return ::testing::AssertionSuccess();
    }
    return ::testing::AssertionFailure() << "schema validation failed (status " << status << "):\n" << output;
}

std::vector<std::string> splitLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::string::size_type start = 0;
    while (start < text.size())
    {
        const auto end = text.find('\n', start);
        if (end == std::string::npos)
        {
            lines.push_back(text.substr(start));
            break;
        }
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

} // namespace AdapterTest
