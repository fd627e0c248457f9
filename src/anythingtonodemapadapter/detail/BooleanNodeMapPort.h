// The node-map port of a boolean parameter. Register block, 8-byte words:
//   0 Value (read, write: 1 or 0), 8 IsAvailable, 16 IsLocked (not writable).
#pragma once

#include "ParameterNodeMapPort.h"

namespace AnythingToNodeMapAdapter::Detail
{

class CBooleanNodeMapPort : public CParameterNodeMapPort<IBooleanParameterPort>
{
public:
    static constexpr int64_t valueOffset = 0;
    static constexpr int64_t isAvailableOffset = 8;
    static constexpr int64_t isLockedOffset = 16;
    static constexpr int64_t blockLength = 24;

    using CParameterNodeMapPort::CParameterNodeMapPort;

    void readRegister(void* buffer, int64_t address, int64_t length) override;
    // Any non-zero word writes true.
    void writeRegister(const void* buffer, int64_t address, int64_t length) override;
    void writeXml(std::ostream& stream, bool ownPort, const GenICam::gcstring& portName,
                  const GenICam::gcstring& prefix, int64_t& address) override;
};

} // namespace AnythingToNodeMapAdapter::Detail
