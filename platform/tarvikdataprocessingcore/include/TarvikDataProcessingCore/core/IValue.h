// A value that can carry an error instead of data.
#pragma once

#include <TarvikDataProcessingCore/core/Errors.h>
#include <TarvikDataProcessingCore/utils/IObject.h>

#include <memory>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API IValue : public Utils::IObject
{
public:
    ~IValue() override;
    // `recursive` also asks the values this one is made of (an array's elements).
    virtual bool hasError(bool recursive) const = 0;
    virtual std::shared_ptr<IError> getError(bool recursive) const = 0;
};

} // namespace Tarvik::DataProcessing::Core
