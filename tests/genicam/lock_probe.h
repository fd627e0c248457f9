// Whether another thread finds a node map's lock taken right now.
#pragma once

#include <GCBase/Synch.h>

#include <thread>

namespace GenApiTest
{

inline bool IsLockedElsewhere(GenApi::CLock& lock)
{
    bool taken = false;
    std::thread probe(
        [&]
        {
            taken = !lock.TryLock();
            if (!taken)
                lock.Unlock();
        });
    probe.join();
    return taken;
}

} // namespace GenApiTest
