#include "AdapterTestSupport.h"
#include "TestNode.h"

#include <AnythingToNodeMapAdapter/IntegerParameterPortBase.h>

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

// An integer port base with nothing but texts and flags given.
class BareIntegerPort : public IntegerParameterPortBase
{
public:
    BareIntegerPort()
        : IntegerParameterPortBase("Bare", "", "", "", "Guru", true, false, true, false)
    {
    }
    std::size_t getValueSize() const override { return 8; }
    bool isSigned() const override { return true; }
    int64_t getValue() const override { return 0; }
    void setValue(int64_t, bool) override {}
};

TEST(ParameterPort, CategoryFromNameAloneHasEmptyTextsAndExpertVisibility)
{
    const CategoryParameterPort root("Root");
    EXPECT_STREQ(root.getName(), "Root");
    EXPECT_STREQ(root.getDisplayName(), "");
    EXPECT_STREQ(root.getDescription(), "");
    EXPECT_STREQ(root.getToolTip(), "");
    EXPECT_STREQ(root.getVisibility(), "Expert");
    EXPECT_EQ(root.getValueSize(), 0u);
}

TEST(ParameterPort, ConstructorsTakeDisplayNameToolTipDescriptionInThatOrder)
{
    TestNode node;
    const EnableRelay relay(&node, "N", "display", "tip", "described", "Beginner", true, false, true, false);
    EXPECT_STREQ(relay.getDisplayName(), "display");
    EXPECT_STREQ(relay.getToolTip(), "tip");
    EXPECT_STREQ(relay.getDescription(), "described");
    EXPECT_STREQ(relay.getVisibility(), "Beginner");
    EXPECT_TRUE(relay.isAvailable());
    EXPECT_FALSE(relay.isWritable());
    EXPECT_TRUE(relay.isAvailableDynamic());
    EXPECT_FALSE(relay.isWritableDynamic());

    const CategoryParameterPort category("Cat", "display", "tip", "described", "Guru");
    EXPECT_STREQ(category.getDisplayName(), "display");
    EXPECT_STREQ(category.getToolTip(), "tip");
    EXPECT_STREQ(category.getDescription(), "described");
    EXPECT_STREQ(category.getVisibility(), "Guru");
}

TEST(ParameterPort, FloatRelayDefaultsToLinearWithoutUnitAndKeepsMinBeforeMax)
{
    TestNode node;
    const auto port = node.makeFpsPort(0.5, 1000.0);
    EXPECT_STREQ(port->getRepresentation(), "Linear");
    EXPECT_STREQ(port->getUnit(), "");
    EXPECT_EQ(port->getMin(), 0.5);
    EXPECT_EQ(port->getMax(), 1000.0);
    EXPECT_EQ(port->getValueSize(), 8u);
}

TEST(ParameterPort, IntegerBaseWithoutLimitsHasZeroLimitsAndIncrementOne)
{
    const BareIntegerPort port;
    EXPECT_EQ(port.getMin(), 0);
    EXPECT_EQ(port.getMax(), 0);
    EXPECT_EQ(port.getInc(), 1);
    EXPECT_STREQ(port.getRepresentation(), "");
    EXPECT_STREQ(port.getUnit(), "");
}

TEST(ParameterPort, ValueSizeAndSignFollowTheNodesType)
{
    TestNode node;
    const BinningRelay binning(&node, "Binning", "", "", "", "Expert", true, true, true, true, 1, 4, 1,
                               "PureNumber", "x");
    EXPECT_EQ(binning.getValueSize(), sizeof(uint32_t));
    EXPECT_FALSE(binning.isSigned());
    EXPECT_STREQ(binning.getUnit(), "x");
    const auto width = node.makeWidthPort();
    EXPECT_EQ(width->getValueSize(), sizeof(int64_t));
    EXPECT_TRUE(width->isSigned());
    EXPECT_EQ(node.makeEnablePort()->getValueSize(), 1u);
}

TEST(ParameterPort, IntegerRelayConvertsBetweenSixtyFourBitsAndTheNodesType)
{
    TestNode node;
    BinningRelay binning(&node, "Binning", "", "", "", "Expert", true, true, true, true, 1, 4, 1,
                         "PureNumber");
    binning.setValue(std::numeric_limits<uint32_t>::max(), true);
    EXPECT_EQ(node.getBinning(), std::numeric_limits<uint32_t>::max());
    EXPECT_EQ(binning.getValue(), int64_t{4294967295});
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

TEST(ParameterPort, LoudWriteWithoutObserverChangesTheValueAndCallsNothing)
{
    TestNode node;
    const auto port = node.makeEnablePort();
    port->setValue(true, false);
    EXPECT_TRUE(node.getEnable());
    port->setObserver(nullptr);
    port->setValue(false, false);
    EXPECT_FALSE(node.getEnable());
}

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

TEST(ParameterPort, WhatTheSetterThrowsReachesTheCaller)
{
    struct ThrowingNode
    {
        bool get() const { return false; }
        void set(bool) { throw std::runtime_error("refused"); }
    } node;
    BooleanParameterPortRelay<ThrowingNode, &ThrowingNode::get, &ThrowingNode::set> port(
        &node, "X", "", "", "", "Expert", true, true, true, true);
    EXPECT_THROW(port.setValue(true, true), std::runtime_error);
}

} // namespace
} // namespace AdapterTest
