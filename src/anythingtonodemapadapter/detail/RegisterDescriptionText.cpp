#include "RegisterDescriptionText.h"

#include <charconv>

namespace AnythingToNodeMapAdapter::Detail::RegisterDescriptionText
{
namespace
{

constexpr const char* indent1 = "    ";
constexpr const char* indent2 = "        ";

void writeElementLine(std::ostream& stream, const char* element, const char* text)
{
    stream << indent2 << '<' << element << '>' << text << "</" << element << ">\n";
}

void writeElementLineIfText(std::ostream& stream, const char* element, const char* text)
{
    if (text && *text)
    {
        writeElementLine(stream, element, text);
    }
}

const char* mergeAttribute(int32_t mergePriority)
{
    if (mergePriority > 0)
    {
        return " MergePriority=\"+1\"";
    }
    return mergePriority < 0 ? " MergePriority=\"-1\"" : "";
}

const char* accessWord(const IBasicDataParameterPort& port)
{
    return port.isWritableDynamic() || port.isWritable() ? "RW" : "RO";
}

bool isPresent(const IBasicDataParameterPort& port, RegisterLayout::Presence presence)
{
    switch (presence)
    {
    case RegisterLayout::Presence::ifAvailableDynamic:
        return port.isAvailableDynamic();
    case RegisterLayout::Presence::ifWritableDynamic:
        return port.isWritableDynamic();
    case RegisterLayout::Presence::always:
        break;
    }
    return true;
}

} // namespace

void writeHead(std::ostream& stream)
{
    stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<RegisterDescription"
              " xmlns=\"http://www.genicam.org/GenApi/Version_1_1\""
              " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
              " xsi:schemaLocation=\"http://www.genicam.org/GenApi/Version_1_1\""
              " SchemaSubMinorVersion=\"0\""
              " VendorName=\"Ostrel\""
              " SchemaMinorVersion=\"1\""
              " SubMinorVersion=\"1\""
              " VersionGuid=\"E6D851E3-9DF1-4875-B796-DA2477F1CA61\""
              " SchemaMajorVersion=\"1\""
              " MajorVersion=\"0\""
              " MinorVersion=\"0\""
              " StandardNameSpace=\"None\""
              " ModelName=\"Params\""
              " ProductGuid=\"85FC0460-25EB-4EBB-92B1-1BB54FF98422\""
              " ToolTip=\"Parameters\">\n"
              "\n";
}

void writeTail(std::ostream& stream)
{
    stream << "\n</RegisterDescription>\n";
}

void writeSharedPort(std::ostream& stream, const GenICam::gcstring& portName)
{
    stream << indent1 << "<Port Name = \"" << portName << "\">\n"
           << indent2 << "<ToolTip>Port node giving access to parameters.</ToolTip>\n"
           << indent1 << "</Port>\n";
}

void writeOwnPort(std::ostream& stream, const GenICam::gcstring& portName, const char* parameterName)
{
    stream << indent1 << "<Port Name = \"" << portName << "\">\n"
           << indent2 << "<ToolTip>Port node giving access to " << parameterName << " parameter.</ToolTip>\n"
           << indent1 << "</Port>\n";
}

void writeTexts(std::ostream& stream, const IBasicParameterPort& port)
{
    writeElementLineIfText(stream, "ToolTip", port.getToolTip());
    writeElementLineIfText(stream, "Description", port.getDescription());
    writeElementLineIfText(stream, "DisplayName", port.getDisplayName());
}

void writeValueLines(std::ostream& stream, const char* element, const Values& values)
{
    for (const GenICam::gcstring& value : values)
    {
        writeElementLine(stream, element, value);
    }
}

void writeFeatureHead(std::ostream& stream, const IBasicDataParameterPort& port, const FeatureHead& head)
{
    stream << indent1 << '<' << head.element << " Name=\"" << port.getName() << '"'
           << mergeAttribute(head.mergePriority) << ">\n";
    writeTexts(stream, port);
    writeElementLine(stream, "Visibility", port.getVisibility());
    if (port.isAvailableDynamic())
    {
        writeElementLine(stream, "pIsAvailable", head.reg + "IsAvailable");
    }
    else
    {
        writeValueLines(stream, "pIsAvailable", head.isAvailable);
    }
    if (port.isWritableDynamic())
    {
        writeElementLine(stream, "pIsLocked", head.reg + "IsLocked");
    }
    else
    {
        writeValueLines(stream, "pIsLocked", head.isLocked);
    }
    writeElementLine(stream, "Streamable", "Yes");
    writeElementLine(stream, "pValue", head.reg + "Value");
}

void writeNumberLines(std::ostream& stream, const GenICam::gcstring& reg, bool withInc, const char* unit,
                      const char* representation)
{
    writeElementLine(stream, "pMin", reg + "Min");
    writeElementLine(stream, "pMax", reg + "Max");
    if (withInc)
    {
        writeElementLine(stream, "pInc", reg + "Inc");
    }
    writeElementLineIfText(stream, "Unit", unit);
    writeElementLine(stream, "Representation", representation);
}

void writeRegister(std::ostream& stream, const IBasicDataParameterPort& port, const RegisterLayout& layout,
                   const RegisterContext& context)
{
    if (!isPresent(port, layout.presence))
    {
        return;
    }
    stream << indent1 << '<' << layout.element << " Name=\"" << context.reg << layout.suffix << "\">\n";
    writeElementLine(stream, "Visibility", port.getVisibility());
    writeElementLine(stream, "Address", hexAddress(context.blockAddress + layout.offset));
    writeElementLine(stream, "Length", "8");
    writeElementLine(stream, "AccessMode",
                     layout.access == RegisterLayout::Access::ofValue ? accessWord(port) : "RO");
    writeElementLine(stream, "pPort", context.portName);
    writeElementLine(stream, "Cachable", "NoCache");
    if (layout.invalidators)
    {
        writeValueLines(stream, "pInvalidator", context.invalidators);
    }
    if (layout.sign == RegisterLayout::Sign::unsignedWord)
    {
        writeElementLine(stream, "Sign", "Unsigned");
    }
    else if (layout.sign == RegisterLayout::Sign::ofPort)
    {
        writeElementLine(stream, "Sign", context.isSigned ? "Signed" : "Unsigned");
    }
    writeElementLine(stream, "Endianess", "LittleEndian");
    stream << indent1 << "</" << layout.element << ">\n";
}

GenICam::gcstring hexAddress(int64_t address)
{
    char digits[2 + 16] = {'0', 'x'};
    const auto end =
        std::to_chars(digits + 2, digits + sizeof digits, static_cast<uint64_t>(address), 16).ptr;
    return GenICam::gcstring(digits, static_cast<size_t>(end - digits));
}

} // namespace AnythingToNodeMapAdapter::Detail::RegisterDescriptionText
