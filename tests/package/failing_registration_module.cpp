// Registers a class whose base is not registered; the failure must be logged
// and must not stop the load.
#include <TarvikDataProcessingCore/utils/IObject.h>

namespace
{
class MissingBase
{
};
class Stranded : public MissingBase
{
};
const Tarvik::DataProcessing::Utils::TypeRegistrar<Stranded,
                                                   Tarvik::DataProcessing::Utils::DirectBase<MissingBase>>
    strandedRegistrar("Stranded");
} // namespace

extern "C" __attribute__((visibility("default"))) int strandedModuleLoaded()
{
    return 1;
}
