// What the number features share (Integer, IntReg: IInteger; Float, FloatReg:
// IFloat): the interface over a value that the node class fetches and stores,
// the range and increment checks of verified reads and writes, and the value's text form.
// Each node class supplies only where its value and limits come from.
#pragma once

#include "NodeMap.h"
#include "NumberDisplay.h"
#include "NumericAccess.h"
#include "RangeCheck.h"
#include "Text.h"

#include <GCBase/GCException.h>
#include <GenApi/IFloat.h>
#include <GenApi/IInteger.h>

#include <optional>
#include <string_view>
#include <vector>

namespace GenApi::Detail
{

// What differs between integer and float features.
template <class T>
struct SNumberKind;

template <>
struct SNumberKind<int64_t>
{
    using Interface = IInteger;
    using Display = SIntegerDisplay;
    static constexpr EInterfaceType interfaceType = intfIInteger;
    static constexpr const char* noun = "an integer";
    // Without Inc every integer is on the grid.
    static constexpr int64_t defaultIncrement = 1;
    static int64_t MinOf(const CNode& node) { return node.IntegerMin(); }
    static int64_t MaxOf(const CNode& node) { return node.IntegerMax(); }
    static Display ReadDisplay(CElementReader& reader) { return ReadIntegerDisplay(reader); }
    static std::optional<int64_t> Parse(std::string_view text) { return ParseInteger(text); }
    static GenICam::gcstring Format(int64_t value) { return FormatInteger(value); }
    static GenICam::gcstring Format(int64_t value, const Display& display)
    {
        return display.representation == HexNumber ? FormatHex(value) : FormatInteger(value);
    }
};

template <>
struct SNumberKind<double>
{
    using Interface = IFloat;
    using Display = SFloatDisplay;
    static constexpr EInterfaceType interfaceType = intfIFloat;
    static constexpr const char* noun = "a number";
    // 0 means no increment.
    static constexpr double defaultIncrement = 0.0;
    static double MinOf(const CNode& node) { return node.FloatMin(); }
    static double MaxOf(const CNode& node) { return node.FloatMax(); }
    static Display ReadDisplay(CElementReader& reader) { return ReadFloatDisplay(reader); }
    static std::optional<double> Parse(std::string_view text) { return ParseFloat(text); }
    static GenICam::gcstring Format(double value) { return FormatFloat(value); }
    static GenICam::gcstring Format(double value, const Display& /*display*/) { return FormatFloat(value); }
};

template <class Base, class T>
class TNumberNode : public TNumericAccess<Base, T>, public SNumberKind<T>::Interface
{
    using Kind = SNumberKind<T>;
    static constexpr bool isInteger = std::is_same_v<T, int64_t>;

public:
    using TNumericAccess<Base, T>::TNumericAccess;

    // IInteger and IFloat, each under the map's lock.
    void SetValue(T Value, bool Verify = true) override
    {
        this->m_map.Access([&] { Write(Value, Verify); });
    }
    T GetValue(bool Verify = false, bool /*IgnoreCache*/ = false) const override
    {
        return this->m_map.Access([&] { return Read(Verify); });
    }
    T GetMin() const override
    {
        return this->m_map.Access([&] { return Min(); });
    }
    T GetMax() const override
    {
        return this->m_map.Access([&] { return Max(); });
    }
    EIncMode GetIncMode() const override { return HasIncrement() ? fixedIncrement : noIncrement; }
    T GetInc() const override
    {
        return this->m_map.Access(
            [&]
            {
                if (!HasIncrement())
                    throw ACCESS_EXCEPTION("[%s] has no increment", this->Name().c_str());
                return Increment();
            });
    }
    std::vector<T> GetListOfValidValues(bool /*Bounded*/ = true) const override { return {}; }
    ERepresentation GetRepresentation() const override { return m_display.representation; }
    GenICam::gcstring GetUnit() const override { return m_display.unit; }
    EInterfaceType GetPrincipalInterfaceType() const override { return Kind::interfaceType; }

    // CNode: the limits that pointing nodes fall back to are given for the node's own kind only.
    int64_t IntegerMin() const override
    {
        if constexpr (isInteger)
            return Min();
        else
            return Base::IntegerMin();
    }
    int64_t IntegerMax() const override
    {
        if constexpr (isInteger)
            return Max();
        else
            return Base::IntegerMax();
    }
    double FloatMin() const override
    {
        if constexpr (isInteger)
            return Base::FloatMin();
        else
            return Min();
    }
    double FloatMax() const override
    {
        if constexpr (isInteger)
            return Base::FloatMax();
        else
            return Max();
    }

protected:
    // Under the lock, with the access mode checked: the value where the node keeps it.
    virtual T Fetch() const = 0;
    // Stores a value that passed the checks and schedules the invalidation of dependents.
    virtual void Store(T value, bool verify) = 0;
    // The node's limits.
    virtual T Min() const = 0;
    virtual T Max() const = 0;
    // Whether there is an increment; Increment() is Kind::defaultIncrement where not.
    virtual bool HasIncrement() const = 0;
    virtual T Increment() const = 0;

    void LoadDisplay(CElementReader& reader) { m_display = Kind::ReadDisplay(reader); }
    const typename Kind::Display& Display() const { return m_display; }

    T ReadNumber() const override { return Read(false); }
    void WriteNumber(T value, bool verify) override { Write(value, verify); }
    GenICam::gcstring ValueToString(bool verify) override { return Kind::Format(Read(verify), m_display); }
    void ValueFromString(const GenICam::gcstring& text, bool verify) override
    {
        const std::optional<T> value = Kind::Parse(text.view());
        if (!value)
            throw INVALID_ARGUMENT_EXCEPTION("[%s] cannot take '%s': it is not %s", this->Name().c_str(),
                                             text.c_str(), Kind::noun);
        Write(*value, verify);
    }

private:
    T Read(bool verify) const
    {
        this->RequireReadable();
        const T value = Fetch();
        if (verify)
            CheckRange(*this, value, Min(), Max(), Increment());
        return value;
    }

    void Write(T value, bool verify)
    {
        this->RequireWritable();
        if (verify)
            CheckRange(*this, value, Min(), Max(), Increment());
        Store(value, verify);
    }

    typename Kind::Display m_display;
};

// IFloat's own additions: whether an increment exists, and how to display the value.
template <class Base>
class TFloatNumberNode : public TNumberNode<Base, double>
{
public:
    using TNumberNode<Base, double>::TNumberNode;

    bool HasInc() const override { return this->HasIncrement(); }
    EDisplayNotation GetDisplayNotation() const override { return this->Display().displayNotation; }
    int64_t GetDisplayPrecision() const override { return this->Display().displayPrecision; }
};

// The number node of kind T over Base.
template <class Base, class T>
using TNumberNodeOf =
    std::conditional_t<std::is_same_v<T, double>, TFloatNumberNode<Base>, TNumberNode<Base, T>>;

} // namespace GenApi::Detail
