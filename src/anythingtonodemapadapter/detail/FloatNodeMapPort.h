// The node-map port of a float parameter. Register block, 8-byte words:
//   0 Value (read, write; a double), 8 Max, 16 Min (doubles), 24 IsAvailable, 32 IsLocked;
//   40 to 47 belong to the block but hold no register.
#pragma once

#include "ParameterNodeMapPort.h"

namespace AnythingToNodeMapAdapter::Detail
{

class CFloatNodeMapPort : public CParameterNodeMapPort<IFloatParameterPort>
{
public:
    static constexpr int64_t valueOffset = 0;
    static constexpr int64_t maxOffset = 8;
    static constexpr int64_t minOffset = 16;
    static constexpr int64_t isAvailableOffset = 24;
    static constexpr int64_t isLockedOffset = 32;
    static constexpr int64_t blockLength = 48;

    using CParameterNodeMapPort::CParameterNodeMapPort;

    void readRegister(void* buffer, int64_t address, int64_t length) override;
    void writeRegister(const void* buffer, int64_t address, int64_t length) override;
    void writeXml(std::ostream& stream, bool ownPort, const GenICam::gcstring& portName,
                  const GenICam::gcstring& prefix, int64_t& address) override;
};

} // namespace AnythingToNodeMapAdapter::Detail
