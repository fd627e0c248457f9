#include <GenApi/PortWriteList.h>

#include <GCBase/GCException.h>
#include <GenApi/IPort.h>

#include <cstdint>
#include <vector>

namespace GenApi
{

struct CPortWriteList::Entries
{
    struct SWrite
    {
        std::vector<uint8_t> bytes;
        int64_t address;
    };
    std::vector<SWrite> writes;
};

CPortWriteList::CPortWriteList()
    : m_entries(std::make_unique<Entries>())
{
}

CPortWriteList::~CPortWriteList() = default;

void CPortWriteList::Write(const void* pBuffer, int64_t Address, int64_t Length)
{
    if (Length < 0 || (pBuffer == nullptr && Length > 0))
        throw INVALID_ARGUMENT_EXCEPTION("Port write list cannot record %lld bytes from %p",
                                         static_cast<long long>(Length), pBuffer);
    const uint8_t* bytes = static_cast<const uint8_t*>(pBuffer);
    m_entries->writes.push_back({std::vector<uint8_t>(bytes, bytes + Length), Address});
}

void CPortWriteList::Replay(IPort* pPort)
{
    if (pPort == nullptr)
        throw INVALID_ARGUMENT_EXCEPTION("Port write list cannot replay to a null port");
    for (const Entries::SWrite& write : m_entries->writes)
        pPort->Write(write.bytes.data(), write.address, static_cast<int64_t>(write.bytes.size()));
}

void CPortWriteList::SetCookie(const int64_t Value)
{
    m_cookie = Value;
}

int64_t CPortWriteList::GetCookie()
{
    return m_cookie;
}

} // namespace GenApi
