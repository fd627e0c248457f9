// Reading and writing a feature through the node map against calling the port
// directly, for the three feature kinds of the adapter's documents. Each pair
// shares its name up to the last part: .../tessal goes through the node map,
// .../port is the bare register access that the node map ends in, a virtual
// call of the same in-memory port.
//
// Through the node map a read also asks the feature's availability register,
// and a write asks availability, lock and, for integers and floats, the limit
// registers, all of them NoCache; the ratio shows what that costs.
#include <GenApi/GenApi.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

using namespace GenApi;

namespace
{

// A register space in memory, as lean as a port can be.
class CMemoryPort final : public CPortImpl
{
public:
    CMemoryPort()
        : m_bytes(0x40, 0)
    {
    }
    EAccessMode GetAccessMode() const override { return RW; }
    void Read(void* pBuffer, int64_t Address, int64_t Length) override
    {
        std::memcpy(pBuffer, m_bytes.data() + Address, static_cast<size_t>(Length));
    }
    void Write(const void* pBuffer, int64_t Address, int64_t Length) override
    {
        std::memcpy(m_bytes.data() + Address, pBuffer, static_cast<size_t>(Length));
    }
    template <class T>
    void Poke(int64_t address, T value)
    {
        std::memcpy(m_bytes.data() + address, &value, sizeof value);
    }

private:
    std::vector<uint8_t> m_bytes;
};

std::string ReadDocument(const char* name)
{
    std::ifstream file(std::string(TESSAL_TEST_DATA_DIR) + "/genicam/" + name, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// The port as the node map sees it: an IPort that the compiler cannot see through.
IPort& Opaque(IPort& port)
{
    IPort* pointer = &port;
    benchmark::DoNotOptimize(pointer);
    return *pointer;
}

// A map of one document with its port connected and the state registers set
// so that every feature is available, unlocked and inside its limits.
struct SFixture
{
    SFixture(const char* document, const char* portName)
    {
        const std::string text = ReadDocument(document);
        CNodeMapFactory factory(ContentType_Xml, text.data(), text.size(), CacheUsage_Ignore, false);
        ref = factory.CreateNodeMap(lock, "Device", true);
        if (!ref._Connect(&port, portName))
            throw std::runtime_error("no port in the benchmark document");
    }
    CLock lock;
    CMemoryPort port;
    CNodeMapRef ref;
};

SFixture& Gate()
{
    static SFixture fixture("gate.xml", "EnablePort");
    fixture.port.Poke<uint64_t>(0x8, 1);
    return fixture;
}

SFixture& SignedInteger()
{
    static SFixture fixture("signed_integer.xml", "Device");
    fixture.port.Poke<int64_t>(0x8, -1000);
    fixture.port.Poke<int64_t>(0x10, 1000);
    fixture.port.Poke<int64_t>(0x18, 1);
    return fixture;
}

SFixture& SharedPort()
{
    static SFixture fixture("shared_port.xml", "Params");
    fixture.port.Poke<double>(0x8, 1000.0);
    fixture.port.Poke<double>(0x10, 0.0);
    fixture.port.Poke<uint64_t>(0x18, 1);
    return fixture;
}

void BooleanReadTessal(benchmark::State& state)
{
    CBooleanPtr feature = Gate().ref._GetNode("Enable");
    for (auto _ : state)
        benchmark::DoNotOptimize(feature->GetValue());
}

void BooleanReadPort(benchmark::State& state)
{
    IPort& port = Opaque(Gate().port);
    for (auto _ : state)
    {
        uint64_t value = 0;
        port.Read(&value, 0x0, sizeof value);
        benchmark::DoNotOptimize(value != 0);
    }
}

void BooleanWriteTessal(benchmark::State& state)
{
    CBooleanPtr feature = Gate().ref._GetNode("Enable");
    bool value = false;
    for (auto _ : state)
    {
        value = !value;
        feature->SetValue(value);
    }
}

void BooleanWritePort(benchmark::State& state)
{
    IPort& port = Opaque(Gate().port);
    uint64_t value = 0;
    for (auto _ : state)
    {
        value ^= 1;
        port.Write(&value, 0x0, sizeof value);
        benchmark::ClobberMemory();
    }
}

void IntegerReadTessal(benchmark::State& state)
{
    CIntegerPtr feature = SignedInteger().ref._GetNode("Offset");
    for (auto _ : state)
        benchmark::DoNotOptimize(feature->GetValue());
}

void IntegerReadPort(benchmark::State& state)
{
    IPort& port = Opaque(SignedInteger().port);
    for (auto _ : state)
    {
        int64_t value = 0;
        port.Read(&value, 0x0, sizeof value);
        benchmark::DoNotOptimize(value);
    }
}

void IntegerWriteTessal(benchmark::State& state)
{
    CIntegerPtr feature = SignedInteger().ref._GetNode("Offset");
    int64_t value = 0;
    for (auto _ : state)
    {
        value = value == 7 ? -7 : 7;
        feature->SetValue(value);
    }
}

void IntegerWritePort(benchmark::State& state)
{
    IPort& port = Opaque(SignedInteger().port);
    int64_t value = 0;
    for (auto _ : state)
    {
        value = value == 7 ? -7 : 7;
        port.Write(&value, 0x0, sizeof value);
        benchmark::ClobberMemory();
    }
}

void FloatReadTessal(benchmark::State& state)
{
    CFloatPtr feature = SharedPort().ref._GetNode("Fps");
    for (auto _ : state)
        benchmark::DoNotOptimize(feature->GetValue());
}

void FloatReadPort(benchmark::State& state)
{
    IPort& port = Opaque(SharedPort().port);
    for (auto _ : state)
    {
        double value = 0;
        port.Read(&value, 0x0, sizeof value);
        benchmark::DoNotOptimize(value);
    }
}

void FloatWriteTessal(benchmark::State& state)
{
    CFloatPtr feature = SharedPort().ref._GetNode("Fps");
    double value = 0;
    for (auto _ : state)
    {
        value = value == 25.0 ? 30.0 : 25.0;
        feature->SetValue(value);
    }
}

void FloatWritePort(benchmark::State& state)
{
    IPort& port = Opaque(SharedPort().port);
    double value = 0;
    for (auto _ : state)
    {
        value = value == 25.0 ? 30.0 : 25.0;
        port.Write(&value, 0x0, sizeof value);
        benchmark::ClobberMemory();
    }
}

BENCHMARK(BooleanReadTessal)->Name("NodeMap/BooleanRead/tessal");
BENCHMARK(BooleanReadPort)->Name("NodeMap/BooleanRead/port");
BENCHMARK(BooleanWriteTessal)->Name("NodeMap/BooleanWrite/tessal");
BENCHMARK(BooleanWritePort)->Name("NodeMap/BooleanWrite/port");
BENCHMARK(IntegerReadTessal)->Name("NodeMap/IntegerRead/tessal");
BENCHMARK(IntegerReadPort)->Name("NodeMap/IntegerRead/port");
BENCHMARK(IntegerWriteTessal)->Name("NodeMap/IntegerWrite/tessal");
BENCHMARK(IntegerWritePort)->Name("NodeMap/IntegerWrite/port");
BENCHMARK(FloatReadTessal)->Name("NodeMap/FloatRead/tessal");
BENCHMARK(FloatReadPort)->Name("NodeMap/FloatRead/port");
BENCHMARK(FloatWriteTessal)->Name("NodeMap/FloatWrite/tessal");
BENCHMARK(FloatWritePort)->Name("NodeMap/FloatWrite/port");

} // namespace
