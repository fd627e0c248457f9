#include "failure_text.h"

#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <tarvikdataprocessingcore/core/array_impl.h>

#include <gtest/gtest.h>

#include <functional>
#include <vector>

using namespace Tarvik::DataProcessing;
using Core::Array;
using Core::IInteger;
using Utils::COWPtr;

namespace
{

using IntegerArray = Array<IInteger, void>;
using IntegerArrayInterface = Core::IArrayT<IInteger, void>;

std::shared_ptr<Threading::RecursiveMutex> freshLock()
{
    return std::make_shared<Threading::RecursiveMutex>();
}

COWPtr<IInteger> integer(int64_t value)
{
    return COWPtr<IInteger>(new Core::Integer(value, freshLock()));
}

std::shared_ptr<Core::IError> error(const char* text)
{
    return std::make_shared<Core::InvalidValueError>(text, Utils::DateTime::now());
}

// Counts the notifications of both properties of one array.
struct Observer
{
    explicit Observer(Core::IArray& array)
        : size(array.getSizeProperty().getChangedSignal().connect([this] { ++sizeChanges; }))
        , empty(array.getEmptyProperty().getChangedSignal().connect([this] { ++emptyChanges; }))
    {
    }
    ~Observer()
    {
        size->disconnect(true);
        empty->disconnect(true);
    }
    int sizeChanges = 0;
    int emptyChanges = 0;
    std::shared_ptr<Utils::IConnection> size;
    std::shared_ptr<Utils::IConnection> empty;
};

class ArrayTest : public ::testing::Test
{
protected:
    // Reads both properties, so that the next change is reported.
    static void readProperties(Core::IArray& array)
    {
        array.getSizeProperty().getValue();
        array.getEmptyProperty().getValue();
    }

    static int64_t sizeOf(Core::IArray& array) { return array.getSizeProperty()->getValue(); }
};

TEST_F(ArrayTest, CountConstructorMakesNullElements)
{
    IntegerArray array(3, freshLock());
    EXPECT_EQ(array.getSize(), 3u);
    EXPECT_FALSE(array.hasError(true));
    EXPECT_FALSE(array.getElement(1).isValid());
    EXPECT_FALSE(array.elementAt(2).hasObject());
    EXPECT_EQ(array.getElementType(), Utils::TypeInfo::get<IInteger>(true));
    IntegerArray empty(0, freshLock());
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(sizeOf(empty), 0);
    EXPECT_TRUE(empty.getEmptyProperty()->getValue());
}

// Each refusal with its text; the array keeps its one null element.
TEST_F(ArrayTest, RefusesBadIndicesErrorsLocksAndValuesOfAnotherType)
{
    IntegerArray array(1, freshLock());
    const Utils::Variant text(Core::String("seven", freshLock()));
    const std::string badIndex = "InvalidArgumentException: Invalid index passed.";
    const std::string otherType = "RuntimeException: Could not cast variant data to requested type.";
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[&] { array.elementRef(1); }, badIndex},
        {[&] { array.getElement(1); }, badIndex},
        {[&] { array.setElement(1, integer(1)); }, badIndex},
        {[&] { array.pushBack(text); }, otherType},
        {[&] { array.setElement(0, text); }, otherType},
        {[&] { array.setError(nullptr); }, "InvalidArgumentException: Error pointer is invalid."},
        {[] { IntegerArray(std::shared_ptr<Core::IError>(), freshLock()); },
         "InvalidArgumentException: Error pointer is not valid."},
        {[] { IntegerArray(1, nullptr); }, "InvalidArgumentException: No lockable passed."},
    };
    for (const auto& [action, failure] : cases)
        EXPECT_EQ(failureOf(action), failure);
    EXPECT_EQ(array.getSize(), 1u);
    EXPECT_FALSE(array.elementAt(0).hasObject());
}

