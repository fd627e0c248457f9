// A client and the node change one parameter at the same time, from two threads. The node map and the node
// share one recursive lock, so every change is whole and the feature ends at the node's last value. Run it
// under the thread sanitizer as well.
#include "TestNode.h"

#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapter.h>

#include <GenApi/GenApi.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace AdapterTest
{
namespace
{

TEST(AdapterThreads, ClientAndNodeWriteConcurrentlyUnderTheNodesLock)
{
    constexpr int rounds = 2000;
    std::atomic<int> callbacks{0};
    TestNode node;
    CAnythingToNodeMapAdapter adapter;
    adapter.addParameterPort(node.makeWidthPort(), 0);
    adapter.createNodeMap(&node.lock(), "Params", "");
    GenApi::CIntegerPtr width = adapter.getNodeMap()->GetNode("Width");
    GenApi::Register(width->GetNode(), [&](GenApi::INode*) { ++callbacks; });

    std::thread client(
        [&]
        {
            for (int i = 0; i < rounds; ++i)
            {
                width->SetValue(16 * (1 + i % 4));
                const int64_t seen = width->GetValue();
                EXPECT_TRUE(seen % 16 == 0 && seen >= 16 && seen <= 128) << seen;
            }
        });
    for (int i = 0; i < rounds; ++i)
    {
        node.setWidth(16 * (5 + i % 4));
    }
    client.join();

    EXPECT_EQ(width->GetValue(), node.getWidth());
    // Each node-side change alone runs the callback once; client writes add theirs.
    EXPECT_GE(callbacks.load(), rounds);
}

} // namespace
} // namespace AdapterTest
