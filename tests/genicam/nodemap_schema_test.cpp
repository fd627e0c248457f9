// Every document of tests/data/genicam against the GenApi 1.1 schema: the
// runtime accepts exactly what the schema accepts, but for the documents of
// refused_beyond_schema/, which are valid yet wrong (a circle, a register of
// nine bytes, a node class this runtime does not have). A document that ends in
// "<!-- refused: Exception: text -->" is refused with exactly that text, and
// the refusal leaves the caller's lock free. The converter's register
// description is one of the documents.
#include "genapi_test_support.h"

#include <cstdlib>
#include <filesystem>

using namespace GenApi;

namespace
{

bool Succeeds(const std::string& command)
{
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

TEST(NodeMapDocuments, RuntimeAcceptsWhatTheSchemaAcceptsAndNamesWhatItRefuses)
{
    ASSERT_TRUE(Succeeds("xmllint --version")) << "xmllint (libxml2-utils) is not on the PATH";
    const std::filesystem::path schema =
        std::filesystem::path(TESSAL_SHARED_DIR) / "genicam" / "GenApiSchema_Version_1_1.xsd";
    ASSERT_TRUE(std::filesystem::is_regular_file(schema)) << schema;
    const std::filesystem::path data = GenApiTest::DataPath("");
    int valid = 0;
    int refused = 0;
    std::vector<std::filesystem::path> documents(std::filesystem::recursive_directory_iterator(data), {});
    // The converter's register description, kept beside the converter's tests.
    documents.push_back(data / "../tarvikutility/ImageFormatConverter.xml");
    for (const std::filesystem::path& path : documents)
    {
        if (path.extension() != ".xml")
            continue;
        const std::string relative = std::filesystem::relative(path, data).string();
        const std::string text = GenApiTest::ReadDocument(relative);
        const size_t mark = text.find("<!-- refused: ");
        const std::string expected = mark == std::string::npos
                                         ? "no exception"
                                         : text.substr(mark + 14, text.find(" -->", mark) - mark - 14);
        CLock lock;
        EXPECT_EQ(failureOf([&] { CNodeMapRef ref(GenApiTest::CreateMap(text, &lock)); }), expected)
            << relative;
        EXPECT_FALSE(GenApiTest::IsLockedElsewhere(lock)) << relative;
        EXPECT_EQ(CNodeMapFactory(ContentType_Xml, text.data(), text.size()).IsLoaded(),
                  mark == std::string::npos);
        refused += mark == std::string::npos ? 0 : 1;

        const bool schemaValid =
            Succeeds("xmllint --noout --schema '" + schema.string() + "' '" + path.string() + "'");
        valid += schemaValid ? 1 : 0;
        EXPECT_EQ(schemaValid, mark == std::string::npos || relative.starts_with("refused_beyond_schema/"))
            << relative
            << (schemaValid ? ": the schema accepts, the runtime refuses" : ": the schema refuses");
    }
    EXPECT_GE(refused, 22) << "the documents of tests/data/genicam were not found";
    EXPECT_GE(valid, 5 + 6);
}

} // namespace
