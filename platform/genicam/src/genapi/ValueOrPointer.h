// A property that the document gives either as a constant or as a pointer to
// another node: Value/pValue, Min/pMin, Max/pMax, Inc/pInc. Every node class
// handles these the same way through this one template.
#pragma once

#include "ElementReader.h"
#include "Node.h"
#include "NodeLinker.h"

#include <GCBase/GCException.h>

#include <cstdint>
#include <optional>
#include <type_traits>

namespace GenApi::Detail
{

template <class T>
class CValueOrPointer
{
    static_assert(std::is_same_v<T, int64_t> || std::is_same_v<T, double> || std::is_same_v<T, bool>);

public:
    // Reads the constant element or the pointer element; the document may give
    // one at most. A null element name leaves that form out.
    void Load(CElementReader& reader, const char* valueElement, const char* pointerElement)
    {
        if (valueElement != nullptr)
            m_constant = ReadConstant(reader, valueElement);
        if (pointerElement == nullptr)
            return;
        m_pointerElement = pointerElement;
        m_pointerName = reader.Reference(pointerElement);
        if (valueElement != nullptr && m_constant && m_pointerName)
            throw PROPERTY_EXCEPTION("[%s] has both %s and %s", reader.NodeName().c_str(), valueElement,
                                     pointerElement);
    }

    void Link(CNodeLinker& linker, const CNode& owner)
    {
        if (m_pointerName)
            m_node = linker.Numeric(owner, m_pointerElement, *m_pointerName);
    }

    bool IsPresent() const { return m_constant.has_value() || m_pointerName.has_value(); }
    CNode* Pointer() const { return m_node; }
    const std::optional<T>& Constant() const { return m_constant; }

    // Under the map's lock. Reading through a pointer checks the target's access mode.
    T Get() const
    {
        if (m_node == nullptr)
            return *m_constant;
        if constexpr (std::is_same_v<T, double>)
            return m_node->ReadFloat();
        else if constexpr (std::is_same_v<T, bool>)
            return m_node->ReadInteger() != 0;
        else
            return m_node->ReadInteger();
    }

    void Set(T value, bool verify)
    {
        if (m_node == nullptr)
            m_constant = value;
        else if constexpr (std::is_same_v<T, double>)
            m_node->WriteFloat(value, verify);
        else
            m_node->WriteInteger(static_cast<int64_t>(value), verify);
    }

private:
    static std::optional<T> ReadConstant(CElementReader& reader, const char* element)
    {
        if constexpr (std::is_same_v<T, int64_t>)
            return reader.Integer(element);
        else if constexpr (std::is_same_v<T, double>)
            return reader.Float(element);
        else
            return reader.Boolean(element);
    }

    const char* m_pointerElement = "";
    std::optional<T> m_constant;
    std::optional<GenICam::gcstring> m_pointerName;
    CNode* m_node = nullptr;
};

} // namespace GenApi::Detail
