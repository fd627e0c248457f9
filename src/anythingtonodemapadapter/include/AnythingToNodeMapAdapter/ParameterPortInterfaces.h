// The interfaces of a node's parameter: a category that groups others, or a value
// of one of three types. A port knows nothing of GenICam; the adapter turns it into
// features of a node map.
#pragma once

#include <cstddef>
#include <cstdint>

namespace AnythingToNodeMapAdapter
{

class IParameterPortObserver;

class IBasicParameterPort
{
public:
    virtual ~IBasicParameterPort() = default;

    // The key in the adapter and the name of the feature in the node map.
    virtual const char* getName() const = 0;
    virtual const char* getDisplayName() const = 0;
    virtual const char* getDescription() const = 0;
    virtual const char* getToolTip() const = 0;
    // A GenICam visibility word such as "Expert" or "Guru".
    virtual const char* getVisibility() const = 0;
    // Byte width of the value: 0 for a category, 1 boolean, 8 float, the node's type for an integer.
    virtual std::size_t getValueSize() const = 0;
    // Stores the observer, not owned; null clears it.
    virtual void setObserver(IParameterPortObserver* observer) = 0;
};

class ICategoryParameterPort : public IBasicParameterPort
{
};

class IBasicDataParameterPort : public IBasicParameterPort
{
public:
    // What the IsAvailable register reads.
    virtual bool isAvailable() const = 0;
    // Its negation is what the IsLocked register reads.
    virtual bool isWritable() const = 0;
    // True: the feature gets an IsAvailable register; false: availability comes from relations.
    virtual bool isAvailableDynamic() const = 0;
    // True: the feature gets an IsLocked register and a read-write value register.
    virtual bool isWritableDynamic() const = 0;
};

class IBooleanParameterPort : public IBasicDataParameterPort
{
public:
    virtual bool getValue() const = 0;
    // silent true: only the node's setter runs; false: the port also tells its observer of a change.
    virtual void setValue(bool value, bool silent) = 0;
};

class IFloatParameterPort : public IBasicDataParameterPort
{
public:
    virtual const char* getRepresentation() const = 0;
    virtual const char* getUnit() const = 0;
    virtual double getValue() const = 0;
    virtual double getMax() const = 0;
    virtual double getMin() const = 0;
    virtual void setValue(double value, bool silent) = 0;
};

class IIntegerParameterPort : public IBasicDataParameterPort
{
public:
    virtual const char* getRepresentation() const = 0;
    virtual const char* getUnit() const = 0;
    virtual bool isSigned() const = 0;
    virtual int64_t getValue() const = 0;
    virtual int64_t getMax() const = 0;
    virtual int64_t getMin() const = 0;
    virtual int64_t getInc() const = 0;
    virtual void setValue(int64_t value, bool silent) = 0;
};

} // namespace AnythingToNodeMapAdapter
