#include "failure_text.h"

#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <tarvikdataprocessingcore/core/array_impl.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
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

int64_t sizeOf(Core::IArray& array)
{
    return array.getSizeProperty()->getValue();
}

// Reads both properties, so that the next change is reported.
void readProperties(Core::IArray& array)
{
    array.getSizeProperty().getValue();
    array.getEmptyProperty().getValue();
}

// Counts the notifications of both properties of one array, from a first read on.
struct Observer
{
    explicit Observer(Core::IArray& array)
        : size(array.getSizeProperty().getChangedSignal().connect([this] { ++sizeChanges; }))
        , empty(array.getEmptyProperty().getChangedSignal().connect([this] { ++emptyChanges; }))
    {
        readProperties(array);
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

TEST(Array, CountConstructorMakesNullElementsWhoseErrorsCountOnlyWhenAskedRecursively)
{
    IntegerArray array(3, freshLock());
    EXPECT_EQ(array.getSize(), 3u);
    EXPECT_FALSE(array.hasError(true));
    EXPECT_FALSE(array.getElement(1).isValid());
    EXPECT_FALSE(array.elementAt(2).hasObject());
    EXPECT_EQ(array.getElementType(), Utils::TypeInfo::get<IInteger>(true));
    const auto cause = error("bad element");
    array.setElement(1, integer(5));
    array.setElement(2, COWPtr<IInteger>(new Core::Integer(cause, freshLock())));
    EXPECT_FALSE(array.hasError(false));
    EXPECT_EQ(array.getError(false), nullptr);
    EXPECT_TRUE(array.hasError(true));
    EXPECT_EQ(array.getError(true), cause);

    IntegerArray empty(0, freshLock());
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_EQ(sizeOf(empty), 0);
    EXPECT_TRUE(empty.getEmptyProperty()->getValue());
}

// Each refusal with its text; the array keeps its one null element.
TEST(Array, RefusesBadIndicesErrorsLocksAndValuesOfAnotherType)
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

TEST(Array, ErrorStateRefusesElementOperationsButNotProperties)
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

TEST(Array, CountChangesNotifyOncePerReadValueAndElementWritesNotAtAll)
{
    IntegerArray array(2, freshLock());
    Observer observer(array);
    array.setElement(0, integer(7));
    array.setElement(1, Utils::Variant(Core::Integer(8, freshLock())));
    array.elementRef(0) = integer(9);
    array.reserve(100);
    EXPECT_EQ(observer.sizeChanges, 0);
    EXPECT_EQ(observer.emptyChanges, 0);
    EXPECT_EQ(array.elementAt(0)->getValue(), 9);
    EXPECT_EQ(array.getElement(1).get<COWPtr<IInteger>>(true)->getValue(), 8);
    EXPECT_GE(array.getCapacity(), 100u);

    array.resize(2); // the same count still fires
    array.resize(3); // nothing read since: nothing went stale
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

// A target in error state, assigned from `source` through one of its two interfaces.
template <typename Interface>
std::unique_ptr<IntegerArray> assignedFrom(const IntegerArray& source)
{
    auto target = std::make_unique<IntegerArray>(error("old"), freshLock());
    target->assign(static_cast<const Interface&>(source));
    return target;
}

// The three ways to take another array's contents: its elements shared, or its error.
TEST(Array, CopyAndAssignmentsShareTheElementsOrTakeTheError)
{
    using Take = std::unique_ptr<IntegerArray> (*)(const IntegerArray&);
    const struct
    {
        const char* name;
        Take take;
        bool asksElementsForErrors;
    } ways[] = {
        {"copy",
         [](const IntegerArray& source) { return std::make_unique<IntegerArray>(source, freshLock()); },
         false},
        {"assignment from IArray", assignedFrom<Core::IArray>, true},
        {"assignment from IArrayT", assignedFrom<IntegerArrayInterface>, true},
    };
    IntegerArray source(0, freshLock());
    source.pushBack(integer(4));
    source.pushBack(Utils::Variant());
    const auto cause = error("lost");
    const IntegerArray failed(cause, freshLock());
    IntegerArray failedElement(0, freshLock());
    failedElement.pushBack(COWPtr<IInteger>(new Core::Integer(cause, freshLock())));
    for (const auto& way : ways)
    {
        const auto copy = way.take(source);
        ASSERT_FALSE(copy->hasError(false)) << way.name;
        ASSERT_EQ(copy->getSize(), 2u) << way.name;
        EXPECT_EQ(std::as_const(*copy).data()[0]->getValue(), 4) << way.name;
        EXPECT_EQ(copy->elementAt(0).getUseCount(), 3) << way.name; // source, copy and the handle here
        EXPECT_FALSE(copy->elementAt(1).hasObject()) << way.name;
        EXPECT_EQ(way.take(failed)->getError(false), cause) << way.name;
        EXPECT_EQ(way.take(failedElement)->getError(false), way.asksElementsForErrors ? cause : nullptr)
            << way.name;
    }
}

TEST(Array, AssignmentNotifiesOnceUnlessItIsRefusedOrFromItself)
{
    Array<Core::IBoolean, void> flags(0, freshLock());
    flags.pushBack(COWPtr<Core::IBoolean>(new Core::Boolean(true, freshLock())));
    const IntegerArray neverFilled(0, freshLock());
    IntegerArray target(0, freshLock());
    target.pushBack(integer(3));
    Observer observer(target);
    target.assign(static_cast<const Core::IArray&>(target));
    target.assign(static_cast<const IntegerArrayInterface&>(target));
    EXPECT_EQ(failureOf([&] { target.assign(static_cast<const Core::IArray&>(flags)); }),
              "InvalidArgumentException: Data in the given array is not compatible with this array.");
    EXPECT_EQ(failureOf([&] { target.assign(static_cast<const IntegerArrayInterface&>(neverFilled)); }),
              "RuntimeException: Invalid array data retrieved.");
    ASSERT_EQ(target.getSize(), 1u);
    EXPECT_EQ(target.elementAt(0)->getValue(), 3);
    EXPECT_EQ(observer.sizeChanges, 0);

    // Then an assignment tells once, and the target keeps properties of its own.
    IntegerArray source(0, freshLock());
    source.pushBack(integer(1));
    source.pushBack(integer(2));
    target.assign(static_cast<const Core::IArray&>(source));
    source.pushBack(integer(5));
    EXPECT_EQ(observer.sizeChanges, 1);
    EXPECT_EQ(sizeOf(target), 2);
}

TEST(Array, TravelsInVariantAsItsInterfaceAndConvertsToItsBases)
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

// A destroyed property leaves the binding's signal, and is no longer invalidated.
TEST_F(ReadOnlyPropertyTest, CachesUntilTheBindingFiresWhileItLives)
{
    {
        Utils::ReadOnlyProperty<IInteger> property(binding, lock);
        int notifications = 0;
        const auto connection = property.getChangedSignal().connect([&] { ++notifications; });
        EXPECT_EQ(calls, 0);
        EXPECT_EQ(property.getValue()->getValue(), 10);
        EXPECT_EQ(property->getValue(), 10);
        EXPECT_EQ((*property).getValue(), 10);
        EXPECT_EQ(calls, 1);
        EXPECT_EQ(binding->getChangedSignal().getConnectionCount(), 1u);

        current = 11;
        binding->notifyChanged();
        binding->notifyChanged();
        EXPECT_EQ(notifications, 1);
        EXPECT_EQ(property.getVariant().get<COWPtr<IInteger>>(true)->getValue(), 11);
        EXPECT_EQ(calls, 2);
        EXPECT_EQ(property.getTypeInfo(), Utils::TypeInfo::get<IInteger>(true));
        connection->disconnect(true);
    }
    EXPECT_EQ(binding->getChangedSignal().getConnectionCount(), 0u);
    binding->notifyChanged();
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

} // namespace
