// GenApi::IEnumeration: a feature that takes one of a set of named values.
#pragma once

#include <GCBase/GCString.h>
#include <GenApi/GenApiExport.h>
#include <GenApi/IValue.h>
#include <GenApi/Types.h>

#include <cstdint>

namespace GenApi
{

class IEnumEntry;

class GENAPI_API IEnumeration : virtual public IValue
{
public:
    ~IEnumeration() override;

    // The symbols of the entries that are available now, in document order.
    virtual void GetSymbolics(StringList_t& Symbolics) = 0;
    // All entries, in document order.
    virtual void GetEntries(NodeList_t& Entries) = 0;

    // With Verify, a value that no available entry has raises OutOfRangeException.
    virtual void SetIntValue(int64_t Value, bool Verify = true) = 0;
    virtual int64_t GetIntValue(bool Verify = false, bool IgnoreCache = false) = 0;

    // The entry of that symbol or value, or null.
    virtual IEnumEntry* GetEntryByName(const GenICam::gcstring& Symbolic) = 0;
    virtual IEnumEntry* GetEntry(int64_t IntValue) = 0;
    // The entry of the current value, or null if no entry has it.
    virtual IEnumEntry* GetCurrentEntry(bool Verify = false, bool IgnoreCache = false) = 0;

    // Sets the value by symbol, as FromString does.
    IEnumeration& operator=(const GenICam::gcstring& Symbolic)
    {
        FromString(Symbolic);
        return *this;
    }
};

} // namespace GenApi
