// The converter's register description: the exact text is kept as a reference
// file, which the schema test of the GenICam documents checks too.
#include "../genicam/genapi_test_support.h"
#include "ConverterRegisterDescription.h"

TEST(ConverterRegisterDescription, MatchesTheReferenceText)
{
    const std::string reference = GenApiTest::ReadDocument("../tarvikutility/ImageFormatConverter.xml");
    ASSERT_FALSE(reference.empty()) << "the reference file is missing";
    EXPECT_EQ(Tarvik::Conversion::BuildConverterRegisterDescription(), reference);
}
