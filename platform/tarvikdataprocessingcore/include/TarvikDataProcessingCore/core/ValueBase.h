// What every value object of the framework shares: a lock of its own and,
// instead of data, possibly an error.
//
// Thread-safe: the error is fixed at construction; derived classes guard their
// data with lock(). A copy or clone never shares its source's lock.
//
// Header only: the value classes inherit their constructors from templates on
// this class, so that what a user of a value compiles calls only the value's
// own operations and those of its interface in this library.
#pragma once

#include <TarvikDataProcessingCore/core/IValue.h>
#include <TarvikDataProcessingCore/threading/RecursiveMutex.h>

#include <GCBase/GCException.h>

#include <memory>

namespace Tarvik::DataProcessing::Core
{

class ValueBase
{
public:
    // A null lock is replaced by a fresh one.
    explicit ValueBase(std::shared_ptr<Threading::RecursiveMutex> lock,
                       std::shared_ptr<IError> error = nullptr)
        : m_lock(lock ? std::move(lock) : std::make_shared<Threading::RecursiveMutex>())
        , m_error(std::move(error))
    {
    }
    ValueBase(const ValueBase&) = delete;
    ValueBase& operator=(const ValueBase&) = delete;
    virtual ~ValueBase() = default;

    bool hasErrorState() const noexcept { return m_error != nullptr; }
    const std::shared_ptr<IError>& errorState() const noexcept { return m_error; }
    Threading::RecursiveMutex& lock() const noexcept { return *m_lock; }
    // Throws GenICam::LogicalErrorException naming the error, when there is one.
    void throwIfError(const char* what) const
    {
        if (m_error)
            throw LOGICAL_ERROR_EXCEPTION("Cannot %s the data of a value in error state: %s", what,
                                          m_error->getDescription().c_str());
    }

private:
    std::shared_ptr<Threading::RecursiveMutex> m_lock;
    std::shared_ptr<IError> m_error;
};

} // namespace Tarvik::DataProcessing::Core
