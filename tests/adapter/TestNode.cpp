#include "TestNode.h"

namespace AdapterTest
{
namespace
{

// Stores value and tells the port of a real change, all under the node's lock.
template <typename T, typename Port>
void storeAndNotify(GenApi::CLock& lock, T& field, T value, const std::shared_ptr<Port>& port, int& calls)
{
    GenApi::AutoLock guard(lock);
    ++calls;
    if (field != value)
    {
        field = value;
        if (port)
        {
            port->notifyObserver();
        }
    }
}

} // namespace

bool TestNode::getEnable() const
{
    GenApi::AutoLock guard(m_lock);
    return m_enable;
}

void TestNode::setEnable(bool value)
{
    storeAndNotify(m_lock, m_enable, value, enablePort, enableSetterCalls);
}

int64_t TestNode::getWidth() const
{
    GenApi::AutoLock guard(m_lock);
    return m_width;
}

void TestNode::setWidth(int64_t value)
{
    storeAndNotify(m_lock, m_width, value, widthPort, widthSetterCalls);
}

uint32_t TestNode::getBinning() const
{
    GenApi::AutoLock guard(m_lock);
    return m_binning;
}

// Tells nobody, like a node whose parameter nobody watches.
void TestNode::setBinning(uint32_t value)
{
    GenApi::AutoLock guard(m_lock);
    m_binning = value;
}

double TestNode::getFps() const
{
    GenApi::AutoLock guard(m_lock);
    return m_fps;
}

void TestNode::setFps(double value)
{
    storeAndNotify(m_lock, m_fps, value, fpsPort, fpsSetterCalls);
}

std::shared_ptr<TestNode::EnablePort> TestNode::makeEnablePort()
{
    enablePort = std::make_shared<EnableRelay>(this, "Enable", "Enable", "Enable passthrough of data",
                                               "Enable passthrough of data", "Guru", true, true, true, true);
    return enablePort;
}

std::shared_ptr<TestNode::WidthPort> TestNode::makeWidthPort(int64_t min, int64_t max, int64_t inc)
{
    widthPort = std::make_shared<WidthRelay>(this, "Width", "Width", "Width in pixels", "Width in pixels",
                                             "Expert", true, true, true, true, min, max, inc, "PureNumber");
    return widthPort;
}

std::shared_ptr<TestNode::FpsPort> TestNode::makeFpsPort(double min, double max)
{
    fpsPort = std::make_shared<FpsRelay>(this, "Fps", "Fps", "Highest rate", "Highest rate", "Expert", true,
                                         true, true, true, min, max);
    return fpsPort;
}

} // namespace AdapterTest
