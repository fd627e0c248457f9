// <Integer> and <Float>: a number whose value, limits and increment are each a
// constant of the document or another node. Without limits of its own a
// feature with pValue takes those of the node pointed at. An integer always
// has an increment (1 unless given); a float only if the document gives one.
#pragma once

#include "NumberNode.h"
#include "ValueOrPointer.h"
#include "ValueOrPointerNode.h"

#include <GCBase/GCException.h>

#include <limits>
#include <type_traits>
#include <vector>

namespace GenApi::Detail
{

template <class T>
class TNumberFeature final : public TNumberNodeOf<CValueOrPointerNode, T>
{
    using Kind = SNumberKind<T>;

public:
    using TNumberNodeOf<CValueOrPointerNode, T>::TNumberNodeOf;

    // CNode
    void Load(CElementReader& reader) override
    {
        CValueOrPointerNode::Load(reader);
        m_value.Load(reader, "Value", "pValue");
        if (!m_value.IsPresent())
            throw PROPERTY_EXCEPTION("[%s] has neither Value nor pValue", this->Name().c_str());
        m_min.Load(reader, "Min", "pMin");
        m_max.Load(reader, "Max", "pMax");
        m_inc.Load(reader, "Inc", "pInc");
        this->LoadDisplay(reader);
    }
    void Link(CNodeLinker& linker) override
    {
        CValueOrPointerNode::Link(linker);
        for (CValueOrPointer<T>* property : {&m_value, &m_min, &m_max, &m_inc})
            property->Link(linker, *this);
    }
    void CollectReads(std::vector<CNode*>& reads) const override
    {
        CValueOrPointerNode::CollectReads(reads); // the value's pointer
        for (const CValueOrPointer<T>* property : {&m_min, &m_max, &m_inc})
            if (property->Pointer() != nullptr)
                reads.push_back(property->Pointer());
    }
    CNode* ValueChild() const override { return m_value.Pointer(); }
    void Verify() const override
    {
        // Negated comparisons, so that a NaN limit fails too.
        if (m_min.Constant() && m_max.Constant() && !(*m_min.Constant() <= *m_max.Constant()))
            throw PROPERTY_EXCEPTION(
                "[%s] Min %s is %s Max %s", this->Name().c_str(), Kind::Format(*m_min.Constant()).c_str(),
                std::is_same_v<T, int64_t> ? "above" : "not below", Kind::Format(*m_max.Constant()).c_str());
        if (m_inc.Constant() && !(*m_inc.Constant() > 0))
            throw PROPERTY_EXCEPTION("[%s] Inc %s is not positive", this->Name().c_str(),
                                     Kind::Format(*m_inc.Constant()).c_str());
    }

protected:
    T Fetch() const override { return m_value.Get(); }
    void Store(T value, bool verify) override
    {
        m_value.Set(value, verify);
        this->m_map.ScheduleInvalidation(this);
    }
    T Min() const override
    {
        const CNode* pointer = m_value.Pointer();
        return m_min.IsPresent()    ? m_min.Get()
               : pointer != nullptr ? Kind::MinOf(*pointer)
                                    : std::numeric_limits<T>::lowest();
    }
    T Max() const override
    {
        const CNode* pointer = m_value.Pointer();
        return m_max.IsPresent()    ? m_max.Get()
               : pointer != nullptr ? Kind::MaxOf(*pointer)
                                    : std::numeric_limits<T>::max();
    }
    bool HasIncrement() const override { return std::is_same_v<T, int64_t> || m_inc.IsPresent(); }
    T Increment() const override { return m_inc.IsPresent() ? m_inc.Get() : Kind::defaultIncrement; }

private:
    CValueOrPointer<T> m_value;
    CValueOrPointer<T> m_min;
    CValueOrPointer<T> m_max;
    CValueOrPointer<T> m_inc;
};

using CIntegerNode = TNumberFeature<int64_t>;
using CFloatNode = TNumberFeature<double>;

} // namespace GenApi::Detail
