// NoValue: a value that holds nothing, the default of generic inputs.
#pragma once

#include <TarvikViewerDataTypes2/Export.h>

#include <TarvikDataProcessingCore/core/IValue.h>

class TVDT2_API NoValue : public Tarvik::DataProcessing::Core::IValue
{
public:
    NoValue();
    NoValue(const NoValue& other);
    NoValue& operator=(const NoValue& other);
    ~NoValue() override;

    bool hasError(bool recursive) const override;
    std::shared_ptr<Tarvik::DataProcessing::Core::IError> getError(bool recursive) const override;

    Tarvik::DataProcessing::Utils::TypeInfo getTypeInfo(bool mustExist) const override;
    const void* getRawPointer() const override;
    void* getRawPointer() override;
};