TEST_F(ArrayTest, ErrorStateRefusesElementOperationsButNotProperties)
{
    const auto cause = error("camera unplugged");
    IntegerArray array(cause, freshLock());
    const std::vector<std::function<void()>> elementOperations = {
        [&] { array.clear(); },
        [&] { array.getSize(); },
        [&] { array.getCapacity(); },
        [&] { array.isEmpty(); },
        [&] { array.resize(2); },
        [&] { array.reserve(2); },
        [&] { array.pushBack(Utils::Variant()); },
        [&] { array.setElement(0, Utils::Variant()); },
        [&] { array.getElement(0); },
        [&] { array.pushBack(integer(1)); },
        [&] { array.setElement(0, integer(1)); },
        [&] { std::as_const(array).elementAt(0); },
        [&] { std::as_const(array).elementRef(0); },
        [&] { array.elementAt(0); },
        [&] { array.elementRef(0); },
        [&] { std::as_const(array).data(); },
        [&] { array.data(); },
    };
    for (size_t i = 0; i < elementOperations.size(); ++i)
        EXPECT_EQ(failureOf(elementOperations[i]), "RuntimeException: Array is in error state.")
            << "operation " << i;

    const COWPtr<IInteger> size = array.getSizeProperty().getValue();
    EXPECT_TRUE(size->hasError(false));
    EXPECT_EQ(size->getError(false), cause);
    const COWPtr<Core::IBoolean> empty = array.getEmptyProperty().getValue();
    EXPECT_EQ(empty->getError(false), cause);
    EXPECT_EQ(array.getError(false), cause);
}

TEST_F(ArrayTest, ElementErrorsCountOnlyWhenAskedRecursively)
{
    const auto cause = error("bad element");
    IntegerArray array(3, freshLock());
    array.setElement(1, integer(5));
    array.setElement(2, COWPtr<IInteger>(new Core::Integer(cause, freshLock())));
    EXPECT_FALSE(array.hasError(false));
    EXPECT_EQ(array.getError(false), nullptr);
    EXPECT_TRUE(array.hasError(true));
    EXPECT_EQ(array.getError(true), cause);
    EXPECT_EQ(array.getSize(), 3u);
}

TEST_F(ArrayTest, CountChangesNotifyOncePerReadValue)
{
    IntegerArray array(2, freshLock());
    Observer observer(array);

    array.resize(3); // nothing read yet: nothing went stale
    EXPECT_EQ(observer.sizeChanges, 0);

    readProperties(array);
    array.resize(3); // the same count still fires
    EXPECT_EQ(observer.sizeChanges, 1);
    EXPECT_EQ(observer.emptyChanges, 1);

    readProperties(array);
    array.pushBack(integer(1));
    array.pushBack(Utils::Variant());
    array.clear();
    EXPECT_EQ(observer.sizeChanges, 2);
    EXPECT_EQ(observer.emptyChanges, 2);
    EXPECT_EQ(sizeOf(array), 0);

    array.setError(error("gone"));
    EXPECT_EQ(observer.sizeChanges, 3);
    EXPECT_TRUE(array.getSizeProperty()->hasError(false));
}

TEST_F(ArrayTest, ElementWritesAndReserveNotifyNobody)
{
    IntegerArray array(2, freshLock());
    Observer observer(array);
    readProperties(array);
    array.setElement(0, integer(7));
    array.setElement(1, Utils::Variant(Core::Integer(8, freshLock())));
    array.elementRef(0) = integer(9);
    array.reserve(100);
    EXPECT_EQ(observer.sizeChanges, 0);
    EXPECT_EQ(observer.emptyChanges, 0);
    EXPECT_EQ(array.elementAt(0)->getValue(), 9);
    EXPECT_EQ(array.getElement(1).get<COWPtr<IInteger>>(true)->getValue(), 8);
    EXPECT_GE(array.getCapacity(), 100u);
}

