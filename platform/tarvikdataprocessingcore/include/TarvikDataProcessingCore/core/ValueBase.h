// What every value object of the framework shares: a lock of its own and,
// instead of data, possibly an error.
//
// Thread-safe: the error is fixed at construction; derived classes guard their
// data with lock(). A copy or clone never shares its source's lock.
#pragma once

#include <TarvikDataProcessingCore/core/IValue.h>
#include <TarvikDataProcessingCore/threading/RecursiveMutex.h>

#include <memory>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API ValueBase
{
public:
    // A null lock is replaced by a fresh one.
    explicit ValueBase(std::shared_ptr<Threading::RecursiveMutex> lock,
                       std::shared_ptr<IError> error = nullptr);
    ValueBase(const ValueBase&) = delete;
    ValueBase& operator=(const ValueBase&) = delete;
    virtual ~ValueBase();

    bool hasErrorState() const noexcept { return m_error != nullptr; }
    const std::shared_ptr<IError>& errorState() const noexcept { return m_error; }
    Threading::RecursiveMutex& lock() const noexcept { return *m_lock; }
    // Throws GenICam::LogicalErrorException naming the error, when there is one.
    void throwIfError(const char* what) const;

private:
    std::shared_ptr<Threading::RecursiveMutex> m_lock;
    std::shared_ptr<IError> m_error;
};

} // namespace Tarvik::DataProcessing::Core
