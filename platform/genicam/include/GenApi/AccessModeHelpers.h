// Questions on access modes, for a mode, a node or a typed view:
//
//     if (IsWritable(CIntegerPtr(nodeMap.GetNode("Width")))) ...
//
// A null node or an empty view is neither readable, writable, available nor
// implemented.
#pragma once

#include <GenApi/IBase.h>
#include <GenApi/Pointer.h>
#include <GenApi/Types.h>

namespace GenApi
{

inline bool IsReadable(EAccessMode AccessMode)
{
    return AccessMode == RO || AccessMode == RW;
}
inline bool IsWritable(EAccessMode AccessMode)
{
    return AccessMode == WO || AccessMode == RW;
}
inline bool IsImplemented(EAccessMode AccessMode)
{
    return AccessMode != NI;
}
inline bool IsAvailable(EAccessMode AccessMode)
{
    return AccessMode != NI && AccessMode != NA;
}

inline bool IsReadable(const IBase* pBase)
{
    return pBase != nullptr && IsReadable(pBase->GetAccessMode());
}
inline bool IsWritable(const IBase* pBase)
{
    return pBase != nullptr && IsWritable(pBase->GetAccessMode());
}
inline bool IsImplemented(const IBase* pBase)
{
    return pBase != nullptr && IsImplemented(pBase->GetAccessMode());
}
inline bool IsAvailable(const IBase* pBase)
{
    return pBase != nullptr && IsAvailable(pBase->GetAccessMode());
}

template <class T, class B>
bool IsReadable(const CPointer<T, B>& ptr)
{
    return ptr.IsValid() && IsReadable(ptr->GetAccessMode());
}
template <class T, class B>
bool IsWritable(const CPointer<T, B>& ptr)
{
    return ptr.IsValid() && IsWritable(ptr->GetAccessMode());
}
template <class T, class B>
bool IsImplemented(const CPointer<T, B>& ptr)
{
    return ptr.IsValid() && IsImplemented(ptr->GetAccessMode());
}
template <class T, class B>
bool IsAvailable(const CPointer<T, B>& ptr)
{
    return ptr.IsValid() && IsAvailable(ptr->GetAccessMode());
}

// The mode that allows only what both allow; NI and NA win over everything.
inline EAccessMode Combine(EAccessMode first, EAccessMode second)
{
    if (first == NI || second == NI)
        return NI;
    if (first == NA || second == NA)
        return NA;
    if ((first == RO && second == WO) || (first == WO && second == RO))
        return NA;
    if (first == WO || second == WO)
        return WO;
    if (first == RO || second == RO)
        return RO;
    return RW;
}

} // namespace GenApi
