// GenApi::CPortWriteList: an IPortWriteList that keeps its writes in memory.
// Not thread-safe: one list belongs to one thread at a time.
#pragma once

#include <GenApi/GenApiExport.h>
#include <GenApi/IPortWriteList.h>

#include <cstdint>
#include <memory>

namespace GenApi
{

class GENAPI_API CPortWriteList : public IPortWriteList
{
public:
    CPortWriteList();
    ~CPortWriteList() override;
    CPortWriteList(const CPortWriteList&) = delete;
    CPortWriteList& operator=(const CPortWriteList&) = delete;

    void Write(const void* pBuffer, int64_t Address, int64_t Length) override;
    void Replay(IPort* pPort) override;
    void SetCookie(const int64_t Value) override;
    int64_t GetCookie() override;

private:
    struct Entries;
    std::unique_ptr<Entries> m_entries;
    int64_t m_cookie = 0;
};

} // namespace GenApi
