#include "AdapterTestSupport.h"
#include "RecordingConnector.h"
#include "TestNode.h"
#include "detail/CategoryNodeMapPort.h"
#include "detail/DataNodeMapPort.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>
#include <sstream>

namespace AdapterTest
{
namespace
{

using namespace AnythingToNodeMapAdapter::Detail;
using GenICam::gcstring;

using Bytes = std::array<uint8_t, 16>;
constexpr uint8_t fill = 0xA5;

Bytes filled()
{
    Bytes bytes;
    bytes.fill(fill);
    return bytes;
}

template <typename T>
T wordOf(const Bytes& bytes)
{
    T value;
    std::memcpy(&value, bytes.data(), sizeof value);
    return value;
}

template <typename T>
Bytes bytesOf(T value)
{
    Bytes bytes = filled();
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

// Reads one register of 8 bytes into a buffer of 16 filled bytes; the tail must stay.
template <typename T>
T readWord(CBasicNodeMapPort& port, int64_t address)
{
    Bytes bytes = filled();
    port.readRegister(bytes.data(), address, 8);
    for (size_t i = 8; i < bytes.size(); ++i)
    {
        EXPECT_EQ(bytes[i], fill) << "byte " << i << " written beyond the register";
    }
    return wordOf<T>(bytes);
}

class NodeMapPort : public ::testing::Test
{
protected:
    NodeMapPort()
        : boolean(node.makeEnablePort(), 0)
        , integer(node.makeWidthPort(16, 4096, 16), 0)
        , floating(node.makeFpsPort(0.5, 1000.0), 0)
    {
    }

    TestNode node;
    CBooleanNodeMapPort boolean;
    CIntegerNodeMapPort integer;
    CFloatNodeMapPort floating;
};

TEST_F(NodeMapPort, FloatServesDoublesAndFlagWords)
{
    node.setFps(12.5);
    EXPECT_EQ(readWord<double>(floating, 0), 12.5);
    EXPECT_EQ(readWord<double>(floating, 8), 1000.0);
    EXPECT_EQ(readWord<double>(floating, 16), 0.5);
    EXPECT_EQ(readWord<uint64_t>(floating, 24), 1u);
    EXPECT_EQ(readWord<uint64_t>(floating, 32), 0u);
}

TEST_F(NodeMapPort, LockAndAvailabilityRegistersReadTheFlagsAlsoWithoutDynamicState)
{
    struct Case
    {
        bool available;
        bool writable;
    };
    for (const Case c : {Case{true, true}, Case{false, false}, Case{true, false}, Case{false, true}})
    {
        SCOPED_TRACE(testing::Message() << "available " << c.available << " writable " << c.writable);
        CIntegerNodeMapPort port(std::make_shared<WidthRelay>(&node, "W", "", "", "", "Expert", c.available,
                                                              c.writable, false, false, 0, 1, 1,
                                                              "PureNumber"),
                                 0);
        EXPECT_EQ(readWord<uint64_t>(port, 32), c.available ? 1u : 0u);
        EXPECT_EQ(readWord<uint64_t>(port, 40), c.writable ? 0u : 1u);
    }
}

TEST_F(NodeMapPort, BooleanWriteOfAnyNonZeroWordIsTrue)
{
    const Bytes two = bytesOf<uint64_t>(2);
    boolean.writeRegister(two.data(), 0, 8);
    EXPECT_TRUE(node.getEnable());
    EXPECT_EQ(readWord<uint64_t>(boolean, 0), 1u);
    const Bytes highBit = bytesOf<uint64_t>(uint64_t{1} << 63);
    node.setEnable(false);
    boolean.writeRegister(highBit.data(), 0, 8);
    EXPECT_TRUE(node.getEnable());
}

// Accesses that 4.3 refuses: wrong length, wrong offset, unassigned bytes.
struct BadAccess
{
    const char* name;
    int64_t address;
    int64_t length;
    bool zeros; // a read gives zeros over length, else the buffer stays
};

class NodeMapPortBadAccess : public NodeMapPort, public ::testing::WithParamInterface<BadAccess>
{
};

TEST_P(NodeMapPortBadAccess, ReadGivesZerosOrLeavesTheBufferAndWriteChangesNothing)
{
    const BadAccess& c = GetParam();
    node.setEnable(true);
    node.setWidth(64);
    node.setFps(30.0);
    for (CBasicNodeMapPort* port : std::initializer_list<CBasicNodeMapPort*>{&boolean, &integer, &floating})
    {
        SCOPED_TRACE(port->getName());
        Bytes bytes = filled();
        port->readRegister(bytes.data(), c.address, c.length);
        for (int64_t i = 0; i < static_cast<int64_t>(bytes.size()); ++i)
        {
            const bool zeroed = c.zeros && i < c.length;
            EXPECT_EQ(bytes[i], zeroed ? 0 : fill) << "byte " << i;
        }
        const Bytes ones = bytesOf<uint64_t>(0);
        port->writeRegister(ones.data(), c.address, c.length);
    }
    EXPECT_TRUE(node.getEnable());
    EXPECT_EQ(node.getWidth(), 64);
    EXPECT_EQ(node.getFps(), 30.0);
}

INSTANTIATE_TEST_SUITE_P(
    NodeMapPort, NodeMapPortBadAccess,
    ::testing::Values(BadAccess{"ShortAtValue", 0, 4, true}, BadAccess{"OversizedAtValue", 0, 16, true},
                      BadAccess{"ZeroLength", 0, 0, true}, BadAccess{"NegativeLength", 0, -8, true},
                      BadAccess{"PastTheBlock", 48, 8, false}, BadAccess{"Misaligned", 4, 8, false},
                      BadAccess{"Negative", -8, 8, false}),
    CaseName());

TEST_F(NodeMapPort, WriteToAReadOnlyRegisterChangesNothingAndTellsNobody)
{
    auto connector = std::make_shared<RecordingConnector>();
    boolean.setConnector(connector);
    const Bytes one = bytesOf<uint64_t>(1);
    boolean.writeRegister(one.data(), 8, 8);
    boolean.writeRegister(one.data(), 16, 8);
    EXPECT_FALSE(node.getEnable());
    EXPECT_EQ(node.enableSetterCalls, 0);
    EXPECT_TRUE(connector->changed.empty());
}

TEST(NodeMapPortWithoutParameter, ReadsZerosIgnoresWritesAndPrintsNothing)
{
    CBooleanNodeMapPort port(nullptr, 0);
    Bytes bytes = filled();
    port.readRegister(bytes.data(), 0, 8);
    EXPECT_EQ(wordOf<uint64_t>(bytes), 0u);
    EXPECT_EQ(bytes[8], fill);
    port.writeRegister(bytes.data(), 0, 8);
    std::ostringstream text;
    int64_t address = 0x30;
    port.writeXml(text, false, "Params", "", address);
    EXPECT_TRUE(text.str().empty());
    EXPECT_EQ(address, 0x30);
    EXPECT_STREQ(port.getName(), "");
}

TEST(NodeMapPortCategory, HasNoRegistersAndTakesNoAddress)
{
    CCategoryNodeMapPort category(std::make_shared<AnythingToNodeMapAdapter::CategoryParameterPort>("Root"),
                                  0);
    Bytes bytes = filled();
    category.readRegister(bytes.data(), 0, 8);
    category.writeRegister(bytes.data(), 0, 8);
    EXPECT_EQ(bytes, filled());
    std::ostringstream text;
    int64_t address = 0x48;
    category.placeAndWriteXml(text, false, "Params", "", address);
    EXPECT_EQ(address, 0x48);
    EXPECT_EQ(category.getAddress(), 0x48);
    EXPECT_EQ(category.getLength(), 0);
    EXPECT_EQ(category.makePortName("P"), gcstring("PRootPort"));
}

TEST_F(NodeMapPort, PlacingWithOwnPortStartsAtZeroAndResetsTheRunningAddress)
{
    std::ostringstream text;
    int64_t address = 0;
    boolean.placeAndWriteXml(text, true, "", "X", address);
    EXPECT_EQ(boolean.getAddress(), 0);
    EXPECT_EQ(boolean.getLength(), 24);
    EXPECT_EQ(boolean.getPortName(), gcstring("XEnablePort"));
    EXPECT_EQ(address, 0);
    integer.placeAndWriteXml(text, true, "", "", address);
    EXPECT_EQ(integer.getLength(), 48);
    EXPECT_EQ(address, 0);
    EXPECT_NE(text.str().find("<pPort>WidthPort</pPort>"), std::string::npos);
}

TEST_F(NodeMapPort, PlacingOnASharedPortAdvancesTheRunningAddressAndClearsThePortName)
{
    std::ostringstream text;
    int64_t address = 0;
    boolean.placeAndWriteXml(text, true, "", "", address);
    ASSERT_FALSE(boolean.getPortName().empty());
    address = 0x18;
    boolean.placeAndWriteXml(text, false, "Params", "", address);
    EXPECT_EQ(boolean.getAddress(), 0x18);
    EXPECT_EQ(boolean.getLength(), 24);
    EXPECT_EQ(address, 0x30);
    EXPECT_TRUE(boolean.getPortName().empty());
    floating.placeAndWriteXml(text, false, "Params", "", address);
    EXPECT_EQ(floating.getAddress(), 0x30);
    EXPECT_EQ(address, 0x60);
}

TEST_F(NodeMapPort, ChangeOfTheParameterReachesTheConnectorOnlyWhileConnected)
{
    node.setEnable(true); // not connected yet: reaches nobody
    auto connector = std::make_shared<RecordingConnector>();
    boolean.setConnector(connector);
    node.setEnable(true); // no change
    EXPECT_TRUE(connector->changed.empty());
    node.setEnable(false);
    ASSERT_EQ(connector->changed.size(), 1u);
    EXPECT_EQ(connector->changed[0], &boolean);

    boolean.detachConnector();
    EXPECT_EQ(connector->disconnected, std::vector<CBasicNodeMapPort*>{&boolean});
    EXPECT_EQ(boolean.getConnector(), nullptr);
    node.setEnable(true);
    EXPECT_EQ(connector->changed.size(), 1u);
    boolean.detachConnector(); // a second detach has nothing to do
    EXPECT_EQ(connector->disconnected.size(), 1u);
}

TEST_F(NodeMapPort, RegisterWriteTellsTheConnectorThroughTheNodesSetter)
{
    auto connector = std::make_shared<RecordingConnector>();
    integer.setConnector(connector);
    const Bytes value = bytesOf<int64_t>(1024);
    integer.writeRegister(value.data(), 0, 8);
    EXPECT_EQ(connector->changed.size(), 1u);
    integer.writeRegister(value.data(), 0, 8);
    EXPECT_EQ(connector->changed.size(), 1u);
}

TEST(NodeMapPortLifetime, DestructionClearsTheParameterPortsObserver)
{
    TestNode node;
    auto relay = node.makeEnablePort();
    auto connector = std::make_shared<RecordingConnector>();
    {
        CBooleanNodeMapPort port(relay, 0);
        port.setConnector(connector);
    }
    node.setEnable(true); // would reach a dead observer if it were still set
    EXPECT_TRUE(connector->changed.empty());
}

} // namespace
} // namespace AdapterTest
