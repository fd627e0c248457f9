// Enumerations with a constant value and with a register behind them, one of
// whose entries comes and goes.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

using namespace GenApi;
using GenApiTest::CMemoryPort;
using GenApiTest::ErrorText;

namespace
{

class NodeMapEnumeration : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ref = GenApiTest::CreateMap(GenApiTest::ReadDocument("enumeration.xml"));
        ASSERT_TRUE(ref._Connect(&port));
        port.Poke<uint32_t>(0x100, 0x01080001); // Mono8
        alignment = ref._GetNode("OutputBitAlignment");
        pixelFormat = ref._GetNode("PixelFormat");
    }

    CNodeMapRef ref;
    CMemoryPort port;
    CEnumerationPtr alignment;
    CEnumerationPtr pixelFormat;
};

TEST_F(NodeMapEnumeration, ConstantEnumerationTakesSymbolsAndValuesOfItsEntries)
{
    EXPECT_EQ(alignment->ToString(), "LsbAligned");
    *alignment = "MsbAligned";
    EXPECT_EQ(alignment->GetIntValue(), 1);
    alignment->SetIntValue(0);
    EXPECT_EQ(alignment->GetCurrentEntry()->GetSymbolic(), "LsbAligned");
    EXPECT_EQ(ErrorText([&] { alignment->SetIntValue(2); }),
              "OutOfRangeException: [OutputBitAlignment] value 2 is the value of "
              "no entry");
    EXPECT_THROW(alignment->FromString("Centered"), GenICam::InvalidArgumentException);
    EXPECT_EQ(alignment->GetIntValue(), 0);

    // Entries are nodes of the map under their own names.
    NodeList_t entries;
    alignment->GetEntries(entries);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(ref._GetNode("EnumEntry_OutputBitAlignment_MsbAligned"), entries[1]);
    EXPECT_EQ(CEnumEntryPtr(entries[1])->GetValue(), 1);
    EXPECT_EQ(alignment->GetEntryByName("MsbAligned"), CEnumEntryPtr(entries[1]).operator->());
    EXPECT_EQ(alignment->GetEntry(7), nullptr);
}

TEST_F(NodeMapEnumeration, EntryAvailabilityDecidesWhatCanBeChosen)
{
    StringList_t symbols;
    pixelFormat->GetSymbolics(symbols);
    EXPECT_EQ(symbols, (StringList_t{"Mono8", "Mono16"}));
    EXPECT_EQ(ErrorText([&] { *pixelFormat = "BGRa8"; }),
              "AccessException: [PixelFormat] entry 'BGRa8' is not available");

    port.Poke<uint8_t>(0x104, 1);
    pixelFormat->GetSymbolics(symbols);
    EXPECT_EQ(symbols.size(), 3u);
    *pixelFormat = "BGRa8";
    EXPECT_EQ(port.Peek<uint32_t>(0x100), 0x02200017u);
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

} // namespace
