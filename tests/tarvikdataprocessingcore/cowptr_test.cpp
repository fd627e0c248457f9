// Copy on write: a write through a shared handle clones, through the only one it
// does not; clones keep a lock of their own; failures leave the handles as they
// were and lose no object.
#include "failure_text.h"
#include "refused_allocation.h"

#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikDataProcessingCore/utils/Variant.h>

#include <gtest/gtest.h>

#include <thread>

using namespace Tarvik::DataProcessing;
using Core::IInteger;
using Core::Integer;
using Utils::COWPtr;

namespace
{

// A value that counts its live objects. Its clones report a type that is not
// registered; while `refuseType` is set, it raises when asked for its type.
class Chameleon : public Core::IValue
{
public:
    static inline int alive = 0;
    static inline bool refuseType = false;

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
        if (refuseType)
            throw RUNTIME_EXCEPTION("Refused.");
        return m_isClone ? Utils::TypeInfo() : Utils::TypeInfo::get<Chameleon>(mustExist);
    }
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }

private:
    bool m_isClone = false;
};

const Utils::TypeRegistrar<Chameleon, Utils::DirectBase<Core::IValue>, Utils::IndirectBase<Utils::IObject>>
    chameleonType("Chameleon");

} // namespace

TEST(CowPtr, EmptyHandleRefusesAccess)
{
    COWPtr<Integer> empty;
    EXPECT_FALSE(empty.isValid());
    EXPECT_EQ(empty.getUseCount(), 0);
    EXPECT_FALSE(empty.isUnique());
    empty.detach();
    const std::string noObject = "RuntimeException: Cannot access nullptr object.";
    EXPECT_EQ(failureOf([&] { std::as_const(empty).get(); }), noObject);
    EXPECT_EQ(failureOf([&] { empty.get(); }), noObject);
    EXPECT_EQ(failureOf([] { COWPtr<Integer>(static_cast<Integer*>(nullptr)); }),
              "InvalidArgumentException: No object passed.");
}

namespace
{
// Counts the clones it makes: a freed object's address may come back for its
// clone, so addresses alone cannot tell a clone.
struct CountingCloner
{
    static inline int clones = 0;
    template <typename U>
    U* operator()(const U& source) const
    {
        ++clones;
        return Utils::DefaultCloner<U>()(source);
    }
};
} // namespace

// Copies, assignments and moves count the handles, also an assignment to itself;
// a write clones only through a handle that shares its object.
TEST(CowPtr, WriteClonesOnlyThroughASharedHandle)
{
    COWPtr<Integer> a(new Integer(1, nullptr), std::default_delete<Integer>(), CountingCloner());
    COWPtr<Integer>& alias = a;
    a = alias;
    a->setValue(2);
    EXPECT_EQ(CountingCloner::clones, 0);
    EXPECT_TRUE(a.isUnique());

    COWPtr<Integer> b(new Integer(7, nullptr));
    b = a;
    const Integer* const original = std::as_const(a).get();
    EXPECT_EQ(a.getUseCount(), 2);
    a->setValue(3);
    EXPECT_EQ(CountingCloner::clones, 1);
    EXPECT_NE(std::as_const(a).get(), original);
    EXPECT_EQ(std::as_const(b).get(), original);
    EXPECT_EQ(b.getUseCount(), 1);
    EXPECT_EQ(std::as_const(a)->getValue(), 3);
    EXPECT_EQ(std::as_const(b)->getValue(), 2);

    COWPtr<Integer> c = std::move(b);
    EXPECT_FALSE(b.isValid());
    EXPECT_EQ(c.getUseCount(), 1);
}

// A handle made by a cast shares the count, and detaches through the cast into
// a clone of the concrete class.
TEST(CowPtr, CastHandleSharesAndClonesTheConcreteClass)
{
    COWPtr<Integer> concrete(new Integer(3, nullptr));
    COWPtr<IInteger> seen(concrete);
    EXPECT_EQ(concrete.getUseCount(), 2);
    EXPECT_EQ(std::as_const(seen).get(), static_cast<const IInteger*>(std::as_const(concrete).get()));
    EXPECT_EQ(failureOf([&] { COWPtr<Core::IFloat> wrong(concrete); }),
              "InvalidArgumentException: Cannot cast pointer of passed COW pointer to this COW pointer.");
    EXPECT_EQ(concrete.getUseCount(), 2);
    EXPECT_FALSE(COWPtr<IInteger>(COWPtr<Integer>()).isValid());

    seen->setValue(4);
    EXPECT_EQ(std::as_const(seen)->getTypeInfo(true), Utils::TypeInfo::get<Integer>(true));
    EXPECT_EQ(std::as_const(concrete)->getValue(), 3);
    EXPECT_EQ(std::as_const(seen)->getValue(), 4);
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

// A clone that cannot be cast, a wrapper that cannot learn its object's type,
// and a value or clone without memory for its wrapper: each raises, leaves the
// handles as they were, and leaves no object behind.
TEST(CowPtr, FailuresKeepTheHandlesAndLoseNoObject)
{
    {
        COWPtr<Chameleon> original(new Chameleon);
        COWPtr<Core::IValue> casted(original);
        const Core::IValue* const before = std::as_const(casted).get();
        EXPECT_EQ(failureOf([&] { casted.detach(); }),
                  "RuntimeException: Cannot cast pointer of cloned object to COW pointer.");
        EXPECT_EQ(std::as_const(casted).get(), before);
        EXPECT_EQ(original.getUseCount(), 2);
        Chameleon::refuseType = true;
        EXPECT_EQ(failureOf([] { COWPtr<Chameleon> handle(new Chameleon); }), "RuntimeException: Refused.");
        Chameleon::refuseType = false;
        EXPECT_EQ(Chameleon::alive, 1);
    }
    EXPECT_EQ(Chameleon::alive, 0);

    using Wrapper = Utils::COWPtrBase::ObjectWrapper<Integer, Integer, std::default_delete<Integer>,
                                                     Utils::DefaultCloner<Integer>>;
    COWPtr<Integer> a(new Integer(1, nullptr));
    COWPtr<Integer> b = a;
    const Integer* const shared = std::as_const(a).get();
    EXPECT_EQ(failureOf(
                  [&]
                  {
                      const RefusedAllocation refused(sizeof(Wrapper));
                      a.detach();
                  }),
              "BadAllocException: Could not clone object.");
    EXPECT_EQ(std::as_const(a).get(), shared);
    EXPECT_EQ(a.getUseCount(), 2);
    EXPECT_EQ(failureOf(
                  []
                  {
                      const RefusedAllocation refused(sizeof(Wrapper));
                      Utils::Variant variant{Integer(5, nullptr)};
                  }),
              "BadAllocException: Could not allocate data.");
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
    a.reset();
    EXPECT_EQ(deletions, 0);
    b.reset(); // 1 -> 0: the object goes, and the probe runs
    EXPECT_EQ(deletions, 1) << "a release at 0 must not destroy again";
    EXPECT_EQ(countsSeenWhileDying[0], 0) << "addRef at 0";
    EXPECT_EQ(countsSeenWhileDying[1], 0) << "release at 0";
}
