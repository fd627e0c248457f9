#include "FloatNodeMapPort.h"

#include "RegisterDescriptionText.h"
#include "RegisterWords.h"

namespace AnythingToNodeMapAdapter::Detail
{
namespace
{

namespace Text = RegisterDescriptionText;
using Spec = Text::RegisterSpec;

// Max stands before Min here, though pMin stands before pMax in the feature.
constexpr Spec registers[] = {
    {"FloatReg", "Value", CFloatNodeMapPort::valueOffset, Spec::Presence::always, Spec::Access::ofValue, true,
     Spec::Sign::none},
    {"FloatReg", "Max", CFloatNodeMapPort::maxOffset, Spec::Presence::always, Spec::Access::readOnly, false,
     Spec::Sign::none},
    {"FloatReg", "Min", CFloatNodeMapPort::minOffset, Spec::Presence::always, Spec::Access::readOnly, false,
     Spec::Sign::none},
    {"IntReg", "IsAvailable", CFloatNodeMapPort::isAvailableOffset, Spec::Presence::ifAvailableDynamic,
     Spec::Access::readOnly, false, Spec::Sign::unsignedWord},
    {"IntReg", "IsLocked", CFloatNodeMapPort::isLockedOffset, Spec::Presence::ifWritableDynamic,
     Spec::Access::readOnly, false, Spec::Sign::unsignedWord},
};

} // namespace

void CFloatNodeMapPort::readRegister(void* buffer, int64_t address, int64_t length)
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
        storeRegisterWord(buffer, port->getValue());
        break;
    case maxOffset:
        storeRegisterWord(buffer, port->getMax());
        break;
    case minOffset:
        storeRegisterWord(buffer, port->getMin());
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

void CFloatNodeMapPort::writeRegister(const void* buffer, int64_t address, int64_t length)
{
    const auto& port = parameterPort();
    if (port && address == valueOffset && length == registerWordLength)
    {
        port->setValue(loadRegisterWord<double>(buffer), true);
    }
}

void CFloatNodeMapPort::writeXml(std::ostream& stream, bool ownPort, const GenICam::gcstring& portName,
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
        {"Float", getMergePriority(), reg, getRelation("IsAvailable"), getRelation("IsLocked")});
    stream << "        <pMin>" << reg << "Min</pMin>\n"
           << "        <pMax>" << reg << "Max</pMax>\n";
    if (*port->getUnit())
    {
        stream << "        <Unit>" << port->getUnit() << "</Unit>\n";
    }
    stream << "        <Representation>" << port->getRepresentation() << "</Representation>\n";
    stream << "    </Float>\n";
    Text::writeRegisters(stream, *port, registers,
                         {reg, portName, address, false, getRelation("Invalidator")});
    if (ownPort)
    {
        Text::writeOwnPort(stream, portName, port->getName());
    }
    address += blockLength;
}

} // namespace AnythingToNodeMapAdapter::Detail
