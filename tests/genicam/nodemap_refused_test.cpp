// Documents the runtime refuses, each with the exception class and a text that
// names the problem and the node.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

#include <string>

using namespace GenApi;

namespace
{

struct RefusedDocument
{
    const char* file;
    const char* exception;
    const char* description;
};

std::ostream& operator<<(std::ostream& stream, const RefusedDocument& document)
{
    return stream << document.file;
}

class NodeMapRefused : public ::testing::TestWithParam<RefusedDocument>
{
};

TEST_P(NodeMapRefused, ThrowsAGenICamExceptionThatNamesTheProblem)
{
    const RefusedDocument& document = GetParam();
    const std::string text = GenApiTest::ReadDocument(document.file);
    ASSERT_FALSE(text.empty()) << "missing test document";
    CLock lock;
    EXPECT_EQ(GenApiTest::ErrorText([&] { CNodeMapRef ref(GenApiTest::CreateMap(text, &lock)); }),
              std::string(document.exception) + ": " + document.description);
    EXPECT_FALSE(GenApiTest::IsLockedElsewhere(lock)) << "a refused build leaves the lock free";
    EXPECT_FALSE(CNodeMapFactory(ContentType_Xml, text.data(), text.size()).IsLoaded());
}

const RefusedDocument refusedDocuments[] = {
    {"refused/tooltip_with_less_than.xml", "RuntimeException",
     "Register description is not well-formed XML: Could not determine tag "
     "type at line 4"},
    {"refused/unclosed_element.xml", "RuntimeException",
     "Register description is not well-formed XML: Start-end tags mismatch at "
     "line 6"},
    {"refused/undefined_entity.xml", "RuntimeException",
     "Register description is not well-formed XML: the reference '&nbsp;' to "
     "an entity that is not defined "
     "in "
     "the text of element 'ToolTip'"},
    {"refused/wrong_root.xml", "RuntimeException",
     "Register description has the root element 'DeviceDescription' instead of "
     "RegisterDescription"},
    {"refused/wrong_namespace.xml", "RuntimeException",
     "Register description is in the namespace "
     "'http://www.genicam.org/GenApi/Version_1_0' instead of "
     "http://www.genicam.org/GenApi/Version_1_1"},
    {"refused/schema_version_2.xml", "RuntimeException",
     "Register description has schema version 2.1; this runtime reads 1.1"},
    {"refused/missing_model_name.xml", "RuntimeException",
     "Register description lacks the attribute ModelName"},
    {"refused/dangling_pvalue.xml", "PropertyException",
     "[Enable] pValue names 'EnableValue', which is not a node of this "
     "document"},
    {"refused/duplicate_name.xml", "PropertyException", "[R] is defined twice: at lines 3 and 10"},
    {"refused/register_without_port.xml", "PropertyException", "[R] register has no pPort"},
    {"refused/pport_names_category.xml", "PropertyException", "[R] pPort names 'Root', which is not a Port"},
    {"refused/unknown_child_element.xml", "PropertyException",
     "[Gain] element 'Maximum' is not part of a Integer in this runtime"},
    {"refused/length_not_a_number.xml", "PropertyException",
     "[R] Length 'four' is not a decimal or 0x-prefixed hexadecimal integer"},
    {"refused/value_and_pvalue.xml", "PropertyException", "[Gain] has both Value and pValue"},
    {"refused/enumeration_without_entries.xml", "PropertyException", "[Mode] has no EnumEntry"},
    {"refused/visibility_word.xml", "PropertyException",
     "[Gain] Visibility 'Everybody' is none of Beginner, Expert, Guru, "
     "Invisible"},
    {"refused_beyond_schema/circular_pvalue.xml", "PropertyException",
     "[A] depends on itself: A -> B -> C -> A"},
    {"refused_beyond_schema/intreg_length_9.xml", "PropertyException", "[R] Length 9 is not between 1 and 8"},
    {"refused_beyond_schema/min_above_max.xml", "PropertyException", "[Gain] Min 10 is above Max 5"},
    {"refused_beyond_schema/entries_with_one_value.xml", "PropertyException",
     "[Mode] entries 'Off' and 'Still' have the same value 0"},
    {"refused_beyond_schema/command_node.xml", "PropertyException",
     "[Start] element 'Command' at line 3 is no node class of this runtime"},
};

INSTANTIATE_TEST_SUITE_P(Documents, NodeMapRefused, ::testing::ValuesIn(refusedDocuments));

// Refusals that need no file: the text itself is the point.
TEST(NodeMapRefusedText, EmptyTextAndBytesThatAreNoXmlCharacters)
{
    const std::string gate = GenApiTest::ReadDocument("gate.xml");
    struct Case
    {
        std::string text;
        const char* description;
    };
    std::string withNul = gate;
    withNul.insert(withNul.find("<Category"), std::string(1, '\0'));
    std::string withLatin1 = gate;
    withLatin1.insert(withLatin1.find("data</ToolTip>"), "\xE9");
    std::string trailing = gate + "trailing";
    const Case cases[] = {
        {"", "Register description is not well-formed XML: it has no root element"},
        {withNul, "Register description is not well-formed XML: character U+0000 "
                  "at line 47 is not allowed in XML"},
        {withLatin1, "Register description is not well-formed XML: byte 0xE9 at "
                     "line 5 starts an invalid UTF-8 sequence"},
        {trailing, "Register description is not well-formed XML: text outside "
                   "the root element"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(GenApiTest::ErrorText([&] { CNodeMapRef ref(GenApiTest::CreateMap(c.text)); }),
                  std::string("RuntimeException: ") + c.description);
}

} // namespace
