// The signal interfaces' anchors: one type identity for every library.
#include <TarvikDataProcessingCore/utils/ISignal.h>

namespace Tarvik::DataProcessing::Utils
{

ITrackable::~ITrackable() = default;
IConnection::~IConnection() = default;
ISignal<void()>::~ISignal() = default;

} // namespace Tarvik::DataProcessing::Utils
