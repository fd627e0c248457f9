#include "ConverterRegisterDescription.h"

#include "ConverterSettingTable.h"
#include "ConverterSettingsStore.h"

#include <sstream>

namespace Tarvik::Conversion
{
namespace
{

void WriteRegister(std::ostringstream& xml, const SettingDescription& setting)
{
    const auto address = static_cast<int64_t>(setting.setting) * ConverterSettingsStore::kRegisterLength;
    xml << "    <IntReg Name=\"" << setting.name << "Reg\">\n"
        << "        <Address>0x" << std::hex << address << std::dec << "</Address>\n"
        << "        <Length>" << ConverterSettingsStore::kRegisterLength << "</Length>\n"
        << "        <AccessMode>RW</AccessMode>\n"
        << "        <pPort>" << kConverterPortName
        << "</pPort>\n"
        // The typed members write the registers too, so every read must go to them.
        << "        <Cachable>NoCache</Cachable>\n"
        << "        <Sign>Signed</Sign>\n"
        << "        <Endianess>LittleEndian</Endianess>\n"
        << "    </IntReg>\n";
}

void WriteFeature(std::ostringstream& xml, const SettingDescription& setting)
{
    const char* element = setting.entries.empty() ? "Integer" : "Enumeration";
    xml << "    <" << element << " Name=\"" << setting.name << "\">\n"
        << "        <ToolTip>" << setting.toolTip << "</ToolTip>\n"
        << "        <Visibility>"
        << (setting.setting == EConverterSetting::MaxNumThreads ? "Expert" : "Beginner") << "</Visibility>\n";
    for (const EnumEntryDescription& entry : setting.entries)
    {
        xml << "        <EnumEntry Name=\"" << entry.name << "\">\n"
            << "            <Value>" << entry.value << "</Value>\n"
            << "        </EnumEntry>\n";
    }
    xml << "        <pValue>" << setting.name << "Reg</pValue>\n";
    if (setting.entries.empty())
    {
        xml << "        <Min>" << setting.minimum << "</Min>\n"
            << "        <Max>" << setting.maximum << "</Max>\n";
    }
    xml << "    </" << element << ">\n";
    WriteRegister(xml, setting);
}

} // namespace

std::string BuildConverterRegisterDescription()
{
    std::ostringstream xml;
    xml << "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        << "<RegisterDescription ModelName=\"ImageFormatConverter\" VendorName=\"Tarvik\" "
           "ToolTip=\"Settings of the image format converter\" StandardNameSpace=\"None\" "
           "SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" "
           "MinorVersion=\"0\" SubMinorVersion=\"0\" ProductGuid=\"5B1E8F0C-3D7A-4C52-9E61-2F4A8B0D7C13\" "
           "VersionGuid=\"A9C4D2E7-61B8-4F05-8D3E-7E2C1B9F4A60\" "
           "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\" "
           "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
           "xsi:schemaLocation=\"http://www.genicam.org/GenApi/Version_1_1 GenApiSchema_Version_1_1.xsd\">\n"
        << "    <Category Name=\"Root\">\n";
    for (const SettingDescription& setting : SettingTable())
    {
        xml << "        <pFeature>" << setting.name << "</pFeature>\n";
    }
    xml << "    </Category>\n";
    for (const SettingDescription& setting : SettingTable())
    {
        WriteFeature(xml, setting);
    }
    xml << "    <Port Name=\"" << kConverterPortName << "\"/>\n"
        << "</RegisterDescription>\n";
    return xml.str();
}

} // namespace Tarvik::Conversion
