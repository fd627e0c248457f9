#include "AdapterTestSupport.h"
#include "TestNode.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace AdapterTest
{
namespace
{

// A node whose float setter tells nobody, so that only the relay can notify.
class QuietNode
{
public:
    double getRate() const { return rate; }
    void setRate(double value)
    {
        rate = value;
        ++setterCalls;
    }

    double rate = 0.0;
    int setterCalls = 0;
};

using QuietRateRelay = FloatParameterPortRelay<QuietNode, &QuietNode::getRate, &QuietNode::setRate>;

// The relay converts between the port's 64 bits and the node's own integer type.
TEST(ParameterPort, IntegerRelayFollowsTheNodesTypeInSizeSignAndValue)
{
    TestNode node;
    BinningRelay binning(&node, "Binning", "", "", "", "Expert", true, true, true, true, 1, 4, 1,
                         "PureNumber");
    EXPECT_EQ(binning.getValueSize(), sizeof(uint32_t));
    EXPECT_FALSE(binning.isSigned());
    binning.setValue(std::numeric_limits<uint32_t>::max(), true);
    EXPECT_EQ(node.getBinning(), std::numeric_limits<uint32_t>::max());
    EXPECT_EQ(binning.getValue(), int64_t{4294967295});
    const auto width = node.makeWidthPort();
    EXPECT_EQ(width->getValueSize(), sizeof(int64_t));
    EXPECT_TRUE(width->isSigned());
    EXPECT_EQ(node.makeEnablePort()->getValueSize(), 1u);
}

// How often the observer runs for a write through the port, by silence and novelty.
struct ObserverCase
{
    const char* name;
    bool silent;
    bool newValue;
    int expectedCalls;
};

class ParameterPortObserverTest : public ::testing::TestWithParam<ObserverCase>
{
};

TEST_P(ParameterPortObserverTest, RelayAndSetterTogetherNotifyAsOftenAsTheyFindAChange)
{
    const ObserverCase& c = GetParam();
    TestNode node;
    RecordingObserver observer;
    const auto port = node.makeEnablePort();
    port->setObserver(&observer);
    port->setValue(c.newValue, c.silent);
    EXPECT_EQ(node.getEnable(), c.newValue);
    EXPECT_EQ(node.enableSetterCalls, 1);
    EXPECT_EQ(observer.calls, c.expectedCalls);
    if (c.expectedCalls > 0)
    {
        // The observer gets the port's interface pointer, not some base subobject.
        EXPECT_EQ(observer.lastPort, static_cast<IBasicParameterPort*>(port.get()));
    }
}

INSTANTIATE_TEST_SUITE_P(ParameterPort, ParameterPortObserverTest,
                         ::testing::Values(ObserverCase{"SilentNew", true, true, 1},
                                           ObserverCase{"LoudNew", false, true, 2},
                                           ObserverCase{"SilentSame", true, false, 0},
                                           ObserverCase{"LoudSame", false, false, 0}),
                         CaseName());

TEST(ParameterPort, FloatRelayCountsNaNAsADifference)
{
    QuietNode node;
    QuietRateRelay port(&node, "Rate", "", "", "", "Expert", true, true, true, true, 0.0, 1.0);
    RecordingObserver observer;
    port.setObserver(&observer);

    port.setValue(1.0, false);
    EXPECT_EQ(observer.calls, 1);
    port.setValue(1.0, false);
    EXPECT_EQ(observer.calls, 1);
    port.setValue(std::nan(""), false);
    EXPECT_EQ(observer.calls, 2);
    port.setValue(std::nan(""), false);
    EXPECT_EQ(observer.calls, 3);
    port.setValue(std::nan(""), true);
    EXPECT_EQ(observer.calls, 3);
    EXPECT_EQ(node.setterCalls, 5);
}

} // namespace
} // namespace AdapterTest
