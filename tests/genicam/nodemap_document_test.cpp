// From document to map: the factory and the counted references around a map,
// the texts a map takes from the document, and refused texts that need no file
// (the refused documents of tests/data/genicam are checked with the schema).
#include "genapi_test_support.h"

#include <memory>

using namespace GenApi;

namespace
{

// A map of gate.xml whose end `watch` sees: a callback of the map holds the only owner.
INodeMap* WatchedGateMap(std::weak_ptr<int>& watch)
{
    INodeMap* map = GenApiTest::CreateMap(GenApiTest::ReadDocument("gate.xml"));
    auto owner = std::make_shared<int>();
    watch = owner;
    Register(map->GetNode("Enable"), [owner](INode*) {});
    return map;
}

TEST(NodeMapRef, TheLastReferenceOrAttachingAnotherMapDestroysTheMap)
{
    std::weak_ptr<int> first;
    std::weak_ptr<int> second;
    auto copy = std::make_unique<CNodeMapRef>();
    {
        CNodeMapRef ref;
        ref = WatchedGateMap(first);
        *copy = ref;
        CNodeMapRef third(*copy);
        third = third; // self-assignment keeps the count
        EXPECT_EQ(third._Ptr, ref._Ptr);
    }
    EXPECT_FALSE(first.expired()) << "one reference is left";
    EXPECT_NE(copy->_GetNode("Enable"), nullptr);
    copy.reset();
    EXPECT_TRUE(first.expired());

    CNodeMapRef ref(WatchedGateMap(second));
    ref = CNodeMapFactory::CreateEmptyNodeMap();
    EXPECT_TRUE(second.expired());
    EXPECT_EQ(ref._GetNode("Enable"), nullptr) << "the empty map";
    EXPECT_FALSE(ref._Connect(nullptr, "Device"));
    EXPECT_FALSE(GenApiTest::IsLockedElsewhere(ref._Ptr->GetLock())) << "it has a free lock of its own";
    ref._Destroy();
    EXPECT_EQ(ref._Ptr, nullptr);
}

TEST(NodeMapRef, ReferenceWithoutMapAndEmptyOrMistypedViewsRefuseUse)
{
    CNodeMapRef ref("Camera");
    EXPECT_EQ(ref._GetDeviceName(), "Camera");
    EXPECT_EQ(failureOf([&] { ref._GetNode("Enable"); }),
              "AccessException: Feature not present (reference not valid)");
    EXPECT_EQ(failureOf([&] { ref._Connect(nullptr, "Port"); }),
              "AccessException: Feature not present (reference not valid)");
    CIntegerPtr empty;
    EXPECT_FALSE(IsReadable(empty));
    EXPECT_EQ(failureOf([&] { empty->GetValue(); }), "LogicalErrorException: NULL pointer dereferenced");

    CNodeMapRef gate(GenApiTest::CreateMap(GenApiTest::ReadDocument("gate.xml")));
    EXPECT_FALSE(CIntegerPtr(gate._GetNode("Enable")).IsValid()) << "a Boolean is no Integer";
    EXPECT_TRUE(CValuePtr(gate._GetNode("Enable")).IsValid());
    CCategoryPtr category = gate._GetNode("Root");
    EXPECT_EQ(category->GetAccessMode(), RO);
    EXPECT_EQ(failureOf([&] { category->FromString("x"); }),
              "AccessException: [Root] cannot be written: a category has no value");
}

TEST(NodeMapFactory, EveryCreateBuildsAnIndependentMapUntilTheDocumentIsReleased)
{
    const std::string text = GenApiTest::ReadDocument("signed_integer.xml");
    CNodeMapFactory factory(ContentType_Xml, text.data(), text.size(), CacheUsage_Ignore, false);
    EXPECT_TRUE(factory.IsLoaded());
    CNodeMapRef first(factory.CreateNodeMap("First", false));
    CNodeMapFactory copy(factory);
    CNodeMapRef second(copy.CreateNodeMap("Second", true));
    EXPECT_EQ(first._GetDeviceName(), "First");
    EXPECT_EQ(CNodePtr(second._GetNode("Width"))->GetDeviceName(), "Second");
    CIntegerPtr(first._GetNode("Width"))->SetValue(32);
    EXPECT_EQ(CIntegerPtr(second._GetNode("Width"))->GetValue(), 640);
    EXPECT_EQ(failureOf([&] { factory.CreateNodeMap(); }),
              "RuntimeException: Node map factory holds no register description")
        << "the copy released the document they share";
}

TEST(NodeMapDocument, TextsAreUnescaped)
{
    CNodeMapRef ref(GenApiTest::CreateMap(GenApiTest::Document(
        "<Integer Name=\"Gain\"><ToolTip>Gain &lt; 10 &amp; &#x263A;</ToolTip>"
        "<Description><![CDATA[raw <text> & more]]></Description><Value>3</Value></Integer>\n")));
    INode* gain = ref._GetNode("Gain");
    EXPECT_EQ(gain->GetToolTip(), "Gain < 10 & \xE2\x98\xBA");
    EXPECT_EQ(gain->GetDescription(), "raw <text> & more");
}

// Refusals that need no file: the text itself is the point.
TEST(NodeMapRefusedText, EmptyTextBytesThatAreNoXmlCharactersAndCircles)
{
    const std::string gate = GenApiTest::ReadDocument("gate.xml");
    std::string withNul = gate;
    withNul.insert(withNul.find("<Category"), std::string(1, '\0'));
    std::string withLatin1 = gate;
    withLatin1.insert(withLatin1.find("data</ToolTip>"), "\xE9");
    const std::pair<std::string, const char*> cases[] = {
        {"", "RuntimeException: Register description is not well-formed XML: it has no root element"},
        {withNul,
         "RuntimeException: Register description is not well-formed XML: character U+0000 at line 47 is "
         "not allowed in XML"},
        {withLatin1,
         "RuntimeException: Register description is not well-formed XML: byte 0xE9 at line 5 starts "
         "an invalid UTF-8 sequence"},
        {gate + "trailing",
         "RuntimeException: Register description is not well-formed XML: text outside the root element"},
        {GenApiTest::Document(
             "<Integer Name=\"Gain\"><pIsLocked>Gain</pIsLocked><Value>3</Value></Integer>\n"),
         "PropertyException: [Gain] depends on itself: Gain -> Gain"},
    };
    for (const auto& [text, error] : cases)
        EXPECT_EQ(failureOf([&] { CNodeMapRef ref(GenApiTest::CreateMap(text)); }), error);
}

} // namespace
