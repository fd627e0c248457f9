// The node-map port of a category: text only, no registers, no address.
#pragma once

#include "ParameterNodeMapPort.h"

namespace AnythingToNodeMapAdapter::Detail
{

class CCategoryNodeMapPort : public CParameterNodeMapPort<ICategoryParameterPort>
{
public:
    using CParameterNodeMapPort::CParameterNodeMapPort;

    // A category has no register block: the buffer stays as it is.
    void readRegister(void* buffer, int64_t address, int64_t length) override;
    void writeRegister(const void* buffer, int64_t address, int64_t length) override;
    void writeXml(std::ostream& stream, bool ownPort, const GenICam::gcstring& portName,
                  const GenICam::gcstring& prefix, int64_t& address) override;
};

} // namespace AnythingToNodeMapAdapter::Detail
