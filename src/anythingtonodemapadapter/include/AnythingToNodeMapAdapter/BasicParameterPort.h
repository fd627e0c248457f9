// What every parameter port shares: its texts and its observer.
//
// The interface I is a virtual base, so that a relay converts to a pointer to its
// interface at run time. Not thread-safe by itself: texts are constant once the node
// map is built, and the observer is set and cleared under the node's lock.
#pragma once

#include <AnythingToNodeMapAdapter/IParameterPortObserver.h>
#include <AnythingToNodeMapAdapter/ParameterPortInterfaces.h>

#include <GCBase/GCString.h>

namespace AnythingToNodeMapAdapter
{

template <typename I>
class BasicParameterPort : public virtual I
{
public:
    BasicParameterPort() = default;
    BasicParameterPort(const GenICam::gcstring& name, const GenICam::gcstring& displayName,
                       const GenICam::gcstring& toolTip, const GenICam::gcstring& description,
                       const GenICam::gcstring& visibility)
        : m_name(name)
        , m_displayName(displayName)
        , m_description(description)
        , m_toolTip(toolTip)
        , m_visibility(visibility)
    {
    }

    const char* getName() const override { return m_name.c_str(); }
    const char* getDisplayName() const override { return m_displayName.c_str(); }
    const char* getDescription() const override { return m_description.c_str(); }
    const char* getToolTip() const override { return m_toolTip.c_str(); }
    const char* getVisibility() const override { return m_visibility.c_str(); }
    void setObserver(IParameterPortObserver* observer) override { m_observer = observer; }

    virtual void setVisibility(const char* visibility) { m_visibility = visibility; }

    // A node's setter calls this after it has stored a new value.
    void notifyObserver()
    {
        if (m_observer)
        {
            m_observer->onParameterPortChanged(static_cast<I*>(this));
        }
    }

private:
    GenICam::gcstring m_name;
    GenICam::gcstring m_displayName;
    GenICam::gcstring m_description;
    GenICam::gcstring m_toolTip;
    GenICam::gcstring m_visibility{"Expert"};
    IParameterPortObserver* m_observer = nullptr;
};

} // namespace AnythingToNodeMapAdapter
