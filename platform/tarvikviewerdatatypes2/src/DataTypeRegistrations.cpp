// Registers the viewer's data types when the library loads.
#include <TarvikViewerDataTypes2/CompressionDescriptor.h>
#include <TarvikViewerDataTypes2/GrabResult.h>
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

const TypeRegistrar<GrabResult, DirectBase<Core::IValue>, IndirectBase<Utils::IObject>>
    grabResultType("GrabResult");
const TypeRegistrar<Utils::COWPtr<GrabResult>, DirectBase<Utils::COWPtrBase>, IndirectBase<Utils::IObject>>
    grabResultPointerType("Tarvik::DataProcessing::Utils::COWPtr<GrabResult>");

const TypeRegistrar<CompressionDescriptor, DirectBase<Core::IValue>, IndirectBase<Utils::IObject>>
    compressionDescriptorType("CompressionDescriptor");
const TypeRegistrar<Utils::COWPtr<CompressionDescriptor>, DirectBase<Utils::COWPtrBase>,
                    IndirectBase<Utils::IObject>>
    compressionDescriptorPointerType("Tarvik::DataProcessing::Utils::COWPtr<CompressionDescriptor>");

} // namespace
