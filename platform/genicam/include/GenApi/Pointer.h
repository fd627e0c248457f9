// GenApi::CPointer: a typed view on a node. It is built from any node pointer
// and holds it only if the node has the interface T, so
//
//     CIntegerPtr width = nodeMap.GetNode("Width");
//     if (IsWritable(width))
//         width->SetValue(640);
//
// A view without a target raises LogicalErrorException "NULL pointer
// dereferenced" when it is dereferenced. It owns nothing.
#pragma once

#include <GCBase/GCException.h>
#include <GenApi/IBase.h>
#include <GenApi/IBoolean.h>
#include <GenApi/ICategory.h>
#include <GenApi/IEnumEntry.h>
#include <GenApi/IEnumeration.h>
#include <GenApi/IFloat.h>
#include <GenApi/IInteger.h>
#include <GenApi/INode.h>
#include <GenApi/IPort.h>
#include <GenApi/IRegister.h>
#include <GenApi/IValue.h>

namespace GenApi
{

template <class T, class B = IBase>
class CPointer
{
public:
    CPointer() noexcept = default;
    CPointer(B* pB)
        : m_pT(dynamic_cast<T*>(pB))
    {
    }
    virtual ~CPointer() = default;
    CPointer(const CPointer&) = default;
    CPointer& operator=(const CPointer&) = default;

    CPointer& operator=(B* pB)
    {
        m_pT = dynamic_cast<T*>(pB);
        return *this;
    }

    operator T*() const { return Checked(); }
    T& operator*() const { return *Checked(); }
    T* operator->() const { return Checked(); }

    bool IsValid() const noexcept { return m_pT != nullptr; }
    explicit operator bool() const noexcept { return m_pT != nullptr; }

    bool operator==(const CPointer& other) const noexcept { return m_pT == other.m_pT; }
    bool operator==(const T* pT) const noexcept { return m_pT == pT; }

private:
    T* Checked() const
    {
        if (m_pT == nullptr)
            throw LOGICAL_ERROR_EXCEPTION("NULL pointer dereferenced");
        return m_pT;
    }

protected:
    T* m_pT = nullptr;
};

using CNodePtr = CPointer<INode>;
using CValuePtr = CPointer<IValue>;
using CBooleanPtr = CPointer<IBoolean>;
using CIntegerPtr = CPointer<IInteger>;
using CFloatPtr = CPointer<IFloat>;
using CEnumerationPtr = CPointer<IEnumeration>;
using CEnumEntryPtr = CPointer<IEnumEntry>;
using CCategoryPtr = CPointer<ICategory>;
using CRegisterPtr = CPointer<IRegister>;
using CPortPtr = CPointer<IPort>;

} // namespace GenApi
