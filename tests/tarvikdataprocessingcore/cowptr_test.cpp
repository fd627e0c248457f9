#include "refused_allocation.h"

#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/utils/Variant.h>

#include <gtest/gtest.h>

using namespace Tarvik::DataProcessing;
using Core::IInteger;
using Core::Integer;
using Utils::COWPtr;

namespace
{

template <typename F>
std::string runtimeFailure(F&& action)
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

// A value whose clones report a type that is not registered, and that counts
// its live objects.
class Chameleon : public Core::IValue
{
public:
    static inline int alive = 0;

    Chameleon() { ++alive; }
    Chameleon(const Chameleon&)
        : m_isClone(true)
    {
        ++alive;
    }
    ~Chameleon() override { --alive; }

    bool hasError(bool) const override { return false; }
    std::shared_ptr<Core::IError> getError(bool) const override { return nullptr; }
    Utils::TypeInfo getTypeInfo(bool mustExist) const override
    {
        return m_isClone ? Utils::TypeInfo() : Utils::TypeInfo::get<Chameleon>(mustExist);
    }
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }

private:
    bool m_isClone = false;
};

const Utils::TypeRegistrar<Chameleon, Utils::DirectBase<Core::IValue>, Utils::IndirectBase<Utils::IObject>>
    chameleonType("Chameleon");

// A value that counts its live objects, and that throws when asked for its
// address or its type while `refused` names that question.
class Evasive : public Core::IValue
{
public:
    enum Question
    {
        None,
        RawPointer,
        Type
    };
    static inline int alive = 0;
    static inline Question refused = None;

    Evasive() { ++alive; }
    ~Evasive() override { --alive; }

    bool hasError(bool) const override { return false; }
    std::shared_ptr<Core::IError> getError(bool) const override { return nullptr; }
    Utils::TypeInfo getTypeInfo(bool) const override
    {
        answer(Type);
        return {};
    }
    const void* getRawPointer() const override
    {
        answer(RawPointer);
        return this;
    }
    void* getRawPointer() override
    {
        answer(RawPointer);
        return this;
    }

private:
    static void answer(Question question)
    {
        if (refused == question)
            throw RUNTIME_EXCEPTION("Refused.");
    }
};

using IntegerWrapper = Utils::COWPtrBase::ObjectWrapper<Integer, Integer, std::default_delete<Integer>,
                                                        Utils::DefaultCloner<Integer>>;

} // namespace

TEST(CowPtr, EmptyHandleRefusesAccessAndIgnoresResetAndDetach)
{
    COWPtr<Integer> empty;
    EXPECT_FALSE(empty.isValid());
    EXPECT_FALSE(empty.hasObject());
    EXPECT_EQ(empty.getUseCount(), 0);
    EXPECT_FALSE(empty.isUnique());
    empty.detach();
    empty.reset();
    EXPECT_EQ(runtimeFailure([&] { std::as_const(empty).get(); }), "Cannot access nullptr object.");
    EXPECT_EQ(runtimeFailure([&] { empty.get(); }), "Cannot access nullptr object.");
    EXPECT_EQ(runtimeFailure([] { COWPtr<Integer>(static_cast<Integer*>(nullptr)); }), "No object passed.");
}

TEST(CowPtr, SoleOwnerWritesInPlace)
{
    COWPtr<Integer> only(new Integer(7, nullptr));
    const Integer* before = std::as_const(only).get();
    only->setValue(8);
    EXPECT_EQ(only.get(), before);
    EXPECT_EQ(only.getUseCount(), 1);
    EXPECT_TRUE(only.isUnique());
}

TEST(CowPtr, WriteThroughSharedHandleClonesAndLeavesTheOtherUnchanged)
{
    COWPtr<Integer> a(new Integer(1, nullptr));
    COWPtr<Integer> b = a;
    EXPECT_EQ(a.getUseCount(), 2);
    const Integer* shared = std::as_const(b).get();

    a->setValue(2);

    EXPECT_NE(std::as_const(a).get(), shared);
    EXPECT_EQ(std::as_const(b).get(), shared);
    EXPECT_EQ(a.getUseCount(), 1);
    EXPECT_EQ(b.getUseCount(), 1);
    EXPECT_EQ(a->getValue(), 2);
    EXPECT_EQ(std::as_const(b)->getValue(), 1);
}

TEST(CowPtr, CloneThroughInterfaceKeepsTheConcreteClass)
{
    COWPtr<IInteger> a(new Integer(5, nullptr));
    COWPtr<IInteger> b = a;
    a->setValue(6);
    const IInteger* clone = std::as_const(a).get();
    EXPECT_NE(dynamic_cast<const Integer*>(clone), nullptr);
    EXPECT_EQ(clone->getTypeInfo(true), Utils::TypeInfo::get<Integer>(true));
    EXPECT_EQ(std::as_const(b)->getValue(), 5);
}

