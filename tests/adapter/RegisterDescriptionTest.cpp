// The register description: whole documents against reference files and the GenApi schema, and where placing
// puts each port.
#include "TestNode.h"
#include "detail/AnythingToNodeMapAdapterBaseImpl.h"
#include "detail/BasicNodeMapPort.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace AdapterTest
{
namespace
{

using GenICam::gcstring;

// The description half of the adapter on its own, with its table in reach.
class DescriptionAdapter : public CAnythingToNodeMapAdapterBase
{
public:
    DescriptionAdapter()
        : CAnythingToNodeMapAdapterBase(&impl)
    {
    }

    CAnythingToNodeMapAdapterBaseImpl impl;
};

std::string referencePath(const std::string& name)
{
    return std::string(TESSAL_TEST_DATA_DIR) + "/adapter/" + name;
}

std::string readReference(const std::string& name)
{
    std::ifstream file(referencePath(name), std::ios::binary);
    EXPECT_TRUE(file.good()) << "cannot read " << name;
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

// Validates a file with xmllint (Debian package libxml2-utils) against the GenApi 1.1 schema; xmllint
// prints what it refuses.
bool isValidRegisterDescription(const std::string& path)
{
    const std::string command = "xmllint --quiet --noout --schema '" TESSAL_SHARED_DIR
                                "/genicam/GenApiSchema_Version_1_1.xsd' '" +
                                path + "'";
    return std::system(command.c_str()) == 0;
}

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

// The placed text that the node map is built from, byte for byte, so the reference file stands for it before
// the schema; the plain text equals it.
TEST(RegisterDescription, DocumentsMatchTheReferenceFilesAndTheSchema)
{
    struct ReferenceCase
    {
        const char* file;
        const char* portName;
        const char* prefix;
        void (*build)(DescriptionAdapter&, TestNode&);
    };
    const ReferenceCase cases[] = {
        {"gate.xml", "", "", addGate},
        {"integer_available_dynamic.xml", "", "", addAoiWidth},
        {"integer_available_static.xml", "", "", addStaticAoiWidth},
        {"float.xml", "", "", addFps},
        {"shared_port.xml", "Params", "", addThrottle},
        {"prefix.xml", "", "A", addGate},
        {"merge_priority.xml", "", "", addMergePriorities},
        {"relations.xml", "Params", "", addRelations},
    };
    for (const ReferenceCase& c : cases)
    {
        SCOPED_TRACE(c.file);
        TestNode node;
        DescriptionAdapter adapter;
        c.build(adapter, node);
        gcstring placed;
        gcstring plain;
        adapter.impl.writeDocument(placed, c.portName, c.prefix, false);
        adapter.getRegisterDescription(plain, c.portName, c.prefix);
        EXPECT_EQ(placed.str(), readReference(c.file));
        EXPECT_EQ(plain.str(), placed.str());
        EXPECT_TRUE(isValidRegisterDescription(referencePath(c.file)));
    }
}

// With a lock register the value register stays read-write: the lock register carries the state.
TEST(RegisterDescription, WritableDynamicPortHasReadWriteValueRegisterEvenWhenNotWritable)
{
    TestNode node;
    DescriptionAdapter adapter;
    adapter.addParameterPort(
        std::make_shared<EnableRelay>(&node, "Locked", "", "", "", "Expert", true, false, true, true), 0);
    gcstring text;
    adapter.getRegisterDescription(text, "Params", "");
    const auto value = text.str().find("<IntReg Name=\"LockedValue\">");
    ASSERT_NE(value, std::string::npos);
    EXPECT_EQ(text.str().find("<AccessMode>", value), text.str().find("<AccessMode>RW</AccessMode>", value));
}

// Own ports each start at 0 under a port of their own; a shared port lays the blocks end to end in name
// order. The plain description changes none of what placing recorded.
TEST(RegisterDescription, PlacingRecordsEachBlockAndThePlainDescriptionLeavesIt)
{
    TestNode node;
    DescriptionAdapter adapter;
    addThrottle(adapter, node);
    const Detail::CBasicNodeMapPort& fps = *adapter.impl.portTable().at("Fps");
    const Detail::CBasicNodeMapPort& root = *adapter.impl.portTable().at("Root");
    const Detail::CBasicNodeMapPort& throttle = *adapter.impl.portTable().at("ThrottleMode");
    gcstring text;
    adapter.impl.writeDocument(text, "Params", "", false);
    EXPECT_EQ(fps.getAddress(), 0);
    EXPECT_EQ(fps.getLength(), 48);
    EXPECT_EQ(root.getLength(), 0);
    EXPECT_EQ(throttle.getAddress(), 0x30);
    EXPECT_EQ(throttle.getLength(), 24);
    EXPECT_TRUE(throttle.getPortName().empty());

    adapter.impl.writeDocument(text, "", "P", false);
    EXPECT_EQ(fps.getLength(), 48);
    EXPECT_EQ(throttle.getAddress(), 0);
    EXPECT_EQ(throttle.getLength(), 24);
    EXPECT_EQ(throttle.getPortName(), gcstring("PThrottleModePort"));
    EXPECT_EQ(root.getLength(), 0);

    adapter.getRegisterDescription(text, "Params", "");
    EXPECT_EQ(throttle.getAddress(), 0);
    EXPECT_EQ(throttle.getPortName(), gcstring("PThrottleModePort"));
}

} // namespace
} // namespace AdapterTest
