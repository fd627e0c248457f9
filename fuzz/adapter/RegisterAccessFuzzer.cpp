// Register accesses with any address, length and content through the node maps of
// two adapters, one with a shared port and one with a port per parameter, as a
// client of the map reaches the real ports; between them, writes of the features
// themselves. Buffers are exactly as long as the access says, so any byte read or
// written beyond them is caught by the address sanitizer. Checks the rules of the
// register level (an access with another length than 8 reads zeros over its
// length), and that every feature then reads what its parameter holds, whatever
// changed it.
//
// Input, repeated: operation (1: bits 0-1 the port: the shared one, or the own
// port of Flag, Count or Rate; bit 2 write, else read; bit 3 write the features
// from the buffer instead, bit 4 with the range check; bit 7 an address near the
// blocks), address (8), length (1, signed), then length bytes of buffer.
#include <AnythingToNodeMapAdapter/AnythingToNodeMapAdapter.h>
#include <AnythingToNodeMapAdapter/BooleanParameterPortRelay.h>
#include <AnythingToNodeMapAdapter/CategoryParameterPort.h>
#include <AnythingToNodeMapAdapter/FloatParameterPortRelay.h>
#include <AnythingToNodeMapAdapter/IntegerParameterPortRelay.h>

#include <GenApi/GenApi.h>

#include <bit>
#include <cstdint>
#include <cstring>
#include <vector>

namespace
{

using namespace AnythingToNodeMapAdapter;

struct FuzzNode
{
    bool getFlag() const { return flag; }
    void setFlag(bool value) { flag = value; }
    int16_t getCount() const { return count; }
    void setCount(int16_t value) { count = value; }
    double getRate() const { return rate; }
    void setRate(double value) { rate = value; }

    bool flag = false;
    int16_t count = 0;
    double rate = 0.0;
};

// A node with its parameters published in one of the two layouts.
struct Published
{
    explicit Published(const char* portName)
    {
        adapter.addParameterPort(std::make_shared<CategoryParameterPort>("Root"), 0);
        adapter.addParameterPort(
            std::make_shared<BooleanParameterPortRelay<FuzzNode, &FuzzNode::getFlag, &FuzzNode::setFlag>>(
                &node, "Flag", "", "", "", "Expert", true, true, true, true),
            0);
        adapter.addParameterPort(
            std::make_shared<
                IntegerParameterPortRelay<int16_t, FuzzNode, &FuzzNode::getCount, &FuzzNode::setCount>>(
                &node, "Count", "", "", "", "Expert", true, true, true, true, -100, 100, 1, "PureNumber"),
            0);
        adapter.addParameterPort(
            std::make_shared<FloatParameterPortRelay<FuzzNode, &FuzzNode::getRate, &FuzzNode::setRate>>(
                &node, "Rate", "", "", "", "Expert", true, true, true, true, 0.0, 1.0),
            0);
        for (const char* feature : {"Flag", "Count", "Rate"})
        {
            adapter.addRelation("Feature", "Root", feature);
        }
        adapter.createNodeMap(nullptr, portName, "");
    }

    GenApi::INodeMap& map() const { return *adapter.getNodeMap(); }

    // Every feature reads what the node holds: no register access leaves a stale value behind.
    void check() const
    {
        const double rate = GenApi::CFloatPtr(map().GetNode("Rate"))->GetValue();
        if (GenApi::CBooleanPtr(map().GetNode("Flag"))->GetValue() != node.flag ||
            GenApi::CIntegerPtr(map().GetNode("Count"))->GetValue() != node.count ||
            std::bit_cast<uint64_t>(rate) != std::bit_cast<uint64_t>(node.rate))
        {
            __builtin_trap();
        }
    }

    FuzzNode node;
    CAnythingToNodeMapAdapter adapter;
};

// Takes bytes from the front of the input; zeros once it is used up.
class Reader
{
public:
    Reader(const uint8_t* data, size_t size)
        : m_data(data)
        , m_size(size)
    {
    }
    bool empty() const { return m_size == 0; }
    template <typename T>
    T take()
    {
        T value{};
        const size_t n = std::min(sizeof value, m_size);
        if (n == 0)
            return value; // an empty input may come as a null pointer, which memcpy must not see
        std::memcpy(&value, m_data, n);
        m_data += n;
        m_size -= n;
        return value;
    }

private:
    const uint8_t* m_data;
    size_t m_size;
};

template <class F>
void tolerating(F&& action)
{
    try
    {
        action();
    }
    catch (const GenICam::GenericException&)
    {
        // The node map refuses a value out of range or of a read-only feature.
    }
}

// Writes the features from the buffer's words, through the node map.
void writeFeatures(GenApi::INodeMap& map, const std::vector<uint8_t>& buffer, bool verify)
{
    Reader words(buffer.data(), buffer.size());
    const bool flag = words.take<uint8_t>() & 1;
    const int64_t count = words.take<int64_t>();
    const double rate = words.take<double>();
    tolerating([&] { GenApi::CBooleanPtr(map.GetNode("Flag"))->SetValue(flag, verify); });
    tolerating([&] { GenApi::CIntegerPtr(map.GetNode("Count"))->SetValue(count, verify); });
    tolerating([&] { GenApi::CFloatPtr(map.GetNode("Rate"))->SetValue(rate, verify); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const Published shared("Params");
    static const Published own("");
    static const char* const ownPorts[] = {"FlagPort", "CountPort", "RatePort"};

    Reader input(data, size);
    while (!input.empty())
    {
        const uint8_t operation = input.take<uint8_t>();
        int64_t at = input.take<int64_t>();
        if (operation & 0x80)
        {
            at %= 160; // mostly near the blocks, where the interesting edges are
        }
        const int64_t length = static_cast<int8_t>(input.take<uint8_t>()) % 40;
        std::vector<uint8_t> buffer(static_cast<size_t>(length > 0 ? length : 0));
        for (uint8_t& byte : buffer)
        {
            byte = input.take<uint8_t>();
        }
        const unsigned portIndex = operation & 3;
        const Published& target = portIndex == 0 ? shared : own;
        GenApi::CPortPtr port = target.map().GetNode(portIndex == 0 ? "Params" : ownPorts[portIndex - 1]);
        if (operation & 8)
        {
            writeFeatures(target.map(), buffer, operation & 16);
        }
        else if (operation & 4)
        {
            port->Write(buffer.data(), at, length);
        }
        else
        {
            port->Read(buffer.data(), at, length);
            if (length > 0 && length != 8)
            {
                for (const uint8_t byte : buffer)
                {
                    if (byte != 0)
                    {
                        __builtin_trap(); // an access of another length must read zeros
                    }
                }
            }
        }
        target.check();
    }
    return 0;
}
