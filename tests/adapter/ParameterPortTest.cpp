// Parameter ports: how the relays reach the node and what they tell their observer.
#include "TestNode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace AdapterTest
{
namespace
{

struct MockObserver : IParameterPortObserver
{
    virtual ~MockObserver() = default;
    MOCK_METHOD(void, onParameterPortChanged, (IBasicParameterPort*), (override));
};

// The relay converts between the port's 64 bits and the node's own integer type.
TEST(ParameterPort, IntegerRelayFollowsTheNodesTypeInSizeSignAndValue)
{
    TestNode node;
    BinningRelay binning(&node, "Binning", "", "", "", "Expert", true, true, true, true, 1, 4, 1,
                         "PureNumber");
    EXPECT_EQ(binning.getValueSize(), sizeof(uint32_t));
    EXPECT_FALSE(binning.isSigned());
    binning.setValue(std::numeric_limits<uint32_t>::max(), true);
    EXPECT_EQ(binning.getValue(), int64_t{4294967295});
    EXPECT_TRUE(node.makeWidthPort()->isSigned());
    EXPECT_EQ(node.makeEnablePort()->getValueSize(), 1u);
}

// How often the observer runs for a write through the port, by silence and novelty: the node's setter tells
// of a change, and a loud write makes the relay tell of it once more.
TEST(ParameterPort, RelayAndSetterTogetherNotifyAsOftenAsTheyFindAChange)
{
    struct Case
    {
        bool silent;
        bool newValue;
        int expectedCalls;
    };
    for (const Case& c :
         {Case{true, true, 1}, Case{false, true, 2}, Case{true, false, 0}, Case{false, false, 0}})
    {
        SCOPED_TRACE(testing::Message() << "silent " << c.silent << " new value " << c.newValue);
        TestNode node;
        ::testing::StrictMock<MockObserver> observer;
        const auto port = node.makeEnablePort();
        port->setObserver(&observer);
        // The observer gets the port's interface pointer, not some base subobject.
        EXPECT_CALL(observer, onParameterPortChanged(static_cast<IBasicParameterPort*>(port.get())))
            .Times(c.expectedCalls);
        port->setValue(c.newValue, c.silent);
        EXPECT_EQ(node.getEnable(), c.newValue);
        EXPECT_EQ(node.setterCalls, 1);
    }
}

// A NaN differs from everything, itself included: both writes are changes to setter and relay. Without an
// observer a write tells nobody.
TEST(ParameterPort, FloatRelayCountsNaNAsADifference)
{
    TestNode node;
    ::testing::StrictMock<MockObserver> observer;
    const auto port = node.makeFpsPort();
    port->setObserver(&observer);
    EXPECT_CALL(observer, onParameterPortChanged(::testing::_)).Times(4);
    port->setValue(std::nan(""), false);
    port->setValue(std::nan(""), false);
    port->setObserver(nullptr);
    port->setValue(1.0, false);
    EXPECT_EQ(node.getFps(), 1.0);
}

} // namespace
} // namespace AdapterTest
