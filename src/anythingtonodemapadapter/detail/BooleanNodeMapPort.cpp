#include "BooleanNodeMapPort.h"

#include "RegisterDescriptionText.h"
#include "RegisterWords.h"

namespace AnythingToNodeMapAdapter::Detail
{
namespace
{

namespace Text = RegisterDescriptionText;
using Spec = Text::RegisterSpec;

constexpr Spec registers[] = {
    {"IntReg", "Value", CBooleanNodeMapPort::valueOffset, Spec::Presence::always, Spec::Access::ofValue,
     false, Spec::Sign::unsignedWord},
    {"IntReg", "IsAvailable", CBooleanNodeMapPort::isAvailableOffset, Spec::Presence::ifAvailableDynamic,
     Spec::Access::readOnly, false, Spec::Sign::unsignedWord},
    {"IntReg", "IsLocked", CBooleanNodeMapPort::isLockedOffset, Spec::Presence::ifWritableDynamic,
     Spec::Access::readOnly, false, Spec::Sign::unsignedWord},
};

} // namespace

void CBooleanNodeMapPort::readRegister(void* buffer, int64_t address, int64_t length)
{
    const auto& port = parameterPort();
    if (!port || length != registerWordLength)
    {
        zeroFill(buffer, length);
        return;
    }
    switch (address)
    {
    case valueOffset:
        storeRegisterWord(buffer, flagWord(port->getValue()));
        break;
    case isAvailableOffset:
        storeRegisterWord(buffer, flagWord(port->isAvailable()));
        break;
    case isLockedOffset:
        storeRegisterWord(buffer, flagWord(!port->isWritable()));
        break;
    default:
        break;
    }
}

void CBooleanNodeMapPort::writeRegister(const void* buffer, int64_t address, int64_t length)
{
    const auto& port = parameterPort();
    if (port && address == valueOffset && length == registerWordLength)
    {
        port->setValue(loadRegisterWord<uint64_t>(buffer) != 0, true);
    }
}

void CBooleanNodeMapPort::writeXml(std::ostream& stream, bool ownPort, const GenICam::gcstring& portName,
                                   const GenICam::gcstring& prefix, int64_t& address)
{
    const auto& port = parameterPort();
    if (!port)
    {
        return;
    }
    const GenICam::gcstring reg = prefix + port->getName();
    Text::writeFeatureHead(
        stream, *port,
        {"Boolean", getMergePriority(), reg, getRelation("IsAvailable"), getRelation("IsLocked")});
    stream << "    </Boolean>\n";
    Text::writeRegisters(stream, *port, registers,
                         {reg, portName, address, false, getRelation("Invalidator")});
    if (ownPort)
    {
        Text::writeOwnPort(stream, portName, port->getName());
    }
    address += blockLength;
}

} // namespace AnythingToNodeMapAdapter::Detail
