#include "FloatNode.h"

#include "NodeMap.h"
#include "RangeCheck.h"
#include "Text.h"

#include <GCBase/GCException.h>

#include <algorithm>

namespace GenApi::Detail
{

SFloatDisplay ReadFloatDisplay(CElementReader& reader)
{
    SFloatDisplay display;
    display.unit = reader.Text("Unit").value_or("");
    display.representation = reader
                                 .Word<ERepresentation>("Representation", {{"Linear", Linear},
                                                                           {"Logarithmic", Logarithmic},
                                                                           {"PureNumber", PureNumber}})
                                 .value_or(PureNumber);
    display.displayNotation = reader
                                  .Word<EDisplayNotation>("DisplayNotation", {{"Automatic", fnAutomatic},
                                                                              {"Fixed", fnFixed},
                                                                              {"Scientific", fnScientific}})
                                  .value_or(fnAutomatic);
    display.displayPrecision = reader.Integer("DisplayPrecision").value_or(6);
    return display;
}

void CFloatNode::Load(CElementReader& reader)
{
    CValueNode::Load(reader);
    m_value.Load(reader, "Value", "pValue");
    if (!m_value.IsPresent())
        throw PROPERTY_EXCEPTION("[%s] has neither Value nor pValue", Name().c_str());
    m_min.Load(reader, "Min", "pMin");
    m_max.Load(reader, "Max", "pMax");
    m_inc.Load(reader, "Inc", "pInc");
    const SFloatDisplay display = ReadFloatDisplay(reader);
    m_unit = display.unit;
    m_representation = display.representation;
    m_displayNotation = display.displayNotation;
    m_displayPrecision = display.displayPrecision;
}

void CFloatNode::Link(CNodeLinker& linker)
{
    CValueNode::Link(linker);
    for (CValueOrPointer<double>* property : {&m_value, &m_min, &m_max, &m_inc})
        property->Link(linker, *this);
}

void CFloatNode::CollectReads(std::vector<CNode*>& reads) const
{
    CValueNode::CollectReads(reads);
    for (const CValueOrPointer<double>* property : {&m_value, &m_min, &m_max, &m_inc})
        if (property->Pointer() != nullptr)
            reads.push_back(property->Pointer());
}

void CFloatNode::Verify() const
{
    if (m_min.Constant() && m_max.Constant() && !(*m_min.Constant() <= *m_max.Constant()))
        throw PROPERTY_EXCEPTION("[%s] Min %s is not below Max %s", Name().c_str(),
                                 FormatFloat(*m_min.Constant()).c_str(),
                                 FormatFloat(*m_max.Constant()).c_str());
    if (m_inc.Constant() && !(*m_inc.Constant() > 0))
        throw PROPERTY_EXCEPTION("[%s] Inc %s is not positive", Name().c_str(),
                                 FormatFloat(*m_inc.Constant()).c_str());
}

EAccessMode CFloatNode::OwnAccessMode(EIntent intent) const
{
    return m_value.Pointer() != nullptr ? m_value.Pointer()->AccessMode(intent) : RW;
}

ECachingMode CFloatNode::CachingMode() const
{
    return m_value.Pointer() != nullptr ? CValueNode::CachingMode() : WriteThrough;
}

bool CFloatNode::CacheValid() const
{
    return m_value.Pointer() == nullptr || CValueNode::CacheValid();
}

double CFloatNode::FloatMin() const
{
    const double min = m_min.IsPresent()              ? m_min.Get(false)
                       : m_value.Pointer() != nullptr ? m_value.Pointer()->FloatMin()
                                                      : std::numeric_limits<double>::lowest();
    return std::max(min, m_imposedMin);
}

double CFloatNode::FloatMax() const
{
    const double max = m_max.IsPresent()              ? m_max.Get(false)
                       : m_value.Pointer() != nullptr ? m_value.Pointer()->FloatMax()
                                                      : std::numeric_limits<double>::max();
    return std::min(max, m_imposedMax);
}

double CFloatNode::Read(bool verify, bool ignoreCache) const
{
    RequireReadable();
    const double value = m_value.Get(ignoreCache);
    if (verify)
        CheckFloatRange(*this, value, FloatMin(), FloatMax(), Inc());
    return value;
}

double CFloatNode::ReadFloat(bool ignoreCache) const
{
    return Read(false, ignoreCache);
}

void CFloatNode::WriteFloat(double value, bool verify)
{
    RequireWritable();
    if (verify)
        CheckFloatRange(*this, value, FloatMin(), FloatMax(), Inc());
    m_value.Set(value, verify);
    m_map.ScheduleInvalidation(this);
}

void CFloatNode::SetValue(double Value, bool Verify)
{
    m_map.Access([&] { WriteFloat(Value, Verify); });
}

double CFloatNode::GetValue(bool Verify, bool IgnoreCache) const
{
    return m_map.Access([&] { return Read(Verify, IgnoreCache); });
}

double CFloatNode::GetMin() const
{
    return m_map.Access([&] { return FloatMin(); });
}

double CFloatNode::GetMax() const
{
    return m_map.Access([&] { return FloatMax(); });
}

bool CFloatNode::HasInc() const
{
    return m_inc.IsPresent();
}

EIncMode CFloatNode::GetIncMode() const
{
    return m_inc.IsPresent() ? fixedIncrement : noIncrement;
}

double CFloatNode::GetInc() const
{
    return m_map.Access(
        [&]
        {
            if (!m_inc.IsPresent())
                throw ACCESS_EXCEPTION("[%s] has no increment", Name().c_str());
            return Inc();
        });
}

std::vector<double> CFloatNode::GetListOfValidValues(bool /*Bounded*/) const
{
    return {};
}

void CFloatNode::ImposeMin(double Value)
{
    m_map.Access(
        [&]
        {
            m_imposedMin = Value;
            m_map.ScheduleInvalidation(this);
        });
}

void CFloatNode::ImposeMax(double Value)
{
    m_map.Access(
        [&]
        {
            m_imposedMax = Value;
            m_map.ScheduleInvalidation(this);
        });
}

GenICam::gcstring CFloatNode::ValueToString(bool verify, bool ignoreCache)
{
    return FormatFloat(Read(verify, ignoreCache));
}

void CFloatNode::ValueFromString(const GenICam::gcstring& text, bool verify)
{
    const std::optional<double> value = ParseFloat(text.view());
    if (!value)
        throw INVALID_ARGUMENT_EXCEPTION("[%s] cannot take '%s': it is not a number", Name().c_str(),
                                         text.c_str());
    WriteFloat(*value, verify);
}

} // namespace GenApi::Detail
