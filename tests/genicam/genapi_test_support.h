// Test tools for the GenApi runtime: a port that keeps its registers in memory
// and counts accesses, loading of documents from tests/data/genicam, and the
// text of the exception an access throws.
#pragma once

#include <GenApi/GenApi.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>
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

// Builds a map from a document text the way the adapter does: from memory,
// without cache, with or without a lock of the caller.
inline GenApi::INodeMap* CreateMap(const std::string& text, GenApi::CLock* lock = nullptr)
{
    GenApi::CNodeMapFactory factory(GenApi::ContentType_Xml, text.data(), text.size(),
                                    GenApi::CacheUsage_Ignore, false);
    return lock != nullptr ? factory.CreateNodeMap(*lock, "Device", true)
                           : factory.CreateNodeMap("Device", true);
}

// "ExceptionName: description" of the GenICam exception the action throws.
inline std::string ErrorText(const std::function<void()>& action)
{
    try
    {
        action();
    }
    catch (const GenICam::GenericException& e)
    {
        return std::string(e.GetExceptionName()) + ": " + e.GetDescription();
    }
    return "no exception";
}

// A register space of a fixed size in memory. Accesses outside it throw, so a
// wrong address in the runtime shows as a failure, not as a silent zero.
class CMemoryPort : public GenApi::CPortImpl
{
public:
    explicit CMemoryPort(size_t size = 0x200)
        : m_bytes(size, 0)
    {
    }

    GenApi::EAccessMode GetAccessMode() const override { return accessMode; }

    void Read(void* pBuffer, int64_t Address, int64_t Length) override
    {
        Check(Address, Length);
        ++reads;
        if (onRead)
            onRead(Address);
        std::memcpy(pBuffer, m_bytes.data() + Address, static_cast<size_t>(Length));
    }

    void Write(const void* pBuffer, int64_t Address, int64_t Length) override
    {
        Check(Address, Length);
        std::memcpy(m_bytes.data() + Address, pBuffer, static_cast<size_t>(Length));
    }

    template <class T>
    void Poke(int64_t address, T value)
    {
        Check(address, sizeof value);
        std::memcpy(m_bytes.data() + address, &value, sizeof value);
    }

    template <class T>
    T Peek(int64_t address) const
    {
        T value{};
        std::memcpy(&value, m_bytes.data() + address, sizeof value);
        return value;
    }

    // The Port node the map handed over, for tests of the connection.
    GenApi::INode* PortNode() const
    {
        return m_ptrPort.IsValid() ? static_cast<GenApi::INode*>(m_ptrPort) : nullptr;
    }

    GenApi::EAccessMode accessMode = GenApi::RW;
    int reads = 0;
    std::function<void(int64_t)> onRead;

private:
    void Check(int64_t address, int64_t length) const
    {
        if (address < 0 || length < 0 || static_cast<size_t>(address + length) > m_bytes.size())
            throw OUT_OF_RANGE_EXCEPTION("memory port: access of %lld bytes at %lld",
                                         static_cast<long long>(length), static_cast<long long>(address));
    }

    std::vector<uint8_t> m_bytes;
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

// Counts the callback runs of one node.
struct CCallCounter
{
    void OnChanged(GenApi::INode* /*node*/) { ++calls; }
    int calls = 0;
};

} // namespace GenApiTest
