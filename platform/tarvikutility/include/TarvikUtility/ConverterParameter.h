// The typed members of CImageFormatConverter. Each one is a handle on one
// setting of its converter; the value itself lives in the converter's settings
// registers, which its node map reads and writes too, so a value set here is
// what the node map shows and the other way round.
#pragma once

#include <TarvikUtility/TarvikUtilityExport.h>

#include <cstdint>

namespace Tarvik
{

class CImageFormatConverter;

enum class EConverterSetting : uint32_t
{
    OutputPixelFormat,
    OutputPaddingX,
    OutputOrientation,
    OutputBitAlignment,
    InconvertibleEdgeHandling,
    MaxNumThreads,
};

class TARVIKUTILITY_API CConverterParameter
{
public:
    CConverterParameter(const CConverterParameter&) = delete;
    CConverterParameter& operator=(const CConverterParameter&) = delete;

    // A value outside the setting's range or list raises OutOfRangeException.
    void SetIntValue(int64_t value);
    int64_t GetIntValue() const;

protected:
    CConverterParameter(CImageFormatConverter& owner, EConverterSetting setting)
        : m_owner(&owner)
        , m_setting(setting)
    {
    }
    ~CConverterParameter() = default;

private:
    CImageFormatConverter* m_owner;
    EConverterSetting m_setting;
};

class CIntegerConverterParameter : public CConverterParameter
{
public:
    CIntegerConverterParameter(CImageFormatConverter& owner, EConverterSetting setting)
        : CConverterParameter(owner, setting)
    {
    }

    void SetValue(int64_t value) { SetIntValue(value); }
    int64_t GetValue() const { return GetIntValue(); }
    CIntegerConverterParameter& operator=(int64_t value)
    {
        SetIntValue(value);
        return *this;
    }
    operator int64_t() const { return GetIntValue(); }
};

template <typename E>
class CEnumConverterParameter : public CConverterParameter
{
public:
    CEnumConverterParameter(CImageFormatConverter& owner, EConverterSetting setting)
        : CConverterParameter(owner, setting)
    {
    }

    void SetValue(E value) { SetIntValue(static_cast<int64_t>(value)); }
    E GetValue() const { return static_cast<E>(GetIntValue()); }
    CEnumConverterParameter& operator=(E value)
    {
        SetValue(value);
        return *this;
    }
    operator E() const { return GetValue(); }
};

} // namespace Tarvik
