// The converter's register description: the exact text is kept as a reference
// file, and that file is valid against the GenApi 1.1 schema.
#include "ConverterRegisterDescription.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace
{

const std::filesystem::path kReference =
    std::filesystem::path(TESSAL_TEST_DATA_DIR) / "tarvikutility" / "ImageFormatConverter.xml";

std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

TEST(ConverterRegisterDescription, MatchesTheReferenceText)
{
    const std::string reference = ReadFile(kReference);
    ASSERT_FALSE(reference.empty()) << kReference;
    EXPECT_EQ(Tarvik::Conversion::BuildConverterRegisterDescription(), reference);
}

TEST(ConverterRegisterDescription, ReferenceIsValidAgainstTheSchema)
{
    const std::filesystem::path schema =
        std::filesystem::path(TESSAL_SHARED_DIR) / "genicam" / "GenApiSchema_Version_1_1.xsd";
    ASSERT_TRUE(std::filesystem::exists(schema)) << schema;
    const std::string command =
        "xmllint --noout --schema '" + schema.string() + "' '" + kReference.string() + "' 2>/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}
