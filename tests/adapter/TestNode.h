// A small node for the adapter's tests: values behind a recursive lock, getters and
// setters in the package's pattern (store under the lock, tell the port's observer only
// on a real change), and the relays that publish them.
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
    // What the setters need of their ports: the relays themselves name members of this
    // class and can only be spelled once it is complete.
    using EnablePort = BasicDataParameterPort<IBooleanParameterPort>;
    using WidthPort = IntegerParameterPortBase;
    using FpsPort = FloatParameterPortBase;

    GenApi::CLock& lock() { return m_lock; }

    bool getEnable() const;
    void setEnable(bool value);
    int64_t getWidth() const;
    void setWidth(int64_t value);
    uint32_t getBinning() const;
    void setBinning(uint32_t value);
    double getFps() const;
    void setFps(double value);

    // Ports made the way a node makes them: all four flags true.
    std::shared_ptr<EnablePort> makeEnablePort();
    std::shared_ptr<WidthPort> makeWidthPort(int64_t min = 16, int64_t max = 4096, int64_t inc = 16);
    std::shared_ptr<FpsPort> makeFpsPort(double min = 0.5, double max = 1000.0);

    // How often each setter ran, whatever it was given.
    int enableSetterCalls = 0;
    int widthSetterCalls = 0;
    int fpsSetterCalls = 0;

    std::shared_ptr<EnablePort> enablePort;
    std::shared_ptr<WidthPort> widthPort;
    std::shared_ptr<FpsPort> fpsPort;

private:
    mutable GenApi::CLock m_lock;
    bool m_enable = false;
    int64_t m_width = 640;
    uint32_t m_binning = 1;
    double m_fps = 25.0;
};

using EnableRelay = BooleanParameterPortRelay<TestNode, &TestNode::getEnable, &TestNode::setEnable>;
using WidthRelay = IntegerParameterPortRelay<int64_t, TestNode, &TestNode::getWidth, &TestNode::setWidth>;
using BinningRelay =
    IntegerParameterPortRelay<uint32_t, TestNode, &TestNode::getBinning, &TestNode::setBinning>;
using FpsRelay = FloatParameterPortRelay<TestNode, &TestNode::getFps, &TestNode::setFps>;

} // namespace AdapterTest
