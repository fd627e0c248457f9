// The node-map port of a boolean, integer or float parameter. It serves the parameter's
// register block, 8-byte words at block-relative offsets:
//   boolean, 24 bytes: 0 Value (1 or 0), 8 IsAvailable, 16 IsLocked (1 when not writable)
//   integer, 48 bytes: 0 Value, 8 Max, 16 Min, 24 Inc, 32 IsAvailable, 40 IsLocked
//   float, 48 bytes: 0 Value, 8 Max, 16 Min (doubles), 24 IsAvailable, 32 IsLocked;
//     40 to 47 belong to the block but hold no register
// Every read asks the parameter afresh; only the Value register takes writes.
#pragma once

#include "ParameterNodeMapPort.h"

namespace AnythingToNodeMapAdapter::Detail
{

template <typename P>
class CDataNodeMapPort : public CParameterNodeMapPort<P>
{
public:
    using CParameterNodeMapPort<P>::CParameterNodeMapPort;

    // A length other than 8 reads zeros; an offset without a register leaves the buffer as it is.
    void readRegister(void* buffer, int64_t address, int64_t length) override;
    // Only 8 bytes at the Value register reach the parameter; a boolean takes any non-zero word as true.
    void writeRegister(const void* buffer, int64_t address, int64_t length) override;
    void writeXml(std::ostream& stream, bool ownPort, const GenICam::gcstring& portName,
                  const GenICam::gcstring& prefix, int64_t& address) override;
};

extern template class CDataNodeMapPort<IBooleanParameterPort>;
extern template class CDataNodeMapPort<IIntegerParameterPort>;
extern template class CDataNodeMapPort<IFloatParameterPort>;

using CBooleanNodeMapPort = CDataNodeMapPort<IBooleanParameterPort>;
using CIntegerNodeMapPort = CDataNodeMapPort<IIntegerParameterPort>;
using CFloatNodeMapPort = CDataNodeMapPort<IFloatParameterPort>;

} // namespace AnythingToNodeMapAdapter::Detail
