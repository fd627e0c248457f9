// Features over the documents of tests/data/genicam: values and limits in
// registers or constants, access modes from state registers and the port, and
// the reasons of refused accesses.
#include "genapi_test_support.h"

#include <limits>
#include <tuple>

using namespace GenApi;

namespace
{

using NodeMapFeatures = GenApiTest::CMapTest;

// gate.xml: a Boolean "Enable" whose value, availability and lock sit at 0x0, 0x8 and 0x10 of "EnablePort".
TEST_F(NodeMapFeatures, GateHoldsItsNodesInDocumentOrderAndReadsItsRegistersEveryTime)
{
    Load(GenApiTest::ReadDocument("gate.xml"), "EnablePort");
    NodeList_t nodes;
    ref._GetNodes(nodes);
    std::string names;
    for (INode* node : nodes)
        names += std::string(node->GetName()) + " ";
    EXPECT_EQ(names, "Enable EnableValue EnableIsAvailable EnableIsLocked EnablePort Root ");
    EXPECT_EQ(ref._GetNode("Missing"), nullptr);
    EXPECT_FALSE(ref._Connect(&port, "Root") || ref._Connect(&port, "Missing")) << "a category is no port";

    CBooleanPtr enable = ref._GetNode("Enable");
    INode* node = enable->GetNode();
    EXPECT_EQ(node->GetToolTip(), "Enable passthrough of data");
    EXPECT_TRUE(node->IsFeature());
    EXPECT_FALSE(ref._GetNode("EnableValue")->IsFeature());
    EXPECT_EQ(node->GetVisibility(), Guru);
    node->ImposeVisibility(Invisible);
    node->ImposeVisibility(Beginner);
    EXPECT_EQ(node->GetVisibility(), Invisible) << "an imposed visibility only narrows";

    port.Poke<uint64_t>(0x8, 1);
    EXPECT_FALSE(enable->GetValue());
    port.Poke<uint64_t>(0x0, 1);
    EXPECT_TRUE(enable->GetValue()) << "NoCache: the port is read again";
    enable->FromString("false");
    EXPECT_EQ(port.Peek<uint64_t>(0x0), 0u);
    enable->SetValue(true);
    EXPECT_EQ(enable->ToString(), "true");
    EXPECT_THROW(enable->FromString("maybe"), GenICam::InvalidArgumentException);

    // The access mode follows the state registers and the port.
    port.Poke<uint64_t>(0x8, 0);
    EXPECT_EQ(enable->GetAccessMode(), NA) << "EnableIsAvailable reads 0";
    EXPECT_THROW(enable->GetValue(), GenICam::AccessException);
    EXPECT_EQ(failureOf([&] { enable->SetValue(true); }),
              "AccessException: [Enable] cannot be written: it is not available");
    port.Poke<uint64_t>(0x8, 1);
    EXPECT_EQ(enable->GetAccessMode(), RW);

    port.Poke<uint64_t>(0x10, 1);
    EXPECT_EQ(enable->GetAccessMode(), RO);
    EXPECT_TRUE(enable->GetValue()) << "a locked feature stays readable";
    EXPECT_EQ(failureOf([&] { enable->SetValue(false); }),
              "AccessException: [Enable] cannot be written: it is locked");
    EXPECT_EQ(port.Peek<uint64_t>(0x0), 1u);
    port.Poke<uint64_t>(0x10, 0);

    EXPECT_THROW(CIntegerPtr(ref._GetNode("EnableIsLocked"))->SetValue(1), GenICam::AccessException)
        << "a register of AccessMode RO";
    port.accessMode = RO;
    EXPECT_EQ(enable->GetAccessMode(), RO);
    ref._Connect(nullptr, "EnablePort");
    EXPECT_EQ(enable->GetAccessMode(), NA) << "without a port nothing is available";
    EXPECT_EQ(failureOf([&] { CIntegerPtr(ref._GetNode("EnableValue"))->GetValue(); }),
              "AccessException: [EnableValue] cannot be read: it is not available (port 'EnablePort' is not "
              "connected)");
}

// signed_integer.xml: "Offset" with value, minimum, maximum and increment at 0x0 to 0x18,
// "Width" of constants 640, 16 to 4096, increment 16.
TEST_F(NodeMapFeatures, IntegersTakeValueAndLimitsFromRegistersOrConstantsAndRefuseOthers)
{
    Load(GenApiTest::ReadDocument("signed_integer.xml"));
    port.Poke<int64_t>(0x8, -100);
    port.Poke<int64_t>(0x10, 60);
    port.Poke<int64_t>(0x18, 4);
    CIntegerPtr offset = ref._GetNode("Offset");
    CIntegerPtr width = ref._GetNode("Width");
    EXPECT_EQ(offset->GetMax(), 60);
    port.Poke<int64_t>(0x10, 100);
    EXPECT_EQ(offset->GetMax(), 100) << "NoCache limits are read again";
    EXPECT_EQ(offset->GetMin(), -100);
    EXPECT_EQ(offset->GetInc(), 4);
    offset->SetValue(-96);
    EXPECT_EQ(offset->ToString(), "-96");
    offset->FromString("0x10");
    EXPECT_EQ(port.Peek<int64_t>(0x0), 16);
    EXPECT_EQ(width->GetValue(), 640);
    width->SetValue(1024);

    const std::tuple<CIntegerPtr, int64_t, const char*> refused[] = {
        {offset, -104, "[Offset] value -104 below minimum -100"},
        {offset, 104, "[Offset] value 104 above maximum 100"},
        {offset, -98, "[Offset] value -98 off the increment grid of minimum -100 and increment 4"},
        {offset, std::numeric_limits<int64_t>::min(),
         "[Offset] value -9223372036854775808 below minimum -100"},
        {width, 1000, "[Width] value 1000 off the increment grid of minimum 16 and increment 16"},
    };
    for (const auto& [node, value, text] : refused)
        EXPECT_EQ(failureOf([&] { node->SetValue(value); }), std::string("OutOfRangeException: ") + text);
    EXPECT_EQ(port.Peek<int64_t>(0x0), 16) << "a refused write leaves the register alone";
    EXPECT_EQ(width->GetValue(), 1024);

    offset->SetValue(100);
    EXPECT_EQ(port.Peek<int64_t>(0x0), 100) << "the maximum is on the grid";
    offset->SetValue(-98, false);
    EXPECT_EQ(port.Peek<int64_t>(0x0), -98) << "Verify false skips the checks";
    EXPECT_THROW(offset->GetValue(true), GenICam::OutOfRangeException);
}

// shared_port.xml: on the port "Params" a Float "Fps" with value, maximum, minimum,
// availability and lock at 0x0 to 0x20, and a Boolean "ThrottleMode" at 0x30.
TEST_F(NodeMapFeatures, FeaturesOfOnePortUseTheirOwnAddressesAndFloatLimits)
{
    Load(GenApiTest::ReadDocument("shared_port.xml"), "Params");
    port.Poke<double>(0x0, 25.0);
    port.Poke<double>(0x8, 1000.0);
    port.Poke<double>(0x10, 0.5);
    port.Poke<uint64_t>(0x18, 1);
    CFloatPtr fps = ref._GetNode("Fps");
    CBooleanPtr throttle = ref._GetNode("ThrottleMode");
    EXPECT_DOUBLE_EQ(fps->GetValue(), 25.0);
    EXPECT_DOUBLE_EQ(fps->GetMin(), 0.5);
    EXPECT_FALSE(fps->HasInc());
    const std::pair<double, const char*> refused[] = {
        {2000.0, "[Fps] value 2000 above maximum 1000"},
        {0.25, "[Fps] value 0.25 below minimum 0.5"},
        {std::numeric_limits<double>::quiet_NaN(), "[Fps] value NaN is not a number"},
        {std::numeric_limits<double>::infinity(), "[Fps] value INF above maximum 1000"},
    };
    for (const auto& [value, text] : refused)
        EXPECT_EQ(failureOf([&] { fps->SetValue(value); }), std::string("OutOfRangeException: ") + text);
    EXPECT_DOUBLE_EQ(port.Peek<double>(0x0), 25.0);

    throttle->SetValue(true);
    fps->SetValue(12.5);
    EXPECT_DOUBLE_EQ(port.Peek<double>(0x0), 12.5);
    EXPECT_EQ(port.Peek<uint64_t>(0x30), 1u);
    EXPECT_EQ(fps->ToString(), "12.5");

    port.Poke<uint64_t>(0x20, 1);
    EXPECT_EQ(fps->GetAccessMode(), RO);
    EXPECT_EQ(throttle->GetAccessMode(), RW) << "the lock of one feature leaves the other alone";
    port.Poke<uint64_t>(0x30, 7);
    EXPECT_THROW(throttle->GetValue(), GenICam::OutOfRangeException) << "7 is neither OnValue nor OffValue";
}

TEST_F(NodeMapFeatures, IntegerAndFloatNodesPointAtEachOtherAndShortRegistersExtendTheSign)
{
    Load(GenApiTest::Document(
        "<Float Name=\"Exposure\"><pValue>ExposureRaw</pValue><Min>0</Min><Max>1000</Max>"
        "<Inc>0.5</Inc></Float>\n" +
        GenApiTest::IntReg("ExposureRaw", 0) +
        "<Integer Name=\"Rounded\"><pValue>Exposure</pValue></Integer>\n" +
        GenApiTest::IntReg("Short", 8, 2)));
    port.Poke<uint16_t>(8, 0xFFFE);
    EXPECT_EQ(CIntegerPtr(ref._GetNode("Short"))->GetValue(), -2);
    EXPECT_EQ(CIntegerPtr(ref._GetNode("Short"))->GetMin(), -32768);
    CFloatPtr exposure = ref._GetNode("Exposure");
    exposure->SetValue(12.0);
    EXPECT_EQ(CIntegerPtr(ref._GetNode("Rounded"))->GetValue(), 12);
    EXPECT_THROW(exposure->SetValue(12.25), GenICam::OutOfRangeException) << "off the grid of 0.5";
    exposure->SetValue(12.5);
    EXPECT_EQ(port.Peek<int64_t>(0x0), 13) << "the integer register takes the nearest integer";
}

// enumeration.xml: "OutputBitAlignment" of a constant value; "PixelFormat" in a
// register at 0x100, whose entry BGRa8 is available while the byte at 0x104 is 1.
TEST_F(NodeMapFeatures, EnumerationsChooseAmongTheirAvailableEntries)
{
    Load(GenApiTest::ReadDocument("enumeration.xml"));
    CEnumerationPtr alignment = ref._GetNode("OutputBitAlignment");
    EXPECT_EQ(alignment->ToString(), "LsbAligned");
    *alignment = "MsbAligned";
    EXPECT_EQ(alignment->GetIntValue(), 1);
    EXPECT_EQ(failureOf([&] { alignment->SetIntValue(2); }),
              "OutOfRangeException: [OutputBitAlignment] value 2 is the value of no entry");
    EXPECT_THROW(alignment->FromString("Centered"), GenICam::InvalidArgumentException);
    NodeList_t entries;
    alignment->GetEntries(entries);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(ref._GetNode("EnumEntry_OutputBitAlignment_MsbAligned"), entries[1]);
    EXPECT_EQ(alignment->GetEntryByName("MsbAligned")->GetValue(), 1);
    EXPECT_EQ(alignment->GetEntry(7), nullptr);

    CEnumerationPtr pixelFormat = ref._GetNode("PixelFormat");
    port.Poke<uint32_t>(0x100, 0x01080001);
    StringList_t symbols;
    pixelFormat->GetSymbolics(symbols);
    EXPECT_EQ(symbols, (StringList_t{"Mono8", "Mono16"}));
    EXPECT_EQ(failureOf([&] { *pixelFormat = "BGRa8"; }),
              "AccessException: [PixelFormat] entry 'BGRa8' is not available");
    port.Poke<uint8_t>(0x104, 1);
    *pixelFormat = "BGRa8";
    EXPECT_EQ(port.Peek<uint32_t>(0x100), 0x02200017u);
    EXPECT_EQ(pixelFormat->GetCurrentEntry()->GetSymbolic(), "BGRa8");

    port.Poke<uint32_t>(0x100, 0x1234);
    EXPECT_EQ(pixelFormat->GetIntValue(), 0x1234) << "a value without entry is refused only when asked";
    EXPECT_EQ(pixelFormat->GetCurrentEntry(), nullptr);
    EXPECT_THROW(pixelFormat->GetIntValue(true), GenICam::OutOfRangeException);
    EXPECT_THROW(pixelFormat->ToString(), GenICam::OutOfRangeException);
}

} // namespace
