// Register accesses with any address, length and content on the real ports of a node's
// parameters. Buffers are exactly as long as the access says, so any byte read or
// written beyond them is caught by the address sanitizer. Checks the rules of the
// register level: an access with another length than 8 reads zeros over its length.
#include "detail/DataNodeMapPort.h"
#include "detail/RealNodeMapPortMultiParameter.h"
#include "detail/RealNodeMapPortSingleParameter.h"

#include <AnythingToNodeMapAdapter/BooleanParameterPortRelay.h>
#include <AnythingToNodeMapAdapter/FloatParameterPortRelay.h>
#include <AnythingToNodeMapAdapter/IntegerParameterPortRelay.h>

#include <cstdint>
#include <cstring>
#include <sstream>
#include <vector>

namespace
{

using namespace AnythingToNodeMapAdapter;
using namespace AnythingToNodeMapAdapter::Detail;

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
        std::memcpy(&value, m_data, n);
        m_data += n;
        m_size -= n;
        return value;
    }

private:
    const uint8_t* m_data;
    size_t m_size;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzNode node;
    auto flag = std::make_shared<CBooleanNodeMapPort>(
        std::make_shared<BooleanParameterPortRelay<FuzzNode, &FuzzNode::getFlag, &FuzzNode::setFlag>>(
            &node, "Flag", "", "", "", "Expert", true, true, true, true),
        0);
    auto count = std::make_shared<CIntegerNodeMapPort>(
        std::make_shared<
            IntegerParameterPortRelay<int16_t, FuzzNode, &FuzzNode::getCount, &FuzzNode::setCount>>(
            &node, "Count", "", "", "", "Expert", true, false, true, true, -100, 100, 1, "PureNumber"),
        0);
    auto rate = std::make_shared<CFloatNodeMapPort>(
        std::make_shared<FloatParameterPortRelay<FuzzNode, &FuzzNode::getRate, &FuzzNode::setRate>>(
            &node, "Rate", "", "", "", "Expert", true, true, true, true, 0.0, 1.0),
        0);
    std::ostringstream text;
    int64_t address = 0;
    for (CBasicNodeMapPort* port :
         std::initializer_list<CBasicNodeMapPort*>{count.get(), flag.get(), rate.get()})
    {
        port->placeAndWriteXml(text, false, "Params", "", address);
    }
    // No node map: the ports are exercised on their own.
    CRealNodeMapPortMultiParameter multi(nullptr, "Params");
    CRealNodeMapPortSingleParameter single(nullptr);
    multi.connect(count.get());
    multi.connect(flag.get());
    multi.connect(rate.get());
    multi.finish();

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
        GenApi::IPort& target = (operation & 1) ? static_cast<GenApi::IPort&>(multi) : single;
        if (operation & 2)
        {
            target.Write(buffer.data(), at, length);
            continue;
        }
        target.Read(buffer.data(), at, length);
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
        if (operation & 4)
        {
            multi.disconnect(flag.get());
        }
    }
    return 0;
}
