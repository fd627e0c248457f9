// Test tools for the GenApi runtime: a port that keeps its registers in memory,
// the documents of tests/data/genicam and documents made on the spot, and a
// fixture that loads one of them.
#pragma once

#include "../histogram/failure_text.h"

#include <GenApi/GenApi.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace GenApiTest
{

inline std::string DataPath(const std::string& name)
{
    return std::string(TESSAL_TEST_DATA_DIR) + "/genicam/" + name;
}

inline std::string ReadDocument(const std::string& name)
{
    std::ifstream file(DataPath(name), std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// A document of the given nodes, with the head of the reference documents and a port "Device".
inline std::string Document(const std::string& nodes)
{
    const std::string gate = ReadDocument("gate.xml");
    return gate.substr(0, gate.find("\n\n") + 1) + nodes +
           "<Port Name=\"Device\"/>\n</RegisterDescription>\n";
}

// A signed NoCache register of the port "Device".
inline std::string IntReg(const std::string& name, int address, int length = 8)
{
    return "<IntReg Name=\"" + name + "\"><Address>" + std::to_string(address) + "</Address><Length>" +
           std::to_string(length) +
           "</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
           "<Cachable>NoCache</Cachable><Sign>Signed</Sign><Endianess>LittleEndian</Endianess></IntReg>\n";
}

// Builds a map from a document text the way the adapter does: from memory,
// without cache, with or without a lock of the caller.
inline GenApi::INodeMap* CreateMap(const std::string& text, GenApi::CLock* lock = nullptr)
{
    GenApi::CNodeMapFactory factory(GenApi::ContentType_Xml, text.data(), text.size(),
                                    GenApi::CacheUsage_Ignore, false);
    return lock != nullptr ? factory.CreateNodeMap(*lock, "Device", true)
                           : factory.CreateNodeMap("Device", true);
}

// A register space of a fixed size in memory. Accesses outside it throw, so a
// wrong address in the runtime shows as a failure, not as a silent zero. With
// failReads every read fails as a device that is gone would; with splitWrites a
// write arrives in two halves, so that an unguarded reader would see it torn.
class CMemoryPort : public GenApi::CPortImpl
{
public:
    GenApi::EAccessMode GetAccessMode() const override { return accessMode; }

    void Read(void* pBuffer, int64_t Address, int64_t Length) override
    {
        if (failReads)
            throw std::runtime_error("device gone");
        Check(Address, Length);
        std::memcpy(pBuffer, m_bytes.data() + Address, static_cast<size_t>(Length));
    }

    void Write(const void* pBuffer, int64_t Address, int64_t Length) override
    {
        Check(Address, Length);
        const int64_t first = splitWrites ? Length / 2 : Length;
        std::memcpy(m_bytes.data() + Address, pBuffer, static_cast<size_t>(first));
        std::this_thread::yield();
        std::memcpy(m_bytes.data() + Address + first, static_cast<const uint8_t*>(pBuffer) + first,
                    static_cast<size_t>(Length - first));
    }

    template <class T>
    void Poke(int64_t address, T value)
    {
        Write(&value, address, sizeof value);
    }

    template <class T>
    T Peek(int64_t address)
    {
        T value{};
        Read(&value, address, sizeof value);
        return value;
    }

    GenApi::EAccessMode accessMode = GenApi::RW;
    bool failReads = false;
    bool splitWrites = false;

private:
    void Check(int64_t address, int64_t length) const
    {
        if (address < 0 || length < 0 || static_cast<size_t>(address + length) > m_bytes.size())
            throw OUT_OF_RANGE_EXCEPTION("memory port: access of %lld bytes at %lld",
                                         static_cast<long long>(length), static_cast<long long>(address));
    }

    std::vector<uint8_t> m_bytes = std::vector<uint8_t>(0x200);
};

// Whether another thread finds the lock taken right now.
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

// A map of one document under the test's lock, with `port` connected.
class CMapTest : public ::testing::Test
{
protected:
    void Load(const std::string& text, const char* portName = "Device")
    {
        ref = CreateMap(text, &lock);
        ASSERT_TRUE(ref._Connect(&port, portName));
    }

    // Counts the callback runs of the node `name` into calls[name].
    void Count(const char* name)
    {
        GenApi::Register(ref._GetNode(name), [this, name](GenApi::INode*) { ++calls[name]; });
    }

    GenApi::CLock lock;
    GenApi::CNodeMapRef ref;
    CMemoryPort port;
    std::map<std::string, int> calls;
};

} // namespace GenApiTest
