// Registers the viewer's data types when the library loads.
#include <TarvikViewerDataTypes2/NoValue.h>

#include <TarvikDataProcessingCore/utils/Variant.h>

namespace
{

using namespace Tarvik::DataProcessing;
using Utils::DirectBase;
using Utils::IndirectBase;
using Utils::TypeRegistrar;

const TypeRegistrar<NoValue, DirectBase<Core::IValue>, IndirectBase<Utils::IObject>> noValueType("NoValue");
const TypeRegistrar<Utils::COWPtr<NoValue>, DirectBase<Utils::COWPtrBase>, IndirectBase<Utils::IObject>>
    noValuePointerType("Tarvik::DataProcessing::Utils::COWPtr<NoValue>");

} // namespace
