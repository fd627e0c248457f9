// The array interface's anchor: one type identity for every library.
#include <TarvikDataProcessingCore/core/IArray.h>

namespace Tarvik::DataProcessing::Core
{

IArray::IArray() = default;
IArray::~IArray() = default;

} // namespace Tarvik::DataProcessing::Core
