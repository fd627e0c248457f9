// Arbitrary bytes as a register description: the factory must either refuse
// them with a GenICam exception or build a map whose every feature can be read
// and written (or refuses the access with a GenICam exception) through a port
// that answers every address.
#include <GenApi/GenApi.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

using namespace GenApi;

namespace
{

// Answers every address: a small register space repeated without end.
class CEndlessPort final : public CPortImpl
{
public:
    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* pBuffer, int64_t Address, int64_t Length) override
    {
        uint8_t* bytes = static_cast<uint8_t*>(pBuffer);
        for (int64_t i = 0; i < Length; ++i)
            bytes[i] = m_bytes[static_cast<uint64_t>(Address + i) % sizeof m_bytes];
    }
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override
    {
        const uint8_t* bytes = static_cast<const uint8_t*>(pBuffer);
        for (int64_t i = 0; i < Length; ++i)
            m_bytes[static_cast<uint64_t>(Address + i) % sizeof m_bytes] = bytes[i];
    }

private:
    uint8_t m_bytes[64] = {1, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 16};
};

template <class F>
void Tolerating(F&& action)
{
    try
    {
        action();
    }
    catch (const GenICam::GenericException&)
    {
        // A refusal with a GenICam exception is a valid answer.
    }
}

// Each action on its own: one refusal does not skip the next.
template <class... F>
void ToleratingEach(F&&... actions)
{
    (Tolerating(actions), ...);
}

// Writes the limits, a value beside the current one and a value beyond the
// limits, each with and without the range check.
void WriteTyped(INode* node)
{
    for (const bool verify : {true, false})
    {
        if (CIntegerPtr integer = node; integer.IsValid())
            ToleratingEach([&] { integer->SetValue(integer->GetMin(), verify); },
                           [&] { integer->SetValue(integer->GetMax(), verify); },
                           [&] { integer->SetValue(integer->GetValue() ^ 1, verify); },
                           [&] { integer->SetValue(std::numeric_limits<int64_t>::min(), verify); });
        if (CFloatPtr number = node; number.IsValid())
            ToleratingEach([&] { number->SetValue(number->GetMin(), verify); },
                           [&] { number->SetValue(number->GetMax(), verify); },
                           [&] { number->SetValue(-number->GetValue(), verify); },
                           [&] { number->SetValue(std::numeric_limits<double>::quiet_NaN(), verify); });
    }
    if (CBooleanPtr flag = node; flag.IsValid())
        Tolerating([&] { flag->SetValue(!flag->GetValue()); });
    if (CEnumerationPtr enumeration = node; enumeration.IsValid())
    {
        NodeList_t entries;
        Tolerating([&] { enumeration->GetEntries(entries); });
        for (const CEnumEntryPtr entry : entries)
            Tolerating([&] { enumeration->SetIntValue(entry->GetValue()); });
    }
    // A register as long as the document likes is not copied: the fuzzer's memory is limited.
    if (CRegisterPtr reg = node; reg.IsValid())
        Tolerating(
            [&]
            {
                std::vector<uint8_t> bytes(
                    static_cast<size_t>(std::clamp<int64_t>(reg->GetLength(), 0, 4096)));
                reg->Get(bytes.data(), static_cast<int64_t>(bytes.size()));
                reg->Set(bytes.data(), static_cast<int64_t>(bytes.size()));
            });
}

void ReadAndWriteEverything(INodeMap& map)
{
    NodeList_t nodes;
    map.GetNodes(nodes);
    for (INode* node : nodes)
    {
        Tolerating([&] { node->GetAccessMode(); });
        if (CValuePtr value = node; value.IsValid())
            Tolerating([&] { value->ToString(true); });
        if (CIntegerPtr integer = node; integer.IsValid())
            Tolerating([&]
                       { integer->GetValue(true), integer->GetMin(), integer->GetMax(), integer->GetInc(); });
        if (CFloatPtr number = node; number.IsValid())
            Tolerating([&] { number->GetValue(true), number->GetMin(), number->GetMax(); });
        if (CEnumerationPtr enumeration = node; enumeration.IsValid())
            Tolerating(
                [&]
                {
                    StringList_t symbols;
                    enumeration->GetSymbolics(symbols);
                    enumeration->GetCurrentEntry();
                });
        // Writing back what was read exercises the checks and the invalidation.
        if (CValuePtr value = node; value.IsValid() && IsWritable(value))
            Tolerating([&] { value->FromString(value->ToString()); });
        WriteTyped(node);
        Tolerating([&] { node->InvalidateNode(); });
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    CNodeMapRef ref;
    try
    {
        CNodeMapFactory factory(ContentType_Xml, data, size, CacheUsage_Ignore, false);
        ref = factory.CreateNodeMap();
    }
    catch (const GenICam::GenericException&)
    {
        return 0;
    }
    CEndlessPort port;
    NodeList_t nodes;
    ref._GetNodes(nodes);
    for (INode* node : nodes)
        if (node->GetPrincipalInterfaceType() == intfIPort)
            ref._Connect(&port, node->GetName());
    ReadAndWriteEverything(*ref._Ptr);
    return 0;
}
