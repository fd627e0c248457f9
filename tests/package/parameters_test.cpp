// The parameters that four nodes publish in their node map "@Tessal" and keep in their
// settings, one table for all: texts, visibility and range, the value of a new node, and
// how loads, saves and client writes through the node map move it.
#include "node_test_support.h"

#include <GenApi/GenApi.h>

#include <nlohmann/json.hpp>

#include <iomanip>
#include <map>
#include <sstream>

using namespace NodeTestSupport;

namespace
{

struct Parameter
{
    const char* name;
    const char* displayName;
    const char* toolTip;
    GenApi::EVisibility visibility;
    const char* range;   // of a number, as rangeOf writes it
    const char* initial; // as JSON
    const char* changed; // another value
    bool notifies;       // whether a load that changes the value tells the node map
};

struct NodeParameters
{
    const char* node;
    std::vector<Parameter> parameters;
};

// "<min> to <max>, <representation>" of a number, "" of a boolean.
std::string rangeOf(GenApi::INode* node)
{
    const char* const representations[] = {"Linear",    "Logarithmic", "Boolean",    "PureNumber",
                                           "HexNumber", "IPV4Address", "MACAddress", "Undefined"};
    std::ostringstream text;
    text << std::setprecision(17);
    if (GenApi::CIntegerPtr integer = node)
        text << integer->GetMin() << " to " << integer->GetMax() << ", "
             << representations[integer->GetRepresentation()];
    else if (GenApi::CFloatPtr number = node)
        text << number->GetMin() << " to " << number->GetMax() << ", "
             << representations[number->GetRepresentation()];
    return text.str();
}

// The feature's value as JSON, where the node map's 25 equals the settings' 25.0.
nlohmann::json valueOf(GenApi::CValuePtr& feature)
{
    return nlohmann::json::parse(feature->ToString().c_str());
}

// Settings that hold the parameters, each with the value that `value` names.
std::shared_ptr<Core::MemorySettings> settingsOf(const std::vector<Parameter>& parameters,
                                                 const char* Parameter::*value)
{
    std::string json;
    for (const Parameter& parameter : parameters)
        json += (json.empty() ? "{\"" : ", \"") + std::string(parameter.name) + "\": " + parameter.*value;
    auto settings = std::make_shared<Core::MemorySettings>();
    settings->fromJson(json + "}");
    return settings;
}

TEST(NodeParameters, ArePublishedUnderRootAndFollowLoadsSavesAndClientWrites)
{
    using GenApi::Expert;
    using GenApi::Guru;
    const char* const aoiRange = "0 to 9223372036854775807, PureNumber";
    const NodeParameters nodes[] = {
        {"Gate", {{"Enable", "Enable", "Enable passthrough of data", Guru, "", "false", "true", true}}},
        {"Decoupler",
         {{"ThrottleMode", "Throttle mode", "Enable throttle mode to limit fps", Guru, "", "true", "false",
           true},
          {"Fps", "Frames per Seconds", "Frames per Seconds", Guru, "0 to 1.7976931348623157e+308, Linear",
           "25.0", "-1.5", true}}},
        {"Decompressor",
         {{"FixImage", "Fix image", "Fix image enabled", Expert, "", "false", "true", false}}},
        {"SharpnessExtractor",
         {{"AoiLeft", "Area of interest left", "Area of interest left", Guru, aoiRange, "0", "7", true},
          {"AoiTop", "Area of interest top", "Area of interest top", Guru, aoiRange, "0", "5", true},
          {"AoiWidth", "Area of interest width", "Area of interest width", Guru, aoiRange, "0", "9", true},
          {"AoiHeight", "Area of interest height", "Area of interest height", Guru, aoiRange, "0", "3",
           true}}},
    };
    for (const NodeParameters& expected : nodes)
    {
        SCOPED_TRACE(expected.node);
        // Callbacks stay registered as long as the node: their counts must outlive it.
        std::map<std::string, int> callbacks;
        TestedNode node(expected.node);
        GenApi::INodeMap* const map = tessalNodeMap(*node.node);
        ASSERT_NE(map, nullptr);
        std::vector<std::string> names;
        for (const Parameter& parameter : expected.parameters)
            names.push_back(parameter.name);
        EXPECT_EQ(rootFeatureNames(*map), names);
        const std::string initial = settingsOf(expected.parameters, &Parameter::initial)->toJson();
        EXPECT_EQ(node.saved()->toJson(), initial);

        for (const Parameter& parameter : expected.parameters)
        {
            SCOPED_TRACE(parameter.name);
            GenApi::CValuePtr feature = map->GetNode(parameter.name);
            EXPECT_EQ(feature->GetNode()->GetDisplayName(), parameter.displayName);
            EXPECT_EQ(feature->GetNode()->GetToolTip(), parameter.toolTip);
            EXPECT_EQ(feature->GetNode()->GetVisibility(), parameter.visibility);
            EXPECT_EQ(rangeOf(feature->GetNode()), parameter.range);
            EXPECT_EQ(valueOf(feature), nlohmann::json::parse(parameter.initial));

            // The value it holds, another one twice, no settings and settings without the key:
            // one real change.
            const std::string name = parameter.name;
            GenApi::Register(feature->GetNode(), [&callbacks, name](GenApi::INode*) { ++callbacks[name]; });
            for (const char* Parameter::*value :
                 {&Parameter::initial, &Parameter::changed, &Parameter::changed})
                node.node->load(settingsOf({parameter}, value));
            node.node->load(nullptr);
            node.load([](Core::MemorySettings&) {});
            EXPECT_EQ(callbacks[name], parameter.notifies ? 1 : 0);
            EXPECT_EQ(valueOf(feature), nlohmann::json::parse(parameter.changed));
        }
        node.node->save(nullptr);
        EXPECT_EQ(node.saved()->toJson(), settingsOf(expected.parameters, &Parameter::changed)->toJson());

        // What a client writes through the node map is what the node saves.
        for (const Parameter& parameter : expected.parameters)
            GenApi::CValuePtr(map->GetNode(parameter.name))->FromString(parameter.initial);
        EXPECT_EQ(node.saved()->toJson(), initial);
    }
}

} // namespace
