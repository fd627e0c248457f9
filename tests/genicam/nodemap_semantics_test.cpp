// Semantics that the reference documents do not show: pIsImplemented, Groups,
// escaped texts, failing ports and callbacks, conversions between integer and
// float nodes, circles through the state pointers.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

#include <stdexcept>

using namespace GenApi;
using GenApiTest::CMemoryPort;
using GenApiTest::ErrorText;

namespace
{

// A document of the given nodes, with the head of the reference documents and a port "Device".
std::string Document(const std::string& nodes)
{
    const std::string gate = GenApiTest::ReadDocument("gate.xml");
    const std::string head = gate.substr(0, gate.find("\n\n") + 1);
    return head + nodes + "    <Port Name=\"Device\"/>\n</RegisterDescription>\n";
}

std::string IntReg(const std::string& name, int address)
{
    return "    <IntReg Name=\"" + name + "\">\n        <Address>" + std::to_string(address) +
           "</Address>\n        <Length>8</Length>\n        "
           "<AccessMode>RW</AccessMode>\n        "
           "<pPort>Device</pPort>\n        <Cachable>NoCache</Cachable>\n"
           "        <Sign>Signed</Sign>\n        "
           "<Endianess>LittleEndian</Endianess>\n    </IntReg>\n";
}

TEST(NodeMapSemantics, NotImplementedWinsOverEverythingElse)
{
    CNodeMapRef ref(GenApiTest::CreateMap(
        Document("    <Integer Name=\"Gain\">\n"
                 "        <pIsImplemented>GainImplemented</pIsImplemented>\n"
                 "        <pIsAvailable>GainAvailable</pIsAvailable>\n"
                 "        <pValue>GainValue</pValue>\n"
                 "    </Integer>\n" +
                 IntReg("GainImplemented", 0) + IntReg("GainAvailable", 8) + IntReg("GainValue", 16))));
    CMemoryPort port;
    ref._Connect(&port);
    CIntegerPtr gain = ref._GetNode("Gain");
    EXPECT_EQ(gain->GetAccessMode(), NI);
    EXPECT_EQ(ErrorText([&] { gain->GetValue(); }),
              "AccessException: [Gain] cannot be read: it is not implemented");
    port.Poke<int64_t>(0, 1);
    EXPECT_EQ(gain->GetAccessMode(), NA);
}

TEST(NodeMapSemantics, GroupsAreFlattenedAndTextsUnescaped)
{
    CNodeMapRef ref(
        GenApiTest::CreateMap(Document("    <Group Comment=\"outer\">\n"
                                       "        <Group Comment=\"inner\">\n"
                                       "            <Integer Name=\"Gain\">\n"
                                       "                <ToolTip>Gain &lt; 10 &amp; &#x263A;</ToolTip>\n"
                                       "                <Description><![CDATA[raw <text> & more]]>"
                                       "</Description>\n"
                                       "                <Value>3</Value>\n"
                                       "            </Integer>\n"
                                       "        </Group>\n"
                                       "    </Group>\n")));
    INode* gain = ref._GetNode("Gain");
    ASSERT_NE(gain, nullptr);
    EXPECT_EQ(gain->GetToolTip(), "Gain < 10 & \xE2\x98\xBA");
    EXPECT_EQ(gain->GetDescription(), "raw <text> & more");
}

TEST(NodeMapSemantics, CirclesThroughStatePointersAreRefused)
{
    const std::string text = Document("    <Integer Name=\"Gain\">\n"
                                      "        <pIsLocked>Gain</pIsLocked>\n"
                                      "        <Value>3</Value>\n"
                                      "    </Integer>\n");
    EXPECT_EQ(ErrorText([&] { CNodeMapRef ref(GenApiTest::CreateMap(text)); }),
              "PropertyException: [Gain] depends on itself: Gain -> Gain");
}

class CFailingPort final : public CMemoryPort
{
public:
    void Read(void* pBuffer, int64_t Address, int64_t Length) override
    {
        if (fail)
            throw std::runtime_error("device gone");
        CMemoryPort::Read(pBuffer, Address, Length);
    }
    bool fail = false;
};

TEST(NodeMapSemantics, FailingPortPassesItsExceptionOnAndLeavesTheMapUsable)
{
    CLock lock;
    CNodeMapRef ref(GenApiTest::CreateMap(Document(IntReg("Gain", 0)), &lock));
    CFailingPort port;
    ref._Connect(&port);
    CIntegerPtr gain = ref._GetNode("Gain");
    port.fail = true;
    EXPECT_THROW(gain->GetValue(), std::runtime_error);
    EXPECT_FALSE(GenApiTest::IsLockedElsewhere(lock));
    port.fail = false;
    gain->SetValue(5);
    EXPECT_EQ(gain->GetValue(), 5);
}

TEST(NodeMapSemantics, FailingCallbackDoesNotStopTheWriteNorTheOtherCallbacks)
{
    CNodeMapRef ref(GenApiTest::CreateMap(Document(IntReg("Gain", 0))));
    CMemoryPort port;
    ref._Connect(&port);
    CIntegerPtr gain = ref._GetNode("Gain");
    int insideCalls = 0;
    int outsideCalls = 0;
    Register(gain->GetNode(), [](INode*) { throw GenICam::RuntimeException("observer failed", "here", 1); });
    Register(gain->GetNode(), [&](INode*) { ++insideCalls; });
    Register(
        gain->GetNode(), [&](INode*) { ++outsideCalls; }, cbPostOutsideLock);

    EXPECT_THROW(gain->SetValue(9), GenICam::RuntimeException);
    EXPECT_EQ(port.Peek<int64_t>(0), 9);
    EXPECT_EQ(insideCalls, 1);
    EXPECT_EQ(outsideCalls, 1);
}

TEST(NodeMapSemantics, CallbackMayUseTheMapAndSeesTheNewValue)
{
    CNodeMapRef ref(GenApiTest::CreateMap(Document(IntReg("Gain", 0) + IntReg("Echo", 8))));
    CMemoryPort port;
    ref._Connect(&port);
    CIntegerPtr gain = ref._GetNode("Gain");
    CIntegerPtr echo = ref._GetNode("Echo");
    int echoCalls = 0;
    Register(gain->GetNode(), [&](INode*) { echo->SetValue(gain->GetValue() * 2); });
    Register(echo->GetNode(), [&](INode*) { ++echoCalls; });
    gain->SetValue(21);
    EXPECT_EQ(echo->GetValue(), 42);
    EXPECT_EQ(echoCalls, 1) << "an invalidation raised by a callback is carried "
                               "out in the same access";
}

TEST(NodeMapSemantics, IntegerAndFloatNodesPointAtEachOther)
{
    CNodeMapRef ref(GenApiTest::CreateMap(Document("    <Float Name=\"Exposure\">\n"
                                                   "        <pValue>ExposureRaw</pValue>\n"
                                                   "        <Min>0</Min>\n"
                                                   "        <Max>1000</Max>\n"
                                                   "        <Inc>0.5</Inc>\n"
                                                   "    </Float>\n" +
                                                   IntReg("ExposureRaw", 0) +
                                                   "    <Integer Name=\"Rounded\">\n"
                                                   "        <pValue>Exposure</pValue>\n"
                                                   "    </Integer>\n")));
    CMemoryPort port;
    ref._Connect(&port);
    CFloatPtr exposure = ref._GetNode("Exposure");
    exposure->SetValue(12.0);
    EXPECT_EQ(CIntegerPtr(ref._GetNode("Rounded"))->GetValue(), 12);
    EXPECT_THROW(exposure->SetValue(12.25), GenICam::OutOfRangeException) << "off the grid of 0.5";
    exposure->SetValue(12.5);
    EXPECT_EQ(port.Peek<int64_t>(0), 13) << "the integer register takes the nearest integer";
}

} // namespace
