#include "AdapterTestSupport.h"
#include "RecordingNodeMap.h"
#include "TestNode.h"
#include "detail/CategoryNodeMapPort.h"
#include "detail/DataNodeMapPort.h"
#include "detail/RealNodeMapPortMultiParameter.h"
#include "detail/RealNodeMapPortSingleParameter.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <limits>
#include <sstream>

namespace AdapterTest
{
namespace
{

using namespace AnythingToNodeMapAdapter::Detail;
using GenICam::gcstring;

using Bytes = std::array<uint8_t, 24>;
constexpr uint8_t fill = 0x5A;

Bytes filled()
{
    Bytes bytes;
    bytes.fill(fill);
    return bytes;
}

uint64_t firstWord(const Bytes& bytes)
{
    uint64_t word;
    std::memcpy(&word, bytes.data(), sizeof word);
    return word;
}

// Places ports as the adapter does and keeps them alive for the test.
class RealPort : public ::testing::Test
{
protected:
    RealPort()
        : enable(std::make_shared<CBooleanNodeMapPort>(node.makeEnablePort(), 0))
        , fps(std::make_shared<CFloatNodeMapPort>(node.makeFpsPort(), 0))
        , root(std::make_shared<CCategoryNodeMapPort>(
              std::make_shared<AnythingToNodeMapAdapter::CategoryParameterPort>("Root"), 0))
    {
        node.setEnable(true);
        node.setFps(30.0);
    }

    // Shared layout in name order: Enable at 0x0 (24 bytes), Fps at 0x18 (48 bytes).
    void placeShared()
    {
        std::ostringstream text;
        int64_t address = 0;
        for (CBasicNodeMapPort* port :
             std::initializer_list<CBasicNodeMapPort*>{enable.get(), fps.get(), root.get()})
        {
            port->placeAndWriteXml(text, false, "Params", "", address);
        }
    }

    Bytes read(GenApi::IPort& port, int64_t address, int64_t length)
    {
        Bytes bytes = filled();
        port.Read(bytes.data(), address, length);
        return bytes;
    }

