#include "AdapterTestSupport.h"
#include "DescriptionAdapter.h"
#include "TestNode.h"
#include "detail/CategoryNodeMapPort.h"
#include "detail/DataNodeMapPort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace AdapterTest
{
namespace
{

using Detail::CBasicNodeMapPort;
using GenICam::gcstring;

void addGate(DescriptionAdapter& adapter, TestNode& node)
{
    adapter.addParameterPort(std::make_shared<CategoryParameterPort>("Root"), 0);
    adapter.addParameterPort(node.makeEnablePort(), 0);
    adapter.addRelation("Feature", "Root", "Enable");
}

void addAoiWidth(DescriptionAdapter& adapter, TestNode& node)
{
    adapter.addParameterPort(
        std::make_shared<WidthRelay>(&node, "AoiWidth", "AOI width", "Width of the area of interest",
                                     "Width of the area of interest in pixels", "Beginner", true, true, true,
                                     true, 16, 4096, 16, "PureNumber", "px"),
        0);
}

void addStaticAoiWidth(DescriptionAdapter& adapter, TestNode& node)
{
    adapter.addParameterPort(std::make_shared<BinningRelay>(&node, "AoiWidth", "", "", "", "Expert", true,
                                                            true, false, true, 1, 8, 1, "PureNumber"),
                             0);
}

void addFps(DescriptionAdapter& adapter, TestNode& node)
{
    adapter.addParameterPort(std::make_shared<FpsRelay>(&node, "Fps", "Frames per second",
                                                        "Highest rate at which values pass",
                                                        "Values that come faster are dropped", "Expert", true,
                                                        true, true, true, 0.5, 1000.0, "Linear", "Hz"),
                             0);
}

// Added out of name order on purpose: the text is ordered by name.
void addThrottle(DescriptionAdapter& adapter, TestNode& node)
{
    adapter.addParameterPort(
        std::make_shared<EnableRelay>(&node, "ThrottleMode", "", "", "", "Guru", true, true, true, true), 0);
    adapter.addParameterPort(std::make_shared<CategoryParameterPort>("Root"), 0);
    adapter.addParameterPort(
        std::make_shared<FpsRelay>(&node, "Fps", "", "", "", "Expert", true, true, true, true, 0.5, 1000.0),
        0);
    adapter.addRelation("Feature", "Root", "ThrottleMode");
    adapter.addRelation("Feature", "Root", "Fps");
}

void addMergePriorities(DescriptionAdapter& adapter, TestNode& node)
{
    const auto plainBoolean = [&](const char* name, bool writable) {
        return std::make_shared<EnableRelay>(&node, name, "", "", "", "Expert", true, writable, false, false);
    };
    adapter.addParameterPort(plainBoolean("Neutral", false), 0);
    adapter.addParameterPort(plainBoolean("Below", true), -7);
    adapter.addParameterPort(plainBoolean("Above", true), 5);
}

void addRelations(DescriptionAdapter& adapter, TestNode& node)
{
    adapter.addParameterPort(std::make_shared<BinningRelay>(&node, "Binning", "", "", "", "Expert", true,
                                                            false, false, false, 1, 8, 1, "PureNumber"),
                             0);
    adapter.addParameterPort(
        std::make_shared<EnableRelay>(&node, "Enable", "", "", "", "Expert", true, true, true, true), 0);
    adapter.addRelation("IsAvailable", "Binning", "Enable");
    adapter.addRelation("IsLocked", "Binning", "Enable");
    adapter.addRelation("Selected", "Binning", "Enable");
    adapter.addRelation("Invalidator", "Binning", "Enable");
    adapter.addRelation("Invalidator", "Binning", "EnableValue");
    // Neither reaches the text: an unknown owner, and a key that an integer does not read.
    adapter.addRelation("Feature", "Nobody", "Enable");
    adapter.addRelation("Feature", "Binning", "Enable");
    // Relations of a boolean with dynamic state are not printed either.
    adapter.addRelation("IsAvailable", "Enable", "Binning");
}

struct ReferenceCase
{
    const char* name;
    const char* file;
    const char* portName;
    const char* prefix;
    std::function<void(DescriptionAdapter&, TestNode&)> build;
};

void PrintTo(const ReferenceCase& c, std::ostream* stream)
{
    *stream << c.file;
}

class RegisterDescriptionReference : public ::testing::TestWithParam<ReferenceCase>
{
protected:
    // The text the node map is built from: placing, as the adapter does it.
    std::string placedText()
    {
        gcstring text;
        adapter.impl().writeDocument(text, GetParam().portName, GetParam().prefix, false);
        return text.str();
    }

    TestNode node;
    DescriptionAdapter adapter;
};

// The placed text, byte for byte; the plain text equals it; both pass the schema.
TEST_P(RegisterDescriptionReference, MatchesTheReferenceFileAndTheSchema)
{
    GetParam().build(adapter, node);
    const std::string expected = readReference(GetParam().file);
    const std::string text = placedText();
    // Line by line first, so that a difference names its line; then every byte, line ends included.
    ASSERT_EQ(splitLines(text), splitLines(expected));
    EXPECT_EQ(text, expected);
    gcstring plain;
    adapter.getRegisterDescription(plain, GetParam().portName, GetParam().prefix);
    EXPECT_EQ(plain.str(), text);
    EXPECT_TRUE(isValidRegisterDescription(text));
}

INSTANTIATE_TEST_SUITE_P(
    RegisterDescription, RegisterDescriptionReference,
    ::testing::Values(
        ReferenceCase{"Gate", "gate.xml", "", "", addGate},
        ReferenceCase{"IntegerAvailableDynamic", "integer_available_dynamic.xml", "", "", addAoiWidth},
        ReferenceCase{"IntegerAvailableStatic", "integer_available_static.xml", "", "", addStaticAoiWidth},
        ReferenceCase{"Float", "float.xml", "", "", addFps},
        ReferenceCase{"SharedPort", "shared_port.xml", "Params", "", addThrottle},
        ReferenceCase{"Prefix", "prefix.xml", "", "A", addGate},
        ReferenceCase{"MergePriority", "merge_priority.xml", "", "", addMergePriorities},
        ReferenceCase{"Relations", "relations.xml", "Params", "", addRelations}),
    CaseName());

class RegisterDescription : public ::testing::Test
{
protected:
    std::string describe(const char* portName, const char* prefix = "")
    {
        gcstring text;
        adapter.getRegisterDescription(text, portName, prefix);
        return text.str();
    }

    std::vector<std::string> headLines()
    {
        auto lines = splitLines(readReference("gate.xml"));
        lines.resize(2);
        return lines;
    }

    TestNode node;
    DescriptionAdapter adapter;
};

TEST_F(RegisterDescription, EmptyTableGivesHeadEmptyLinesAndClosingLine)
{
    auto expected = headLines();
    expected.insert(expected.end(), {"", "", "</RegisterDescription>"});
    const std::string text = describe("");
    EXPECT_EQ(splitLines(text), expected);
    EXPECT_EQ(text.back(), '\n');
    EXPECT_TRUE(isValidRegisterDescription(text));
}

TEST_F(RegisterDescription, EmptyTableWithPortNameHoldsTheSharedPortBetweenTheEmptyLines)
{
    auto expected = headLines();
    expected.insert(expected.end(), {"", "    <Port Name = \"Params\">",
                                     "        <ToolTip>Port node giving access to parameters.</ToolTip>",
                                     "    </Port>", "", "</RegisterDescription>"});
    const std::string text = describe("Params");
    EXPECT_EQ(splitLines(text), expected);
    EXPECT_TRUE(isValidRegisterDescription(text));
}

TEST_F(RegisterDescription, MergePrioritiesPrintOnlyTheirSign)
{
    const auto withPriorities = [&](int32_t high, int32_t low)
    {
        DescriptionAdapter other;
        other.addParameterPort(node.makeEnablePort(), high);
        other.addParameterPort(
            std::make_shared<EnableRelay>(&node, "Other", "", "", "", "Expert", true, true, true, true), low);
        gcstring text;
        other.getRegisterDescription(text, "Params", "");
        return text.str();
    };
    const std::string text = withPriorities(1, -1);
    EXPECT_EQ(text, withPriorities(5, -7));
    EXPECT_NE(text.find("<Boolean Name=\"Enable\" MergePriority=\"+1\">"), std::string::npos);
    EXPECT_NE(text.find("<Boolean Name=\"Other\" MergePriority=\"-1\">"), std::string::npos);
}

TEST_F(RegisterDescription, WritableDynamicPortHasReadWriteValueRegisterEvenWhenNotWritable)
{
    adapter.addParameterPort(
        std::make_shared<EnableRelay>(&node, "Locked", "", "", "", "Expert", true, false, true, true), 0);
    const auto lines = splitLines(describe("Params"));
    const auto value = std::find(lines.begin(), lines.end(), "    <IntReg Name=\"LockedValue\">");
    ASSERT_NE(value, lines.end());
    EXPECT_EQ(value[4], "        <AccessMode>RW</AccessMode>");
}

TEST_F(RegisterDescription, PortWithoutParameterWritesNothingAndTakesNoAddress)
{
    adapter.addParameterPort(node.makeEnablePort(), 0);
    adapter.impl().portTable().emplace("Empty", std::make_shared<Detail::CBooleanNodeMapPort>(nullptr, 0));
    adapter.impl().portTable().emplace("Empty2", std::make_shared<Detail::CIntegerNodeMapPort>(nullptr, 0));
    adapter.impl().portTable().emplace("Empty3", std::make_shared<Detail::CFloatNodeMapPort>(nullptr, 0));
    adapter.impl().portTable().emplace("Empty4", std::make_shared<Detail::CCategoryNodeMapPort>(nullptr, 0));
    DescriptionAdapter reference;
    reference.addParameterPort(node.enablePort, 0);
    gcstring expected;
    reference.getRegisterDescription(expected, "Params", "");
    EXPECT_EQ(describe("Params"), expected.str());
}

// Where the text placed each port, as the node-map ports record it.
class RegisterDescriptionPlacement : public RegisterDescription
{
protected:
    void SetUp() override { addThrottle(adapter, node); }

    const CBasicNodeMapPort& port(const char* name) { return *adapter.impl().portTable().at(name); }

    void place(const char* portName)
    {
        gcstring text;
        adapter.impl().writeDocument(text, portName, "", false);
    }
};

TEST_F(RegisterDescriptionPlacement, OwnPortsStartEveryBlockAtZero)
{
    place("");
    EXPECT_EQ(port("Fps").getAddress(), 0);
    EXPECT_EQ(port("Fps").getLength(), 48);
    EXPECT_EQ(port("Fps").getPortName(), gcstring("FpsPort"));
    EXPECT_EQ(port("ThrottleMode").getAddress(), 0);
    EXPECT_EQ(port("ThrottleMode").getLength(), 24);
    EXPECT_EQ(port("ThrottleMode").getPortName(), gcstring("ThrottleModePort"));
    EXPECT_EQ(port("Root").getLength(), 0);
}

TEST_F(RegisterDescriptionPlacement, SharedPortLaysBlocksEndToEndInNameOrder)
{
    place("Params");
    EXPECT_EQ(port("Fps").getAddress(), 0);
    EXPECT_EQ(port("Fps").getLength(), 48);
    EXPECT_EQ(port("Root").getLength(), 0);
    EXPECT_EQ(port("ThrottleMode").getAddress(), 0x30);
    EXPECT_EQ(port("ThrottleMode").getLength(), 24);
    EXPECT_TRUE(port("ThrottleMode").getPortName().empty());
}

TEST_F(RegisterDescriptionPlacement, PlainDescriptionLeavesThePlacementAlone)
{
    place("");
    gcstring text;
    adapter.getRegisterDescription(text, "Params", "P");
    EXPECT_EQ(port("ThrottleMode").getAddress(), 0);
    EXPECT_EQ(port("ThrottleMode").getPortName(), gcstring("ThrottleModePort"));
    EXPECT_NE(text.find("<pPort>Params</pPort>"), gcstring::npos);
}

} // namespace
} // namespace AdapterTest
