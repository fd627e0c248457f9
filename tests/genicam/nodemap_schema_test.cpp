// The runtime and the GenApi schema agree on what a valid document is: every
// well-formed document under tests/data/genicam is validated with xmllint, and
// the runtime must accept exactly those the schema accepts. The documents in
// refused_beyond_schema/ are the known exceptions: valid for the schema, but
// wrong in ways a schema cannot see (a circle of references, a register of
// nine bytes) or of a node class this runtime does not have.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

using namespace GenApi;

namespace
{

std::optional<std::filesystem::path> FindOnPath(const char* program)
{
    const char* path = std::getenv("PATH");
    if (path == nullptr)
        return std::nullopt;
    std::string directories(path);
    size_t start = 0;
    while (start <= directories.size())
    {
        const size_t end = std::min(directories.find(':', start), directories.size());
        const std::filesystem::path candidate =
            std::filesystem::path(directories.substr(start, end - start)) / program;
        std::error_code error;
        if (std::filesystem::is_regular_file(candidate, error))
            return candidate;
        start = end + 1;
    }
    return std::nullopt;
}

bool Succeeds(const std::string& command)
{
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

std::string Quoted(const std::filesystem::path& path)
{
    return "'" + path.string() + "'";
}

bool RuntimeAccepts(const std::string& text)
{
    try
    {
        CNodeMapRef ref(GenApiTest::CreateMap(text));
        return true;
    }
    catch (const GenICam::GenericException&)
    {
        return false;
    }
}

TEST(NodeMapSchema, RuntimeAcceptsExactlyWhatTheSchemaAccepts)
{
    const std::optional<std::filesystem::path> xmllint = FindOnPath("xmllint");
    ASSERT_TRUE(xmllint) << "xmllint (libxml2-utils) is not on the PATH";
    const std::filesystem::path schema =
        std::filesystem::path(TESSAL_SHARED_DIR) / "genicam" / "GenApiSchema_Version_1_1.xsd";
    ASSERT_TRUE(std::filesystem::is_regular_file(schema)) << schema;

    int wellFormed = 0;
    int valid = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(GenApiTest::DataPath("")))
    {
        if (entry.path().extension() != ".xml")
            continue;
        const std::filesystem::path& file = entry.path();
        const std::string relative = std::filesystem::relative(file, GenApiTest::DataPath("")).string();
        const bool accepted = RuntimeAccepts(GenApiTest::ReadDocument(relative));
        if (!Succeeds(Quoted(*xmllint) + " --noout " + Quoted(file)))
        {
            EXPECT_FALSE(accepted) << relative << ": not well-formed, yet accepted";
            continue;
        }
        ++wellFormed;
        const bool schemaValid =
            Succeeds(Quoted(*xmllint) + " --noout --schema " + Quoted(schema) + " " + Quoted(file));
        valid += schemaValid ? 1 : 0;
        if (relative.starts_with("refused_beyond_schema/"))
        {
            EXPECT_TRUE(schemaValid) << relative << ": meant to be valid for the schema";
            EXPECT_FALSE(accepted) << relative << ": meant to be refused by the runtime";
        }
        else
        {
            EXPECT_EQ(accepted, schemaValid)
                << relative
                << (schemaValid ? ": schema accepts, runtime refuses" : ": schema refuses, runtime accepts");
        }
    }
    EXPECT_GE(wellFormed, 20) << "the documents of tests/data/genicam were not found";
    EXPECT_GE(valid, 4 + 5);
}

} // namespace