TEST(CowPtr, ConvertingConstructionCastsOrRefuses)
{
    COWPtr<Integer> concrete(new Integer(3, nullptr));
    COWPtr<IInteger> seen(concrete);
    EXPECT_EQ(concrete.getUseCount(), 2);
    EXPECT_EQ(std::as_const(seen).get(), static_cast<const IInteger*>(std::as_const(concrete).get()));

    EXPECT_EQ(runtimeFailure([&] { COWPtr<Core::IFloat> wrong(concrete); }),
              "Cannot cast pointer of passed COW pointer to this COW pointer.");
    EXPECT_EQ(concrete.getUseCount(), 2);
    EXPECT_FALSE(COWPtr<IInteger>(COWPtr<Integer>()).isValid());

    // A casted handle detaches through the cast again.
    seen->setValue(4);
    EXPECT_EQ(std::as_const(concrete)->getValue(), 3);
    EXPECT_EQ(std::as_const(seen)->getValue(), 4);
}

TEST(CowPtr, AssignmentCountsAndSurvivesSelfAssignment)
{
    COWPtr<Integer> a(new Integer(1, nullptr));
    COWPtr<Integer> b(new Integer(2, nullptr));
    COWPtr<Integer>& alias = a;
    a = alias;
    EXPECT_EQ(a.getUseCount(), 1);
    b = a;
    EXPECT_EQ(a.getUseCount(), 2);
    COWPtr<Integer> c = std::move(b);
    EXPECT_FALSE(b.isValid());
    EXPECT_EQ(c.getUseCount(), 2);
    c.reset();
    EXPECT_EQ(a.getUseCount(), 1);
}

TEST(CowPtr, ClonesGetAFreshLock)
{
    auto lock = std::make_shared<Threading::RecursiveMutex>();
    COWPtr<Integer> a(new Integer(1, lock));
    COWPtr<Integer> b = a;
    a.detach();
    // The clone must not share the source's lock: holding the old lock on another
    // thread would otherwise block a write to the clone.
    lock->lock();
    std::thread writer([&] { a->setValue(9); });
    writer.join();
    lock->unlock();
    EXPECT_EQ(std::as_const(a)->getValue(), 9);
}

TEST(CowPtr, FailedCastDuringDetachGivesUpTheCloneAndKeepsSharing)
{
    {
        COWPtr<Chameleon> original(new Chameleon);
        COWPtr<Core::IValue> casted(original);
        const Core::IValue* before = std::as_const(casted).get();
        EXPECT_EQ(runtimeFailure([&] { casted.detach(); }),
                  "Cannot cast pointer of cloned object to COW pointer.");
        EXPECT_EQ(std::as_const(casted).get(), before);
        EXPECT_EQ(original.getUseCount(), 2);
        EXPECT_EQ(Chameleon::alive, 1);
    }
    EXPECT_EQ(Chameleon::alive, 0);
}

// The wrapper that cannot learn its object's address or type gives the object
// back before the exception leaves.
TEST(CowPtr, WrapperThatCannotAskItsObjectLeavesNothingBehind)
{
    for (const Evasive::Question question : {Evasive::RawPointer, Evasive::Type})
    {
        Evasive::refused = question;
        EXPECT_EQ(runtimeFailure([] { COWPtr<Evasive> handle(new Evasive); }), "Refused.") << question;
        EXPECT_EQ(Evasive::alive, 0) << question;
    }
    Evasive::refused = Evasive::None;
}

TEST(CowPtr, CloneWithoutMemoryForItsWrapperRaisesAndKeepsSharing)
{
    COWPtr<Integer> a(new Integer(1, nullptr));
    COWPtr<Integer> b = a;
    const Integer* shared = std::as_const(a).get();
    try
    {
        const RefusedAllocation refused(sizeof(IntegerWrapper));
        a.detach();
        ADD_FAILURE() << "no exception";
    }
    catch (const GenICam::BadAllocException& e)
    {
        EXPECT_STREQ(e.GetDescription(), "Could not clone object.");
    }
    EXPECT_EQ(std::as_const(a).get(), shared);
    EXPECT_EQ(a.getUseCount(), 2);
}

namespace
{
// Looks at the wrapper while it destroys its object, when its count has reached 0.
Utils::COWPtrBase::IObjectWrapper* dyingWrapper = nullptr;
int64_t countsSeenWhileDying[2] = {-1, -1};
int deletions = 0;

struct ProbingDeleter
{
    void operator()(Integer* object) const
    {
        ++deletions;
        dyingWrapper->addRef();
        countsSeenWhileDying[0] = dyingWrapper->getUseCount();
        dyingWrapper->release();
        countsSeenWhileDying[1] = dyingWrapper->getUseCount();
        delete object;
    }
};
} // namespace

TEST(CowPtr, WrapperCountStopsAtZero)
{
    COWPtr<Integer> a(new Integer(1, nullptr), ProbingDeleter());
    dyingWrapper = a.getObjectWrapper();
    COWPtr<Integer> b = a;
    EXPECT_EQ(dyingWrapper->getUseCount(), 2);
    a.reset();
    EXPECT_EQ(deletions, 0);
    b.reset(); // 1 -> 0: the object goes, and the probe runs
    EXPECT_EQ(deletions, 1) << "a release at 0 must not destroy again";
    EXPECT_EQ(countsSeenWhileDying[0], 0) << "addRef at 0";
    EXPECT_EQ(countsSeenWhileDying[1], 0) << "release at 0";
}
