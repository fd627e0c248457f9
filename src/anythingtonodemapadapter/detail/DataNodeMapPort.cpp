#include "DataNodeMapPort.h"

#include "RegisterDescriptionText.h"
#include "RegisterWords.h"

#include <algorithm>
#include <array>
#include <span>
#include <type_traits>
#include <utility>

namespace AnythingToNodeMapAdapter::Detail
{
namespace
{

namespace Text = RegisterDescriptionText;
using Layout = Text::RegisterLayout;
using enum Layout::Presence;
using enum Layout::Access;
using enum Layout::Sign;

// One register of a block: its text, which holds its offset, and the word a read gives.
template <typename P>
struct DataRegister
{
    Layout text;
    RegisterWord (*read)(const P& port);
};

template <auto getter, typename P>
RegisterWord wordOf(const P& port)
{
    return toRegisterWord((port.*getter)());
}

template <typename P>
RegisterWord isLockedWord(const P& port)
{
    return toRegisterWord(!port.isWritable());
}

// A type's own registers, then IsAvailable and IsLocked in the next two words. Every type
// serves these two; the text shows them only for a port whose flags are dynamic.
template <typename P, std::size_t N>
constexpr std::array<DataRegister<P>, N + 2> withFlagRegisters(const DataRegister<P> (&own)[N],
                                                               Layout::Sign flagSign)
{
    constexpr int64_t flagsOffset = registerWordLength * static_cast<int64_t>(N);
    std::array<DataRegister<P>, N + 2> all{};
    std::copy(std::begin(own), std::end(own), all.begin());
    all[N] = {{"IntReg", "IsAvailable", flagsOffset, ifAvailableDynamic, readOnly, false, flagSign},
              wordOf<&P::isAvailable>};
    all[N + 1] = {{"IntReg", "IsLocked", flagsOffset + registerWordLength, ifWritableDynamic, readOnly, false,
                   flagSign},
                  isLockedWord<P>};
    return all;
}

// Each type's registers in the order of the text. In a number's, Max stands before Min,
// though pMin stands before pMax in the feature.
using Boolean = IBooleanParameterPort;
constexpr auto booleanRegisters = withFlagRegisters<Boolean>(
    {{{"IntReg", "Value", 0, always, ofValue, false, unsignedWord}, wordOf<&Boolean::getValue>}},
    unsignedWord);

// An integer's registers all carry the port's sign.
using Integer = IIntegerParameterPort;
constexpr auto integerRegisters = withFlagRegisters<Integer>(
    {
        {{"IntReg", "Value", 0, always, ofValue, true, ofPort}, wordOf<&Integer::getValue>},
        {{"IntReg", "Max", 8, always, readOnly, false, ofPort}, wordOf<&Integer::getMax>},
        {{"IntReg", "Min", 16, always, readOnly, false, ofPort}, wordOf<&Integer::getMin>},
        {{"IntReg", "Inc", 24, always, readOnly, false, ofPort}, wordOf<&Integer::getInc>},
    },
    ofPort);

using Float = IFloatParameterPort;
constexpr auto floatRegisters = withFlagRegisters<Float>(
    {
        {{"FloatReg", "Value", 0, always, ofValue, true, none}, wordOf<&Float::getValue>},
        {{"FloatReg", "Max", 8, always, readOnly, false, none}, wordOf<&Float::getMax>},
        {{"FloatReg", "Min", 16, always, readOnly, false, none}, wordOf<&Float::getMin>},
    },
    unsignedWord);

template <typename P>
struct RegisterBlock
{
    const char* element;
    int64_t length;
    std::span<const DataRegister<P>> registers;
};

// Declared only: each data port type defines its own.
template <typename P>
extern const RegisterBlock<P> registerBlock;

template <>
constexpr RegisterBlock<Boolean> registerBlock<Boolean>{"Boolean", 24, booleanRegisters};
template <>
constexpr RegisterBlock<Integer> registerBlock<Integer>{"Integer", 48, integerRegisters};
// The last word of a float block holds no register.
template <>
constexpr RegisterBlock<Float> registerBlock<Float>{"Float", 48, floatRegisters};

} // namespace

template <typename P>
void CDataNodeMapPort<P>::readRegister(void* buffer, int64_t address, int64_t length)
{
    const auto& port = this->parameterPort();
    if (!port || length != registerWordLength)
    {
        zeroFill(buffer, length);
        return;
    }
    for (const DataRegister<P>& dataRegister : registerBlock<P>.registers)
    {
        if (dataRegister.text.offset == address)
        {
            storeRegisterWord(buffer, dataRegister.read(*port));
            return;
        }
    }
}

// The Value register is the first of every block.
template <typename P>
void CDataNodeMapPort<P>::writeRegister(const void* buffer, int64_t address, int64_t length)
{
    const auto& port = this->parameterPort();
    if (port && address == 0 && length == registerWordLength)
    {
        using Value = decltype(std::as_const(*port).getValue());
        port->setValue(fromRegisterWord<Value>(loadRegisterWord(buffer)), true);
    }
}

// A number feature also points at its limits; only an integer has an increment, a sign and
// pSelected lines.
template <typename P>
void CDataNodeMapPort<P>::writeXml(std::ostream& stream, bool ownPort, const GenICam::gcstring& portName,
                                   const GenICam::gcstring& prefix, int64_t& address)
{
    constexpr bool isInteger = std::is_same_v<P, Integer>;
    const RegisterBlock<P>& block = registerBlock<P>;
    const auto& port = this->parameterPort();
    if (!port)
    {
        return;
    }
    const GenICam::gcstring reg = prefix + port->getName();
    Text::writeFeatureHead(stream, *port,
                           {block.element, this->getMergePriority(), reg, this->getRelation("IsAvailable"),
                            this->getRelation("IsLocked")});
    bool isSigned = false;
    if constexpr (!std::is_same_v<P, Boolean>)
    {
        Text::writeNumberLines(stream, reg, isInteger, port->getUnit(), port->getRepresentation());
    }
    if constexpr (isInteger)
    {
        Text::writeValueLines(stream, "pSelected", this->getRelation("Selected"));
        isSigned = port->isSigned();
    }
    stream << "    </" << block.element << ">\n";
    const Text::RegisterContext context{reg, portName, address, isSigned, this->getRelation("Invalidator")};
    for (const DataRegister<P>& dataRegister : block.registers)
    {
        Text::writeRegister(stream, *port, dataRegister.text, context);
    }
    if (ownPort)
    {
        Text::writeOwnPort(stream, portName, port->getName());
    }
    address += block.length;
}

template class CDataNodeMapPort<IBooleanParameterPort>;
template class CDataNodeMapPort<IIntegerParameterPort>;
template class CDataNodeMapPort<IFloatParameterPort>;

} // namespace AnythingToNodeMapAdapter::Detail