TEST_F(ArrayTest, CopySharesElementsWithItsOwnProperties)
{
    IntegerArray source(0, freshLock());
    source.pushBack(integer(4));
    IntegerArray copy(source, freshLock());
    EXPECT_EQ(copy.elementAt(0).getUseCount(), 3); // source, copy and the handle returned here
    Observer observer(copy);
    readProperties(copy);
    source.pushBack(integer(5));
    EXPECT_EQ(observer.sizeChanges, 0);
    EXPECT_EQ(sizeOf(copy), 1);

    const auto cause = error("lost");
    IntegerArray failed(cause, freshLock());
    EXPECT_EQ(IntegerArray(failed, freshLock()).getError(false), cause);
}

TEST_F(ArrayTest, AssignmentFromIArrayTakesElementsOrError)
{
    IntegerArray source(0, freshLock());
    source.pushBack(integer(1));
    source.pushBack(Utils::Variant());
    IntegerArray target(5, freshLock());
    target.setError(error("old"));
    Observer observer(target);
    readProperties(target);

    target.assign(static_cast<const Core::IArray&>(source));
    EXPECT_FALSE(target.hasError(false));
    ASSERT_EQ(target.getSize(), 2u);
    EXPECT_EQ(target.elementAt(0)->getValue(), 1);
    EXPECT_FALSE(target.elementAt(1).hasObject());
    EXPECT_EQ(observer.sizeChanges, 1);

    const auto cause = error("element failed");
    source.setElement(1, COWPtr<IInteger>(new Core::Integer(cause, freshLock())));
    target.assign(static_cast<const Core::IArray&>(source));
    EXPECT_EQ(target.getError(false), cause);
    EXPECT_EQ(failureOf([&] { target.getSize(); }), "RuntimeException: Array is in error state.");
}

TEST_F(ArrayTest, AssignmentFromItselfOrAnIncompatibleArrayLeavesTargetAsItWas)
{
    Array<Core::IBoolean, void> flags(0, freshLock());
    flags.pushBack(COWPtr<Core::IBoolean>(new Core::Boolean(true, freshLock())));
    IntegerArray target(0, freshLock());
    target.pushBack(integer(3));
    Observer observer(target);
    readProperties(target);
    target.assign(static_cast<const Core::IArray&>(target));
    target.assign(static_cast<const IntegerArrayInterface&>(target));
    EXPECT_EQ(failureOf([&] { target.assign(static_cast<const Core::IArray&>(flags)); }),
              "InvalidArgumentException: Data in the given array is not compatible with this array.");
    ASSERT_EQ(target.getSize(), 1u);
    EXPECT_EQ(target.elementAt(0)->getValue(), 3);
    EXPECT_EQ(observer.sizeChanges, 0);
}

TEST_F(ArrayTest, TypedAssignmentNeedsSourceData)
{
    IntegerArray neverFilled(0, freshLock());
    IntegerArray target(1, freshLock());
    EXPECT_EQ(failureOf([&] { target.assign(static_cast<const IntegerArrayInterface&>(neverFilled)); }),
              "RuntimeException: Invalid array data retrieved.");
    EXPECT_EQ(target.getSize(), 1u);

    IntegerArray source(0, freshLock());
    source.pushBack(integer(11));
    source.pushBack(integer(12));
    target.setError(error("old"));
    target.assign(static_cast<const IntegerArrayInterface&>(source));
    ASSERT_EQ(target.getSize(), 2u);
    EXPECT_EQ(std::as_const(target).data()[1]->getValue(), 12);
    EXPECT_EQ(target.elementAt(1).getUseCount(), 3);

    const auto cause = error("failed");
    IntegerArray failed(cause, freshLock());
    target.assign(static_cast<const IntegerArrayInterface&>(failed));
    EXPECT_EQ(target.getError(false), cause);
}

