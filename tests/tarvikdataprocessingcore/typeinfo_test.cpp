#include "failure_text.h"
#include "log_capture.h"

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikViewerDataTypes2/NoValue.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

using namespace Tarvik::DataProcessing;
using Utils::TypeInfo;

// Declarations are enough to name a type: the identifier comes from the name alone.
namespace TarvikViewerTessalPackage
{
class Gate;
}
namespace Tarvik::DataProcessing::Core
{
class IImage;
template <typename T, typename U>
class Array;
} // namespace Tarvik::DataProcessing::Core

namespace
{

template <typename T>
std::string identifierOf()
{
    int size = 0;
    TypeInfo::getTypeIdentifier<T>(nullptr, &size);
    std::string text(static_cast<size_t>(size), '?');
    TypeInfo::getTypeIdentifier<T>(text.data(), &size);
    EXPECT_EQ(text.back(), '\0');
    text.pop_back();
    return text;
}

} // namespace

TEST(TypeIdentifier, SpellsTypesAsTheFrameworkDoes)
{
    EXPECT_EQ(identifierOf<NoValue>(), "class NoValue");
    EXPECT_EQ(identifierOf<TarvikViewerTessalPackage::Gate>(), "class TarvikViewerTessalPackage::Gate");
    EXPECT_EQ(identifierOf<Core::IValue>(), "class Tarvik::DataProcessing::Core::IValue");
    EXPECT_EQ(identifierOf<Utils::COWPtr<Core::IImage>>(),
              "class Tarvik::DataProcessing::Utils::COWPtr<class Tarvik::DataProcessing::Core::IImage>");
    using IntegerArrayPointer = Utils::COWPtr<Core::Array<Core::IInteger, void>>;
    EXPECT_EQ(identifierOf<IntegerArrayPointer>(),
              "class Tarvik::DataProcessing::Utils::COWPtr<class "
              "Tarvik::DataProcessing::Core::Array<class Tarvik::DataProcessing::Core::IInteger,void> >");
}

// identifierOf asks for the size and fills a buffer of exactly that size; a
// buffer one short is refused and left alone.
TEST(TypeIdentifier, FollowsTheTwoCallProtocol)
{
    char shortBuffer[14] = "untouched";
    int size = 13;
    EXPECT_EQ(failureOf([&] { TypeInfo::getTypeIdentifier<NoValue>(shortBuffer, &size); }),
              "InvalidArgumentException: Size is too small.");
    EXPECT_STREQ(shortBuffer, "untouched");
    EXPECT_EQ(size, 13);
    for (char* buffer : {static_cast<char*>(nullptr), shortBuffer})
        EXPECT_EQ(failureOf([&] { TypeInfo::getTypeIdentifier<NoValue>(buffer, nullptr); }),
                  "InvalidArgumentException: Passed size is null.");
}

namespace
{
class NeverRegistered : public Utils::IObject
{
};
class Orphan : public NeverRegistered
{
};
} // namespace

TEST(TypeInfo, LooksUpRegisteredTypesAndRefusesOthers)
{
    const TypeInfo value = TypeInfo::get<Core::IValue>(true);
    ASSERT_TRUE(value.isValid());
    EXPECT_EQ(value.getName(), GenICam::gcstring("Tarvik::DataProcessing::Core::IValue"));
    EXPECT_EQ(TypeInfo::get<Core::IValue>(false), value);

    EXPECT_FALSE(TypeInfo::get<NeverRegistered>(false).isValid());
    EXPECT_EQ(failureOf([] { TypeInfo::get<NeverRegistered>(true); }),
              "RuntimeException: The requested type is not registered.");
}

TEST(TypeRegistrar, LogsOneLineAndLeavesTheTypeUnregisteredWhenABaseIsMissing)
{
    LogCapture log;
    const Utils::TypeRegistrar<Orphan, Utils::DirectBase<NeverRegistered>> registrar("Orphan");

    const auto entries = log.entries();
    ASSERT_EQ(entries.size(), 1u);
    char expected[160];
    std::snprintf(
        expected, sizeof expected,
        "TypeInfo %p: Exception caught while registering a type. Message: Base type is not registered.",
        static_cast<const void*>(&registrar));
    EXPECT_EQ(entries[0].text, expected);
    EXPECT_EQ(entries[0].severity, Utils::Severitiy_Warning);
    EXPECT_EQ(entries[0].category, "tarvik.dataprocessing.utils.TypeInfo");
    EXPECT_FALSE(TypeInfo::get<Orphan>(false).isValid());
}