    TestNode node;
    RecordingNodeMap nodeMap;
    std::shared_ptr<CBooleanNodeMapPort> enable;
    std::shared_ptr<CFloatNodeMapPort> fps;
    std::shared_ptr<CCategoryNodeMapPort> root;
};

TEST_F(RealPort, SingleConnectsUnderThePortNameAndPassesAccessesUnchanged)
{
    std::ostringstream text;
    int64_t address = 0;
    enable->placeAndWriteXml(text, true, "", "", address);
    CRealNodeMapPortSingleParameter single(&nodeMap);
    single.connect(enable.get());
    ASSERT_EQ(nodeMap.connects.size(), 1u);
    EXPECT_EQ(nodeMap.connects[0].first, static_cast<GenApi::IPort*>(&single));
    EXPECT_EQ(nodeMap.connects[0].second, gcstring("EnablePort"));

    EXPECT_EQ(firstWord(read(single, 0x0, 8)), 1u);
    EXPECT_EQ(firstWord(read(single, 0x10, 8)), 0u);
    const uint64_t zero = 0;
    single.Write(&zero, 0, 8);
    EXPECT_FALSE(node.getEnable());
}

TEST_F(RealPort, SingleDisconnectUsesTheNameItConnectedUnder)
{
    std::ostringstream text;
    int64_t address = 0;
    enable->placeAndWriteXml(text, true, "", "", address);
    CRealNodeMapPortSingleParameter single(&nodeMap);
    single.connect(enable.get());
    enable->placeAndWriteXml(text, true, "", "Renamed", address); // placed again for another map
    single.disconnect(enable.get());
    ASSERT_EQ(nodeMap.connects.size(), 2u);
    EXPECT_EQ(nodeMap.connects[1].first, nullptr);
    EXPECT_EQ(nodeMap.connects[1].second, gcstring("EnablePort"));
}

TEST_F(RealPort, SingleWithoutTargetReadsZerosAndDropsWrites)
{
    CRealNodeMapPortSingleParameter single(&nodeMap);
    const Bytes bytes = read(single, 0, 8);
    EXPECT_EQ(firstWord(bytes), 0u);
    EXPECT_EQ(bytes[8], fill);
    const uint64_t zero = 0;
    single.Write(&zero, 0, 8);
    EXPECT_TRUE(node.getEnable());
    single.connect(nullptr);
    EXPECT_TRUE(nodeMap.connects.empty());
}

TEST_F(RealPort, MultiConnectsItselfToTheSharedPortNodeAndUnlinksOnReset)
{
    {
        CRealNodeMapPortMultiParameter multi(&nodeMap, "Params");
        ASSERT_EQ(nodeMap.connects.size(), 1u);
        EXPECT_EQ(nodeMap.connects[0].first, static_cast<GenApi::IPort*>(&multi));
        EXPECT_EQ(nodeMap.connects[0].second, gcstring("Params"));
        multi.reset();
        ASSERT_EQ(nodeMap.connects.size(), 2u);
        EXPECT_EQ(nodeMap.connects[1].first, nullptr);
    }
    EXPECT_EQ(nodeMap.connects.size(), 2u); // the end after a reset unlinks nothing twice
}

TEST_F(RealPort, MultiServesNothingUntilFinishedThenTranslatesAddresses)
{
    placeShared();
    CRealNodeMapPortMultiParameter multi(&nodeMap, "Params");
    multi.connect(fps.get());
    multi.connect(enable.get());
    EXPECT_EQ(firstWord(read(multi, 0x0, 8)), 0u);
    multi.finish();
    EXPECT_EQ(firstWord(read(multi, 0x0, 8)), 1u);
    double value;
    const Bytes bytes = read(multi, 0x18, 8);
    std::memcpy(&value, bytes.data(), sizeof value);
    EXPECT_EQ(value, 30.0);
    EXPECT_EQ(multi.demultiplexer().entries().front().port, enable.get());

    const double written = 12.0;
    multi.Write(&written, 0x18, 8);
    EXPECT_EQ(node.getFps(), 12.0);

    multi.connect(root.get()); // too late: the table is complete
    EXPECT_EQ(multi.demultiplexer().entries().size(), 2u);
}

// Accesses that do not lie whole inside one block.
struct StrayAccess
{
    const char* name;
    int64_t address;
    int64_t length;
};

class RealPortStrayAccess : public RealPort, public ::testing::WithParamInterface<StrayAccess>
{
};

TEST_P(RealPortStrayAccess, MultiReadsZerosOverTheLengthAndDropsTheWrite)
{
    const StrayAccess& c = GetParam();
    placeShared();
    CRealNodeMapPortMultiParameter multi(&nodeMap, "Params");
    multi.connect(enable.get());
    multi.connect(fps.get());
    multi.finish();
    const Bytes bytes = read(multi, c.address, c.length);
    for (int64_t i = 0; i < static_cast<int64_t>(bytes.size()); ++i)
    {
        EXPECT_EQ(bytes[i], i < c.length ? 0 : fill) << "byte " << i;
    }
    Bytes ones;
    ones.fill(0xFF);
    multi.Write(ones.data(), c.address, c.length);
    EXPECT_TRUE(node.getEnable());
    EXPECT_EQ(node.getFps(), 30.0);
    EXPECT_EQ(node.enableSetterCalls, 1);
}

INSTANTIATE_TEST_SUITE_P(
    RealPort, RealPortStrayAccess,
    ::testing::Values(StrayAccess{"AcrossTwoBlocks", 0x10, 16}, StrayAccess{"LastBytesOfABlock", 0x14, 8},
                      StrayAccess{"BeyondEveryBlock", 0x48, 8}, StrayAccess{"BeforeEveryBlock", -8, 8},
                      StrayAccess{"NegativeLength", 0, -8},
                      StrayAccess{"HugeAddress", std::numeric_limits<int64_t>::max() - 4, 8}),
    CaseName());

TEST_F(RealPort, MultiDisconnectLeavesTheEntryWithoutTargetWhileOthersWork)
{
    placeShared();
    CRealNodeMapPortMultiParameter multi(&nodeMap, "Params");
    multi.connect(enable.get());
    multi.connect(fps.get());
    multi.finish();
    multi.disconnect(enable.get());
    EXPECT_EQ(multi.demultiplexer().entries().size(), 2u);
    EXPECT_EQ(firstWord(read(multi, 0x0, 8)), 0u);
    const uint64_t zero = 0;
    multi.Write(&zero, 0, 8);
    EXPECT_TRUE(node.getEnable());
    const Bytes bytes = read(multi, 0x18 + 8, 8);
    double max;
    std::memcpy(&max, bytes.data(), sizeof max);
    EXPECT_EQ(max, node.fpsPort->getMax());
}

TEST_F(RealPort, ResetEmptiesTheTableAndReadsGiveZeros)
{
    placeShared();
    CRealNodeMapPortMultiParameter multi(&nodeMap, "Params");
    multi.connect(enable.get());
    multi.finish();
    multi.reset();
    EXPECT_TRUE(multi.demultiplexer().entries().empty());
    EXPECT_FALSE(multi.demultiplexer().isSorted());
    EXPECT_EQ(firstWord(read(multi, 0, 8)), 0u);
}

} // namespace
} // namespace AdapterTest