TEST_F(ArrayTest, TravelsInVariantAsItsInterfaceAndConvertsToItsBases)
{
    IntegerArray array(0, freshLock());
    array.pushBack(integer(42));
    const Utils::Variant value(array);
    const COWPtr<IntegerArrayInterface> seen = value.get<COWPtr<IntegerArrayInterface>>(true);
    ASSERT_EQ(seen->getSize(), 1u);
    EXPECT_EQ(seen->elementRef(0)->getValue(), 42);
    EXPECT_EQ(seen->getTypeInfo(true).getName(), Utils::TypeInfo::get<IntegerArray>(true).getName());
    array.elementRef(0) = integer(0); // the Variant holds a copy of the array
    EXPECT_EQ(seen->elementRef(0)->getValue(), 42);
    const Utils::TypeInfo arrayType = Utils::TypeInfo::get<IntegerArray>(true);
    for (const Utils::TypeInfo& base :
         {Utils::TypeInfo::get<IntegerArrayInterface>(true), Utils::TypeInfo::get<Core::IArray>(true),
          Utils::TypeInfo::get<Core::IValue>(true), Utils::TypeInfo::get<Utils::IObject>(true)})
        EXPECT_TRUE(arrayType.canConvert(base)) << base.getName();
}

// A binding whose getter counts its calls.
class ReadOnlyPropertyTest : public ::testing::Test
{
protected:
    std::shared_ptr<Threading::RecursiveMutex> lock = freshLock();
    int calls = 0;
    int64_t current = 10;
    std::shared_ptr<Utils::BasicBinding<IInteger>> binding = std::make_shared<Utils::BasicBinding<IInteger>>(
        [this]
        {
            ++calls;
            return integer(current);
        },
        lock);
};

TEST_F(ReadOnlyPropertyTest, CachesUntilTheBindingFires)
{
    Utils::ReadOnlyProperty<IInteger> property(binding, lock);
    int notifications = 0;
    const auto connection = property.getChangedSignal().connect([&] { ++notifications; });
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(property.getValue()->getValue(), 10);
    EXPECT_EQ(property->getValue(), 10);
    EXPECT_EQ((*property).getValue(), 10);
    EXPECT_EQ(calls, 1);

    current = 11;
    binding->notifyChanged();
    binding->notifyChanged();
    EXPECT_EQ(notifications, 1);
    EXPECT_EQ(property.getVariant().get<COWPtr<IInteger>>(true)->getValue(), 11);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(property.getTypeInfo(), Utils::TypeInfo::get<IInteger>(true));
    connection->disconnect(true);
}

TEST_F(ReadOnlyPropertyTest, RefusesWhatCannotGiveAValue)
{
    auto empty = std::make_shared<Utils::BasicBinding<IInteger>>([] { return COWPtr<IInteger>(); }, lock);
    Utils::ReadOnlyProperty<IInteger> emptyProperty(empty, lock);
    Utils::ReadOnlyProperty<IInteger> property(binding, lock);
    EXPECT_EQ(property.getVariant("").get<COWPtr<IInteger>>(true)->getValue(), 10);
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[] { Utils::ReadOnlyProperty<IInteger>(nullptr, nullptr); },
         "InvalidArgumentException: No lockable passed."},
        {[&] { Utils::ReadOnlyProperty<IInteger>(nullptr, lock); },
         "InvalidArgumentException: No property binding passed."},
        {[&] { Utils::BasicBinding<IInteger>(nullptr, lock); },
         "InvalidArgumentException: Invalid functor passed."},
        {[&] { emptyProperty.getValue(); }, "RuntimeException: Cannot evaluate property binding."},
        {[&] { *emptyProperty; }, "RuntimeException: Cannot evaluate property binding."},
        {[&] { property.getVariant("Value"); },
         "InvalidArgumentException: The value has no property 'Value'."},
    };
    for (const auto& [action, failure] : cases)
        EXPECT_EQ(failureOf(action), failure);
}

TEST_F(ReadOnlyPropertyTest, DestroyedPropertyIsNoLongerInvalidated)
{
    {
        Utils::ReadOnlyProperty<IInteger> property(binding, lock);
        property.getValue();
        EXPECT_EQ(binding->getChangedSignal().getConnectionCount(), 1u);
    }
    EXPECT_EQ(binding->getChangedSignal().getConnectionCount(), 0u);
    binding->notifyChanged();
}

} // namespace
