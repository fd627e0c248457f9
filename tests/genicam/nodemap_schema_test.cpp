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
#include <string>

using namespace GenApi;

namespace
{

bool Succeeds(const std::string& command)
{
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

TEST(NodeMapSchema, RuntimeAcceptsExactlyWhatTheSchemaAccepts)
{
    ASSERT_TRUE(Succeeds("xmllint --version")) << "xmllint (libxml2-utils) is not on the PATH";
    const std::filesystem::path schema =
        std::filesystem::path(TESSAL_SHARED_DIR) / "genicam" / "GenApiSchema_Version_1_1.xsd";
    ASSERT_TRUE(std::filesystem::is_regular_file(schema)) << schema;

    int wellFormed = 0;
    int valid = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(GenApiTest::DataPath("")))
    {
        if (entry.path().extension() != ".xml")
            continue;
        const std::string file = "'" + entry.path().string() + "'";
        const std::string relative =
            std::filesystem::relative(entry.path(), GenApiTest::DataPath("")).string();
        const bool accepted =
            GenApiTest::ErrorText(
                [&] { CNodeMapRef ref(GenApiTest::CreateMap(GenApiTest::ReadDocument(relative))); }) ==
            "no exception";
        if (!Succeeds("xmllint --noout " + file))
        {
            EXPECT_FALSE(accepted) << relative << ": not well-formed, yet accepted";
            continue;
        }
        ++wellFormed;
        const bool schemaValid = Succeeds("xmllint --noout --schema '" + schema.string() + "' " + file);
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
