// The factory, counted references and typed views around the node maps.
#include "genapi_test_support.h"

#include <gtest/gtest.h>

using namespace GenApi;
using GenApiTest::ErrorText;

namespace
{

// A callback that counts its destruction: the node destroys it with the map.
class CDestroyCounter final : public CNodeCallback
{
public:
    CDestroyCounter(INode* node, int& destroyed)
        : CNodeCallback(node, cbPostInsideLock)
        , m_destroyed(destroyed)
    {
    }
    void operator()(ECallbackType) const override {}
    void Destroy() override
    {
        ++m_destroyed;
        delete this;
    }

private:
    int& m_destroyed;
};

// A map of gate.xml whose destruction counts into `destroyed`.
INodeMap* CountedGateMap(int& destroyed)
{
    INodeMap* map = GenApiTest::CreateMap(GenApiTest::ReadDocument("gate.xml"));
    INode* enable = map->GetNode("Enable");
    enable->RegisterCallback(new CDestroyCounter(enable, destroyed));
    return map;
}

TEST(NodeMapRef, TheLastReferenceOrAttachingAnotherMapDestroysTheMap)
{
    int destroyed = 0;
    auto copy = std::make_unique<CNodeMapRef>();
    {
        CNodeMapRef ref;
        ref = CountedGateMap(destroyed);
        *copy = ref;
        CNodeMapRef third(*copy);
        third = third; // self-assignment keeps the count
        EXPECT_EQ(third._Ptr, ref._Ptr);
    }
    EXPECT_EQ(destroyed, 0) << "one reference is left";
    EXPECT_NE(copy->_GetNode("Enable"), nullptr);
    copy.reset();
    EXPECT_EQ(destroyed, 1);

    CNodeMapRef ref(CountedGateMap(destroyed));
    ref = CNodeMapFactory::CreateEmptyNodeMap();
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(ref._GetNode("Enable"), nullptr);
    ref._Destroy();
    EXPECT_EQ(ref._Ptr, nullptr);
}

TEST(NodeMapRef, ReferenceWithoutMapAndEmptyOrMistypedViewsRefuseUse)
{
    CNodeMapRef ref("Camera");
    EXPECT_EQ(ref._GetDeviceName(), "Camera");
    EXPECT_EQ(ErrorText([&] { ref._GetNode("Enable"); }),
              "AccessException: Feature not present (reference not valid)");
    EXPECT_EQ(ErrorText([&] { ref._Connect(nullptr, "Port"); }),
              "AccessException: Feature not present (reference not valid)");

    CIntegerPtr empty;
    EXPECT_FALSE(IsReadable(empty));
    EXPECT_EQ(ErrorText([&] { empty->GetValue(); }), "LogicalErrorException: NULL pointer dereferenced");

    CNodeMapRef gate(GenApiTest::CreateMap(GenApiTest::ReadDocument("gate.xml")));
    EXPECT_FALSE(CIntegerPtr(gate._GetNode("Enable")).IsValid()) << "a Boolean is no Integer";
    EXPECT_TRUE(CValuePtr(gate._GetNode("Enable")).IsValid());
    CCategoryPtr category = gate._GetNode("Root");
    EXPECT_EQ(category->GetAccessMode(), RO);
    EXPECT_EQ(ErrorText([&] { category->FromString("x"); }),
              "AccessException: [Root] cannot be written: a category has no value");
}

TEST(NodeMapFactory, EmptyMapHasNoNodesAndItsOwnFreeLock)
{
    CNodeMapRef ref(CNodeMapFactory::CreateEmptyNodeMap());
    NodeList_t nodes;
    ref._GetNodes(nodes);
    EXPECT_TRUE(nodes.empty());
    GenApiTest::CMemoryPort port;
    EXPECT_FALSE(ref._Connect(&port, "Device"));
    EXPECT_FALSE(GenApiTest::IsLockedElsewhere(ref._Ptr->GetLock()));
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

    EXPECT_EQ(ErrorText([&] { factory.CreateNodeMap(); }),
              "RuntimeException: Node map factory holds no register description")
        << "the copy released the document they share";
}

TEST(NodeMapFactory, ReadsFilesAndStringsButNoZippedContent)
{
    CNodeMapRef ref(CNodeMapFactory(ContentType_Xml, GenApiTest::DataPath("gate.xml")).CreateNodeMap());
    EXPECT_NE(ref._GetNode("Enable"), nullptr);
    EXPECT_THROW(CNodeMapFactory(ContentType_Xml, GenApiTest::DataPath("missing.xml")),
                 GenICam::RuntimeException);
    const std::string text = GenApiTest::ReadDocument("gate.xml");
    CNodeMapRef fromString;
    fromString._LoadXMLFromString(text.c_str());
    EXPECT_NE(fromString._GetNode("Root"), nullptr);
    CNodeMapFactory zipped(ContentType_ZippedXml, text.data(), text.size());
    EXPECT_EQ(ErrorText([&] { zipped.CreateNodeMap(); }),
              "RuntimeException: Node map factory reads plain XML only, not content type 1");
}

} // namespace
