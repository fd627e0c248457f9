// The register level: the block that a node-map port serves for its parameter, the accesses it refuses,
// how a change reaches its connector, and the real ports that route the node map's accesses to the blocks.
#include "TestNode.h"
#include "detail/DataNodeMapPort.h"
#include "detail/NodeMapPortConnector.h"
#include "detail/RealNodeMapPortMultiParameter.h"
#include "detail/RealNodeMapPortSingleParameter.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>
#include <sstream>
#include <type_traits>
#include <vector>

namespace AdapterTest
{
namespace
{

using namespace AnythingToNodeMapAdapter::Detail;

using Bytes = std::array<uint8_t, 24>;
constexpr uint8_t fill = 0xA5;

Bytes filled()
{
    Bytes bytes;
    bytes.fill(fill);
    return bytes;
}

// A register word in front of filled bytes.
Bytes bytesOf(uint64_t word)
{
    Bytes bytes = filled();
    std::memcpy(bytes.data(), &word, sizeof word);
    return bytes;
}

// Reads one register word, of a node-map port or through a real port, into filled bytes; the bytes past the
// word must stay.
template <typename T = uint64_t, typename Port>
T readWord(Port& port, int64_t address)
{
    Bytes bytes = filled();
    if constexpr (std::is_base_of_v<CBasicNodeMapPort, Port>)
    {
        port.readRegister(bytes.data(), address, 8);
    }
    else
    {
        port.Read(bytes.data(), address, 8);
    }
    EXPECT_EQ(bytes[8], fill) << "written beyond the register";
    T word;
    std::memcpy(&word, bytes.data(), sizeof word);
    return word;
}

// Records what a node-map port tells it, in place of a real port.
struct RecordingConnector : CNodeMapPortConnector
{
    void onPortChanged(CBasicNodeMapPort* port) override { changed.push_back(port); }
    void connect(CBasicNodeMapPort*) override {}
    void disconnect(CBasicNodeMapPort* port) override { disconnected.push_back(port); }

    std::vector<CBasicNodeMapPort*> changed;
    std::vector<CBasicNodeMapPort*> disconnected;
};

class NodeMapPort : public ::testing::Test
{
protected:
    TestNode node;
    CBooleanNodeMapPort boolean{node.makeEnablePort(), 0};
    CIntegerNodeMapPort integer{node.makeWidthPort(), 0};
    CFloatNodeMapPort floating{node.makeFpsPort(), 0};
    std::shared_ptr<RecordingConnector> connector = std::make_shared<RecordingConnector>();
};

// IsAvailable reads the flag and IsLocked its negation, also where the text announces neither register, at
// the offsets of each type.
TEST_F(NodeMapPort, FlagRegistersReadTheFlagsAlsoWithoutDynamicState)
{
    for (const bool available : {false, true})
    {
        for (const bool writable : {false, true})
        {
            SCOPED_TRACE(testing::Message() << "available " << available << " writable " << writable);
            CIntegerNodeMapPort integerPort(std::make_shared<WidthRelay>(&node, "W", "", "", "", "Expert",
                                                                         available, writable, false, false, 0,
                                                                         1, 1, "PureNumber"),
                                            0);
            CFloatNodeMapPort floatPort(std::make_shared<FpsRelay>(&node, "F", "", "", "", "Expert",
                                                                   available, writable, false, false, 0.0,
                                                                   1.0),
                                        0);
            EXPECT_EQ(readWord(integerPort, 32), available ? 1u : 0u);
            EXPECT_EQ(readWord(integerPort, 40), writable ? 0u : 1u);
            EXPECT_EQ(readWord(floatPort, 24), available ? 1u : 0u);
            EXPECT_EQ(readWord(floatPort, 32), writable ? 0u : 1u);
        }
    }
}

TEST_F(NodeMapPort, BooleanWriteOfAnyNonZeroWordIsTrue)
{
    boolean.writeRegister(bytesOf(2).data(), 0, 8);
    EXPECT_TRUE(node.getEnable());
    EXPECT_EQ(readWord(boolean, 0), 1u);
    node.setEnable(false);
    boolean.writeRegister(bytesOf(uint64_t{1} << 63).data(), 0, 8);
    EXPECT_TRUE(node.getEnable());
}

// A read of another length than 8 gives zeros over its length; a read of 8 bytes where no register lies
// leaves the buffer. No write but one of 8 bytes at offset 0 reaches the node.
TEST_F(NodeMapPort, RefusedAccessesReadZerosOrNothingAndWriteNothing)
{
    struct Access
    {
        int64_t address;
        int64_t length;
        bool zeros;
    };
    const Access accesses[] = {{0, 4, true},  {0, 16, true},  {0, 0, true},  {0, -8, true}, {48, 8, false},
                               {4, 8, false}, {-8, 8, false}, {8, 8, false}, {16, 8, false}};
    for (CBasicNodeMapPort* port : std::initializer_list<CBasicNodeMapPort*>{&boolean, &integer, &floating})
    {
        port->setConnector(connector);
        for (const Access& c : accesses)
        {
            SCOPED_TRACE(testing::Message()
                         << port->getName() << " at " << c.address << " length " << c.length);
            port->writeRegister(bytesOf(1).data(), c.address, c.length);
            if (c.address == 8 || c.address == 16)
            {
                continue; // read-only registers: a read is served
            }
            Bytes bytes = filled();
            port->readRegister(bytes.data(), c.address, c.length);
            for (int64_t i = 0; i < static_cast<int64_t>(bytes.size()); ++i)
            {
                EXPECT_EQ(bytes[i], c.zeros && i < c.length ? 0 : fill) << "byte " << i;
            }
        }
    }
    EXPECT_EQ(node.setterCalls, 0);
    EXPECT_TRUE(connector->changed.empty());
}

TEST_F(NodeMapPort, ChangeReachesTheConnectorOncePerRealChangeAndOnlyWhileConnected)
{
    node.setEnable(true); // not connected yet: reaches nobody
    boolean.setConnector(connector);
    node.setEnable(true); // no change
    EXPECT_TRUE(connector->changed.empty());
    // A register write: the node's setter tells of the change, the relay stays silent.
    boolean.writeRegister(bytesOf(0).data(), 0, 8);
    EXPECT_FALSE(node.getEnable());
    EXPECT_EQ(connector->changed, std::vector<CBasicNodeMapPort*>{&boolean});

    boolean.detachConnector();
    boolean.detachConnector(); // a second detach has nothing to do
    EXPECT_EQ(connector->disconnected, std::vector<CBasicNodeMapPort*>{&boolean});
    EXPECT_EQ(boolean.getConnector(), nullptr);
    node.setEnable(true);
    EXPECT_EQ(connector->changed.size(), 1u);
}

// A shared port with Enable at 0x0 (24 bytes) and Fps at 0x18 (48 bytes), not yet finished.
class RealPort : public ::testing::Test
{
protected:
    RealPort()
    {
        node.setEnable(true);
        node.setFps(30.0);
        std::ostringstream text;
        int64_t address = 0;
        enable.placeAndWriteXml(text, false, "Params", "", address);
        fps.placeAndWriteXml(text, false, "Params", "", address);
        multi.connect(&fps);
        multi.connect(&enable);
    }

