// The Variant: holds a copy or shares a handle, reads through bases, and refuses
// other types and unregistered ones; copies share their object until one writes.
#include "failure_text.h"

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

// Reads of an empty Variant or of another type give nothing, or raise when the
// value must exist.
TEST(Variant, ReadsThatCannotSucceedAreEmptyOrRaise)
{
    const Variant empty;
    const Variant integer{Integer(3, nullptr)};
    EXPECT_FALSE(empty.isValid());
    EXPECT_FALSE(empty.get<COWPtr<IInteger>>(false).isValid());
    EXPECT_EQ(empty.get<IInteger>(false), nullptr);
    EXPECT_FALSE(integer.get<COWPtr<Core::IFloat>>(false).isValid());
    EXPECT_EQ(integer.get<Core::IFloat>(false), nullptr);
    EXPECT_EQ(integer.get<Unregistered>(false), nullptr);
    const std::pair<std::function<void()>, std::string> failures[] = {
        {[&] { empty.get<COWPtr<IInteger>>(true); }, "RuntimeException: Variant is not valid."},
        {[&] { empty.get<IInteger>(true); }, "RuntimeException: Variant is not valid."},
        {[&] { integer.get<COWPtr<Core::IFloat>>(true); },
         "RuntimeException: Could not cast variant data to requested type."},
        {[&] { integer.get<Core::IFloat>(true); },
         "RuntimeException: Could not cast variant value to requested type."},
        {[&] { integer.get<Unregistered>(true); }, "RuntimeException: The requested type is not registered."},
    };
    for (const auto& [read, text] : failures)
        EXPECT_EQ(failureOf(read), text);
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
            EXPECT_EQ(failureOf(way), "RuntimeException: The requested type is not registered.");
            EXPECT_EQ(variant.get<COWPtr<IInteger>>(true)->getValue(), 5);
        }
        EXPECT_EQ(pointer.getUseCount(), 1);
    }
    EXPECT_EQ(Unregistered::alive, 0);
}

// The value form holds a copy of its own; typed reads share the object, also
// through a base; copies of a Variant share until one writes.
TEST(Variant, ReadsAndCopiesShareUntilOneWrites)
{
    Integer value(10, nullptr);
    Variant a(value);
    value.setValue(11);
    EXPECT_EQ(a.getTypeInfo(), Utils::TypeInfo::get<Integer>(true));
    const COWPtr<IInteger> handle = a.get<COWPtr<IInteger>>(true);
    const COWPtr<Integer> concrete = a.get<COWPtr<Integer>>(true);
    EXPECT_EQ(concrete.getUseCount(), 3);
    EXPECT_EQ(concrete.get(), static_cast<const Integer*>(handle.get()));
    EXPECT_EQ(handle->getValue(), 10);

    Variant b = a;
    const IInteger* const shared = std::as_const(b).get<IInteger>(true);
    EXPECT_EQ(std::as_const(a).get<IInteger>(true), shared);
    IInteger* const writable = b.get<IInteger>(true);
    writable->setValue(2);
    EXPECT_NE(writable, shared);
    EXPECT_EQ(std::as_const(a).get<IInteger>(true)->getValue(), 10);
    EXPECT_EQ(std::as_const(b).get<IInteger>(true)->getValue(), 2);
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

    EXPECT_EQ(failureOf([&] { variant.setData(COWPtr<IInteger>()); }),
              "InvalidArgumentException: Invalid data pointer passed.");
    EXPECT_EQ(variant.get<COWPtr<IInteger>>(true)->getValue(), 6);
}
