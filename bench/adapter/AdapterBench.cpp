// A feature write from a GenApi client to the node's setter and a read back, through
// the adapter and the runtime's node map, beside the same write and read as direct
// calls of the node's setter and getter. The RegisterWrite pair isolates the adapter's
// own share: a write and read of the value register straight on the real port.
#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapter.h>
#include <AnythingToNodeMapAdapter/CategoryParameterPort.h>
#include <AnythingToNodeMapAdapter/IntegerParameterPortRelay.h>

#include "detail/AnythingToNodeMapAdapterImpl.h"
#include "detail/DataNodeMapPort.h"

#include <GenApi/GenApi.h>

#include <benchmark/benchmark.h>

#include <memory>

namespace
{

using namespace AnythingToNodeMapAdapter;

// A node in the package's pattern: values under its recursive lock, observer told on change.
class BenchNode
{
public:
    int64_t getWidth() const
    {
        GenApi::AutoLock guard(lock);
        return width;
    }
    void setWidth(int64_t value)
    {
        GenApi::AutoLock guard(lock);
        if (value != width)
        {
            width = value;
            if (widthPort)
            {
                widthPort->notifyObserver();
            }
        }
    }

    mutable GenApi::CLock lock;
    std::shared_ptr<IntegerParameterPortBase> widthPort;

private:
    int64_t width = 16;
};

using WidthRelay = IntegerParameterPortRelay<int64_t, BenchNode, &BenchNode::getWidth, &BenchNode::setWidth>;

// The node with its adapter and node map, as a node's constructor leaves them.
struct PublishedNode
{
    explicit PublishedNode(const char* portName)
    {
        node.widthPort = std::make_shared<WidthRelay>(&node, "Width", "Width", "", "", "Expert", true, true,
                                                      true, true, 16, 4096, 16, "PureNumber");
        adapter.addParameterPort(std::make_shared<CategoryParameterPort>("Root"), 0);
        adapter.addParameterPort(std::static_pointer_cast<IIntegerParameterPort>(node.widthPort), 0);
        adapter.addRelation("Feature", "Root", "Width");
        adapter.createNodeMap(&node.lock, portName, "");
    }

    BenchNode node;
    CAnythingToNodeMapAdapter adapter;
};

int64_t nextWidth(int64_t width)
{
    return width == 16 ? 32 : 16;
}

void integerWriteThroughNodeMap(benchmark::State& state, const char* portName)
{
    PublishedNode published(portName);
    GenApi::CIntegerPtr width = published.adapter.getNodeMap()->GetNode("Width");
    int64_t value = 16;
    for (auto _ : state)
    {
        value = nextWidth(value);
        width->SetValue(value);
        benchmark::DoNotOptimize(width->GetValue());
    }
    if (published.node.getWidth() != value)
    {
        state.SkipWithError("the write did not reach the node");
    }
}

void integerWriteDirect(benchmark::State& state)
{
    BenchNode node;
    int64_t value = 16;
    for (auto _ : state)
    {
        value = nextWidth(value);
        node.setWidth(value);
        benchmark::DoNotOptimize(node.getWidth());
    }
}

void registerWriteOnRealPort(benchmark::State& state)
{
    BenchNode node;
    node.widthPort = std::make_shared<WidthRelay>(&node, "Width", "Width", "", "", "Expert", true, true, true,
                                                  true, 16, 4096, 16, "PureNumber");
    CAnythingToNodeMapAdapter::CAnythingToNodeMapAdapterImpl impl;
    impl.addPort<Detail::CIntegerNodeMapPort>(std::static_pointer_cast<IIntegerParameterPort>(node.widthPort),
                                              0);
    impl.createNodeMap(&node.lock, "Params", "");
    GenApi::IPort& realPort = *impl.multiPort();
    int64_t value = 16;
    int64_t readBack = 0;
    for (auto _ : state)
    {
        value = nextWidth(value);
        GenApi::AutoLock guard(node.lock); // as the node map holds it around a register access
        realPort.Write(&value, 0, sizeof value);
        realPort.Read(&readBack, 0, sizeof readBack);
        benchmark::DoNotOptimize(readBack);
    }
    if (readBack != value)
    {
        state.SkipWithError("the register write did not reach the node");
    }
}

} // namespace

BENCHMARK_CAPTURE(integerWriteThroughNodeMap, own_ports, "")->Name("Adapter/IntegerWrite/tessal");
BENCHMARK(integerWriteDirect)->Name("Adapter/IntegerWrite/direct");
BENCHMARK_CAPTURE(integerWriteThroughNodeMap, shared_port, "Params")
    ->Name("Adapter/IntegerWriteSharedPort/tessal");
BENCHMARK(integerWriteDirect)->Name("Adapter/IntegerWriteSharedPort/direct");
BENCHMARK(registerWriteOnRealPort)->Name("Adapter/RegisterWrite/tessal");
BENCHMARK(integerWriteDirect)->Name("Adapter/RegisterWrite/direct");
