// A small node for the adapter's tests: values behind a recursive lock, setters in the package's pattern
// (store under the lock, tell the port's observer only on a real change), and the relays that publish them.
#pragma once

#include <AnythingToNodeMapAdapter/BooleanParameterPortRelay.h>
#include <AnythingToNodeMapAdapter/CategoryParameterPort.h>
#include <AnythingToNodeMapAdapter/FloatParameterPortRelay.h>
#include <AnythingToNodeMapAdapter/IntegerParameterPortRelay.h>

#include <GCBase/Synch.h>

#include <memory>

namespace AdapterTest
{

using namespace AnythingToNodeMapAdapter;

class TestNode
{
public:
    // The relays name members of this class and can only be spelled once it is complete.
    using EnablePort = BasicDataParameterPort<IBooleanParameterPort>;
    using WidthPort = IntegerParameterPortBase;
    using FpsPort = FloatParameterPortBase;

    GenApi::CLock& lock() { return m_lock; }

    bool getEnable() const { return get(m_enable); }
    void setEnable(bool value) { set(m_enable, value, enablePort); }
    int64_t getWidth() const { return get(m_width); }
    void setWidth(int64_t value) { set(m_width, value, widthPort); }
    double getFps() const { return get(m_fps); }
    void setFps(double value) { set(m_fps, value, fpsPort); }
    // Tells nobody, like a node whose parameter nobody watches.
    uint32_t getBinning() const { return get(m_binning); }
    void setBinning(uint32_t value) { m_binning = value; }

    // Ports made the way a node makes them: all four flags true.
    std::shared_ptr<EnablePort> makeEnablePort();
    std::shared_ptr<WidthPort> makeWidthPort();
    std::shared_ptr<FpsPort> makeFpsPort();

    // How often the setters of Enable, Width and Fps ran, whatever they were given.
    int setterCalls = 0;

    std::shared_ptr<EnablePort> enablePort;
    std::shared_ptr<WidthPort> widthPort;
    std::shared_ptr<FpsPort> fpsPort;

private:
    template <typename T>
    T get(const T& field) const
    {
        GenApi::AutoLock guard(m_lock);
        return field;
    }

    template <typename T, typename Port>
    void set(T& field, T value, const std::shared_ptr<Port>& port)
    {
        GenApi::AutoLock guard(m_lock);
        ++setterCalls;
        if (field != value)
        {
            field = value;
            if (port)
            {
                port->notifyObserver();
            }
        }
    }

    mutable GenApi::CLock m_lock;
    bool m_enable = false;
    int64_t m_width = 640;
    double m_fps = 25.0;
    uint32_t m_binning = 1;
};

using EnableRelay = BooleanParameterPortRelay<TestNode, &TestNode::getEnable, &TestNode::setEnable>;
using WidthRelay = IntegerParameterPortRelay<int64_t, TestNode, &TestNode::getWidth, &TestNode::setWidth>;
using BinningRelay =
    IntegerParameterPortRelay<uint32_t, TestNode, &TestNode::getBinning, &TestNode::setBinning>;
using FpsRelay = FloatParameterPortRelay<TestNode, &TestNode::getFps, &TestNode::setFps>;

inline std::shared_ptr<TestNode::EnablePort> TestNode::makeEnablePort()
{
    return enablePort =
               std::make_shared<EnableRelay>(this, "Enable", "Enable", "Enable passthrough of data",
                                             "Enable passthrough of data", "Guru", true, true, true, true);
}

inline std::shared_ptr<TestNode::WidthPort> TestNode::makeWidthPort()
{
    return widthPort = std::make_shared<WidthRelay>(this, "Width", "", "", "", "Expert", true, true, true,
                                                    true, 16, 4096, 16, "PureNumber");
}

inline std::shared_ptr<TestNode::FpsPort> TestNode::makeFpsPort()
{
    return fpsPort = std::make_shared<FpsRelay>(this, "Fps", "", "", "", "Expert", true, true, true, true,
                                                0.5, 1000.0);
}

} // namespace AdapterTest
