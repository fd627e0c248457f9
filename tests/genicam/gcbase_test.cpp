#include <GCBase/GCException.h>

#include <gtest/gtest.h>

using namespace GenICam;

TEST(GcString, ComparesAndOrdersLikeItsText)
{
    EXPECT_EQ(gcstring("abc") + "def", gcstring("abcdef"));
    EXPECT_TRUE(gcstring("a") < gcstring("b"));
    EXPECT_EQ(gcstring(nullptr), gcstring(""));
    EXPECT_EQ(gcstring("x\0y", 3).size(), 3u);
}

TEST(GcException, CarriesFormattedDescriptionAndSourcePositionAndIsCaughtByItsBase)
{
    try
    {
        throw OUT_OF_RANGE_EXCEPTION("[%s] value %d above maximum %d", "Fps", 2000, 1000);
    }
    catch (const GenericException& e)
    {
        EXPECT_STREQ(e.GetDescription(), "[Fps] value 2000 above maximum 1000");
        EXPECT_STREQ(e.GetExceptionName(), "OutOfRangeException");
        // The build maps the source directory away: positions are relative.
        EXPECT_STREQ(e.GetSourceFileName(), "tests/genicam/gcbase_test.cpp");
        EXPECT_GT(e.GetSourceLine(), 0u);
        EXPECT_NE(std::string(e.what()).find("[Fps] value 2000"), std::string::npos);
    }
    EXPECT_THROW(throw INVALID_ARGUMENT_EXCEPTION("x"), InvalidArgumentException);
    EXPECT_THROW(throw BAD_ALLOC_EXCEPTION("x"), std::exception);
}
