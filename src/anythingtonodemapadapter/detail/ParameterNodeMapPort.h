// The part of a node-map port that depends only on the type of its parameter port: it
// holds the parameter port, becomes its observer for its lifetime, and hands a change
// on to the connector.
#pragma once

#include "BasicNodeMapPort.h"

#include <AnythingToNodeMapAdapter/IParameterPortObserver.h>
#include <AnythingToNodeMapAdapter/ParameterPortInterfaces.h>

namespace AnythingToNodeMapAdapter::Detail
{

template <typename P>
class CParameterNodeMapPort : public CBasicNodeMapPort, public IParameterPortObserver
{
public:
    CParameterNodeMapPort(std::shared_ptr<P> port, int32_t mergePriority)
        : CBasicNodeMapPort(mergePriority)
        , m_port(std::move(port))
    {
        if (m_port)
        {
            m_port->setObserver(this);
        }
    }

    ~CParameterNodeMapPort() override
    {
        if (m_port)
        {
            m_port->setObserver(nullptr);
        }
    }

    const char* getName() const override { return m_port ? m_port->getName() : ""; }

    // Which port changed is known already; the argument is not needed.
    void onParameterPortChanged(IBasicParameterPort*) override { tellConnector(); }

protected:
    const std::shared_ptr<P>& parameterPort() const { return m_port; }

private:
    std::shared_ptr<P> m_port;
};

} // namespace AnythingToNodeMapAdapter::Detail
