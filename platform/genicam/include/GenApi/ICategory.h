// GenApi::ICategory: a node that groups features (its pFeature entries).
#pragma once

#include <GenApi/GenApiExport.h>
#include <GenApi/IValue.h>
#include <GenApi/Types.h>

namespace GenApi
{

class GENAPI_API ICategory : virtual public IValue
{
public:
    ~ICategory() override;

    // The features in document order.
    virtual void GetFeatures(FeatureList_t& Features) const = 0;
};

} // namespace GenApi
