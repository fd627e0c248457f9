// The node-map port of an integer parameter. Register block, 8-byte words:
//   0 Value (read, write), 8 Max, 16 Min, 24 Inc, 32 IsAvailable, 40 IsLocked.
#pragma once

#include "ParameterNodeMapPort.h"

namespace AnythingToNodeMapAdapter::Detail
{

class CIntegerNodeMapPort : public CParameterNodeMapPort<IIntegerParameterPort>
{
public:
    static constexpr int64_t valueOffset = 0;
    static constexpr int64_t maxOffset = 8;
    static constexpr int64_t minOffset = 16;
    static constexpr int64_t incOffset = 24;
    static constexpr int64_t isAvailableOffset = 32;
    static constexpr int64_t isLockedOffset = 40;
    static constexpr int64_t blockLength = 48;

    using CParameterNodeMapPort::CParameterNodeMapPort;

    void readRegister(void* buffer, int64_t address, int64_t length) override;
    void writeRegister(const void* buffer, int64_t address, int64_t length) override;
    void writeXml(std::ostream& stream, bool ownPort, const GenICam::gcstring& portName,
                  const GenICam::gcstring& prefix, int64_t& address) override;
};

} // namespace AnythingToNodeMapAdapter::Detail