    TestNode node;
    CBooleanNodeMapPort enable{node.makeEnablePort(), 0};
    CFloatNodeMapPort fps{node.makeFpsPort(), 0};
    CRealNodeMapPortMultiParameter multi{nullptr, "Params"};
};

TEST_F(RealPort, MultiServesNothingUntilFinishedThenTranslatesAddresses)
{
    EXPECT_EQ(readWord(multi, 0x0), 0u);
    multi.finish();
    EXPECT_EQ(multi.GetAccessMode(), GenApi::RW);
    EXPECT_EQ(readWord(multi, 0x0), 1u);
    EXPECT_EQ(readWord<double>(multi, 0x18), 30.0);
    EXPECT_EQ(readWord<double>(multi, 0x18 + 16), 0.5); // Min
    const double written = 12.0;
    multi.Write(&written, 0x18, 8);
    EXPECT_EQ(node.getFps(), 12.0);
    multi.connect(&enable); // too late: the table is complete
    EXPECT_EQ(multi.demultiplexer().entries().size(), 2u);
}

// Reads that do not lie whole inside one block give zeros over their length, and writes there reach nobody;
// the last word of the float block lies inside it and reads nothing.
TEST_F(RealPort, MultiServesOnlyAccessesInsideOneBlock)
{
    multi.finish();
    struct Access
    {
        int64_t address;
        int64_t length;
    };
    const Access stray[] = {{0x10, 16}, {0x14, 8}, {0x48, 8},
                            {-8, 8},    {0, -8},   {std::numeric_limits<int64_t>::max() - 4, 8}};
    for (const Access& c : stray)
    {
        SCOPED_TRACE(testing::Message() << "at " << c.address << " length " << c.length);
        Bytes bytes = filled();
        multi.Read(bytes.data(), c.address, c.length);
        for (int64_t i = 0; i < static_cast<int64_t>(bytes.size()); ++i)
        {
            EXPECT_EQ(bytes[i], i < c.length ? 0 : fill) << "byte " << i;
        }
        Bytes ones;
        ones.fill(0xFF);
        multi.Write(ones.data(), c.address, c.length);
    }
    EXPECT_EQ(node.setterCalls, 2); // those of the fixture
    EXPECT_EQ(readWord(multi, 0x18 + 40), uint64_t{0xA5A5A5A5A5A5A5A5});
}

TEST_F(RealPort, MultiDisconnectLeavesTheEntryWithoutTargetWhileOthersWorkUntilReset)
{
    multi.finish();
    multi.disconnect(&enable);
    EXPECT_EQ(multi.demultiplexer().entries().size(), 2u);
    EXPECT_EQ(readWord(multi, 0x0), 0u);
    const uint64_t zero = 0;
    multi.Write(&zero, 0, 8);
    EXPECT_TRUE(node.getEnable());
    EXPECT_EQ(readWord<double>(multi, 0x18 + 8), 1000.0); // Max
    multi.reset();
    EXPECT_TRUE(multi.demultiplexer().entries().empty());
    EXPECT_EQ(readWord(multi, 0x18 + 8), 0u);
}

// Left to us: an own port without a target answers as the shared one does.
TEST(RealPortSingle, WithoutTargetReadsZerosAndDropsWrites)
{
    CRealNodeMapPortSingleParameter single(nullptr);
    EXPECT_EQ(single.GetAccessMode(), GenApi::RW);
    EXPECT_EQ(readWord(single, 0), 0u);
    const uint64_t one = 1;
    single.Write(&one, 0, 8);
}

} // namespace
} // namespace AdapterTest
