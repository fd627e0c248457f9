// A parameter port that carries a value: the texts plus the four state flags,
// which only a constructor sets.
#pragma once

#include <AnythingToNodeMapAdapter/BasicParameterPort.h>

namespace AnythingToNodeMapAdapter
{

template <typename I>
class BasicDataParameterPort : public BasicParameterPort<I>
{
public:
    BasicDataParameterPort() = default;
    BasicDataParameterPort(const GenICam::gcstring& name, const GenICam::gcstring& displayName,
                           const GenICam::gcstring& toolTip, const GenICam::gcstring& description,
                           const GenICam::gcstring& visibility, bool available, bool writable,
                           bool availableDynamic, bool writableDynamic)
        : BasicParameterPort<I>(name, displayName, toolTip, description, visibility)
        , m_available(available)
        , m_writable(writable)
        , m_availableDynamic(availableDynamic)
        , m_writableDynamic(writableDynamic)
    {
    }

    bool isAvailable() const override { return m_available; }
    bool isWritable() const override { return m_writable; }
    bool isAvailableDynamic() const override { return m_availableDynamic; }
    bool isWritableDynamic() const override { return m_writableDynamic; }

private:
    bool m_available = false;
    bool m_writable = false;
    bool m_availableDynamic = false;
    bool m_writableDynamic = false;
};

} // namespace AnythingToNodeMapAdapter
