// Enumerations with a constant value and with a register behind them, one of
// whose entries comes and goes.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

using namespace GenApi;
using GenApiTest::CMemoryPort;

namespace
{

constexpr int64_t mono8 = 0x01080001;
constexpr int64_t bgra8 = 0x02200017;

class NodeMapEnumeration : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ref = GenApiTest::CreateMap(GenApiTest::ReadDocument("enumeration.xml"));
        ASSERT_TRUE(ref._Connect(&port));
        port.Poke<uint32_t>(0x100, mono8);
        alignment = ref._GetNode("OutputBitAlignment");
        pixelFormat = ref._GetNode("PixelFormat");
    }

    CNodeMapRef ref;
    CMemoryPort port;
    CEnumerationPtr alignment;
    CEnumerationPtr pixelFormat;
};

TEST_F(NodeMapEnumeration, ConstantEnumerationTakesSymbolsAndValues)
{
    EXPECT_EQ(alignment->ToString(), "LsbAligned");
    *alignment = "MsbAligned";
    EXPECT_EQ(alignment->GetIntValue(), 1);
    alignment->SetIntValue(0);
    EXPECT_EQ(alignment->GetCurrentEntry()->GetSymbolic(), "LsbAligned");

    try
    {
        alignment->SetIntValue(2);
        FAIL() << "a value without entry was taken";
    }
    catch (const GenICam::OutOfRangeException& e)
    {
        EXPECT_STREQ(e.GetDescription(), "[OutputBitAlignment] value 2 is the value of no entry");
    }
    EXPECT_THROW(alignment->FromString("Centered"), GenICam::InvalidArgumentException);
    EXPECT_EQ(alignment->GetIntValue(), 0);
}

TEST_F(NodeMapEnumeration, EntriesAreNodesOfTheMapUnderTheirOwnNames)
{
    NodeList_t entries;
    alignment->GetEntries(entries);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[1]->GetName(), "EnumEntry_OutputBitAlignment_MsbAligned");
    EXPECT_EQ(ref._GetNode("EnumEntry_OutputBitAlignment_MsbAligned"), entries[1]);
    CEnumEntryPtr msb = entries[1];
    EXPECT_EQ(msb->GetValue(), 1);
    EXPECT_EQ(msb->GetSymbolic(), "MsbAligned");
    EXPECT_DOUBLE_EQ(msb->GetNumericValue(), 1.0);
    EXPECT_EQ(alignment->GetEntryByName("MsbAligned"), msb.operator->());
    EXPECT_EQ(alignment->GetEntry(7), nullptr);
}

TEST_F(NodeMapEnumeration, EntryAvailabilityDecidesWhatCanBeChosen)
{
    StringList_t symbols;
    pixelFormat->GetSymbolics(symbols);
    EXPECT_EQ(symbols, (StringList_t{"Mono8", "Mono16"}));
    try
    {
        *pixelFormat = "BGRa8";
        FAIL() << "an unavailable entry was chosen";
    }
    catch (const GenICam::AccessException& e)
    {
        EXPECT_STREQ(e.GetDescription(), "[PixelFormat] entry 'BGRa8' is not available");
    }

    port.Poke<uint8_t>(0x104, 1);
    pixelFormat->GetSymbolics(symbols);
    EXPECT_EQ(symbols.size(), 3u);
    *pixelFormat = "BGRa8";
    EXPECT_EQ(port.Peek<uint32_t>(0x100), static_cast<uint32_t>(bgra8));
    EXPECT_EQ(pixelFormat->ToString(), "BGRa8");
}

TEST_F(NodeMapEnumeration, RegisterValueWithoutEntryIsReportedOnlyWhenAskedFor)
{
    port.Poke<uint32_t>(0x100, 0x1234);
    EXPECT_EQ(pixelFormat->GetIntValue(), 0x1234);
    EXPECT_EQ(pixelFormat->GetCurrentEntry(), nullptr);
    EXPECT_THROW(pixelFormat->GetIntValue(true), GenICam::OutOfRangeException);
    EXPECT_THROW(pixelFormat->ToString(), GenICam::OutOfRangeException);
}

TEST_F(NodeMapEnumeration, HiddenFeatureStaysUsable)
{
    // What the converter does with features its user must not touch.
    CNodePtr padding = ref._GetNode("OutputPaddingX");
    padding->ImposeVisibility(Invisible);
    EXPECT_EQ(padding->GetVisibility(), Invisible);
    CIntegerPtr(padding)->SetValue(12);
    EXPECT_EQ(CIntegerPtr(padding)->GetValue(), 12);
}

} // namespace
