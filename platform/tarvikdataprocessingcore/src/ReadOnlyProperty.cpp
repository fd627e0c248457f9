// The property interface's anchor: one type identity for every library.
#include <TarvikDataProcessingCore/utils/IReadOnlyProperty.h>

namespace Tarvik::DataProcessing::Utils
{

IReadOnlyProperty::IReadOnlyProperty() = default;
IReadOnlyProperty::~IReadOnlyProperty() = default;

} // namespace Tarvik::DataProcessing::Utils
