#include "refused_allocation.h"

#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/utils/Variant.h>
#include <TarvikViewerDataTypes2/NoValue.h>

#include <gtest/gtest.h>

#include <functional>

using namespace Tarvik::DataProcessing;
using Core::IInteger;
using Core::Integer;
using Utils::COWPtr;
using Utils::Variant;

namespace
{

template <typename F>
std::string failureText(F&& action)
{
    try
    {
        action();
    }
    catch (const GenICam::GenericException& e)
    {
        return e.GetDescription();
    }
    return "no exception";
}

// Counts its live objects.
class Unregistered : public Core::IValue
{
public:
    static inline int alive = 0;

    Unregistered() { ++alive; }
    Unregistered(const Unregistered&) { ++alive; }
    ~Unregistered() override { --alive; }

    bool hasError(bool) const override { return false; }
    std::shared_ptr<Core::IError> getError(bool) const override { return nullptr; }
    Utils::TypeInfo getTypeInfo(bool mustExist) const override
    {
        return Utils::TypeInfo::get<Unregistered>(mustExist);
    }
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }
};

} // namespace

TEST(Variant, EmptyVariantReadsEmptyOrRaises)
{
    const Variant empty;
    EXPECT_FALSE(empty.isValid());
    EXPECT_FALSE(empty.get<COWPtr<IInteger>>(false).isValid());
    EXPECT_EQ(empty.get<IInteger>(false), nullptr);
    EXPECT_EQ(failureText([&] { empty.get<COWPtr<IInteger>>(true); }), "Variant is not valid.");
    EXPECT_EQ(failureText([&] { empty.get<IInteger>(true); }), "Variant is not valid.");
}

TEST(Variant, ReadOfAnotherTypeIsEmptyOrRaises)
{
    const Variant integer{Integer(3, nullptr)};
    EXPECT_FALSE(integer.get<COWPtr<Core::IFloat>>(false).isValid());
    EXPECT_EQ(failureText([&] { integer.get<COWPtr<Core::IFloat>>(true); }),
              "Could not cast variant data to requested type.");
    EXPECT_EQ(integer.get<Core::IFloat>(false), nullptr);
    EXPECT_EQ(failureText([&] { integer.get<Core::IFloat>(true); }),
              "Could not cast variant value to requested type.");
    EXPECT_EQ(failureText([&] { integer.get<Unregistered>(true); }), "The requested type is not registered.");
    EXPECT_EQ(integer.get<Unregistered>(false), nullptr);
}

// Refused by the registry, whichever way the value comes; the Variant keeps
// its content, a handle given to take over stays with the caller, and no
// object is left behind.
TEST(Variant, UnregisteredTypeIsRefusedByTheRegistry)
{
    Variant variant{Integer(5, nullptr)};
    {
        COWPtr<Unregistered> pointer(new Unregistered);
        const std::function<void()> ways[] = {[] { Variant{Unregistered()}; },
                                              [&] { variant.setData(pointer); },
                                              [&] { variant.setData(std::move(pointer)); }};
        for (const std::function<void()>& way : ways)
        {
            try
            {
                way();
                ADD_FAILURE() << "no exception";
            }
            catch (const GenICam::RuntimeException& e)
            {
                EXPECT_STREQ(e.GetDescription(), "The requested type is not registered.");
            }
            EXPECT_EQ(variant.get<COWPtr<IInteger>>(true)->getValue(), 5);
        }
        EXPECT_EQ(pointer.getUseCount(), 1);
    }
    EXPECT_EQ(Unregistered::alive, 0);
}

TEST(Variant, ValueWithoutMemoryForItsHandleRaises)
{
    using Wrapper = Utils::COWPtrBase::ObjectWrapper<Integer, Integer, std::default_delete<Integer>,
                                                     Utils::DefaultCloner<Integer>>;
    try
    {
        const RefusedAllocation refused(sizeof(Wrapper));
        Variant variant{Integer(5, nullptr)};
        ADD_FAILURE() << "no exception";
    }
    catch (const GenICam::BadAllocException& e)
    {
        EXPECT_STREQ(e.GetDescription(), "Could not allocate data.");
    }
}

TEST(Variant, TypedReadSharesTheObjectAndReadsThroughBases)
{
    const Variant variant{Integer(4, nullptr)};
    COWPtr<IInteger> handle = variant.get<COWPtr<IInteger>>(true);
    EXPECT_EQ(handle.getUseCount(), 2);
    COWPtr<Integer> concrete = variant.get<COWPtr<Integer>>(true);
    EXPECT_EQ(concrete.getUseCount(), 3);
    EXPECT_EQ(std::as_const(concrete).get(), static_cast<const Integer*>(std::as_const(handle).get()));
    handle.reset();
    concrete.reset();
    EXPECT_EQ(variant.get<COWPtr<Core::IValue>>(true).getUseCount(), 2);
}

TEST(Variant, HoldsACopyAndCopiesShareUntilOneWrites)
{
    Integer value(10, nullptr);
    Variant variant(value);
    value.setValue(11);
    EXPECT_EQ(variant.get<COWPtr<IInteger>>(true)->getValue(), 10);
    EXPECT_EQ(variant.getTypeInfo(), Utils::TypeInfo::get<Integer>(true));

    Variant a{Integer(1, nullptr)};
    Variant b = a;
    const IInteger* sharedObject = std::as_const(b).get<IInteger>(true);
    EXPECT_EQ(std::as_const(a).get<IInteger>(true), sharedObject);

    IInteger* writable = a.get<IInteger>(true);
    writable->setValue(2);
    EXPECT_NE(writable, sharedObject);
    EXPECT_EQ(std::as_const(b).get<IInteger>(true)->getValue(), 1);
    EXPECT_EQ(std::as_const(a).get<IInteger>(true)->getValue(), 2);
}

TEST(Variant, SetDataSharesOrTakesOverAndKeepsOldContentOnFailure)
{
    Variant variant{NoValue()};
    COWPtr<IInteger> pointer(new Integer(6, nullptr));

    variant.setData(pointer);
    EXPECT_EQ(pointer.getUseCount(), 2);
    EXPECT_EQ(variant.getTypeInfo(), Utils::TypeInfo::get<Integer>(true));

    variant.setData(std::move(pointer));
    EXPECT_FALSE(pointer.isValid());
    EXPECT_EQ(variant.get<COWPtr<IInteger>>(true).getUseCount(), 2);

    EXPECT_EQ(failureText([&] { variant.setData(COWPtr<IInteger>()); }), "Invalid data pointer passed.");
    EXPECT_EQ(variant.get<COWPtr<IInteger>>(true)->getValue(), 6);
}
