#include "check_line.h"
#include "log_capture.h"
#include "node_test_support.h"

#include <TarvikBase/PixelTypeMapper.h>
#include <TarvikDataProcessingCore/core/MemorySettings.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>
#include <TarvikUtility/ImageCompressor.h>
#include <TarvikViewerDataTypes2/CompressionDescriptor.h>
#include <TarvikViewerDataTypes2/GrabResult.h>

#include <GenApi/GenApi.h>

#include <optional>

using namespace NodeTestSupport;
using Tarvik::EPixelType;

namespace
{

const char* const prefix = "Grab result could not be decompressed/repaired. Reason: ";
const char* const notConclusive = "Repair hints are not conclusive.";
const char* const implausible = "Grab result reports grab succeeded, but plausibility check failed.";

// Bytes 0, 1, 2, ... so that a copy shows which bytes it took.
std::vector<uint8_t> counting(size_t size)
{
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<uint8_t>(i * 7 + i / 251);
    return bytes;
}

// A buffer of exactly the given bytes, so that the sanitizers see a read past it.
std::shared_ptr<Core::IBuffer> bufferOf(const std::vector<uint8_t>& bytes)
{
    auto buffer = std::make_shared<Core::AlignedBufferProvider>()->allocate(bytes.size());
    if (!bytes.empty())
        std::memcpy(buffer->getData(), bytes.data(), bytes.size());
    return buffer;
}

Utils::Variant grabVariant(const GrabResultDescription& description, std::shared_ptr<Core::IBuffer> buffer)
{
    return Utils::Variant(GrabResult(description, std::move(buffer)));
}

Utils::Variant integer(int64_t value)
{
    return Utils::Variant(Core::Integer(value, nullptr));
}

Utils::Variant text(const char* value)
{
    return Utils::Variant(Core::String(value, nullptr));
}

class DecompressorTest : public ::testing::Test
{
protected:
    PackageLoader package{builtPackagePath()};
    std::shared_ptr<Core::INode> node = package.createNode("Decompressor");
    std::shared_ptr<Core::IGraphUpdate> update = std::make_shared<TestUpdate>();

    Core::ValueMap run(Core::ValueMap inputs) { return node->run(update, std::move(inputs)).at(update); }

    GenApi::INodeMap* nodeMap() { return nodeMapContainer(*node)->getNodeMaps().at(0).second; }

    void setFixImage(bool value) { GenApi::CBooleanPtr(nodeMap()->GetNode("FixImage"))->SetValue(value); }

    static Utils::COWPtr<Core::IImage> image(const Core::ValueMap& outputs)
    {
        EXPECT_EQ(outputs.size(), 1u);
        return outputs.at("Image").get<Utils::COWPtr<Core::IImage>>(true);
    }

    // The failure text after the prefix, or "" for a good image.
    static std::string failureOf(const Core::ValueMap& outputs)
    {
        const auto result = image(outputs);
        if (!result->hasError(false))
            return "";
        EXPECT_EQ(outputs.at("Image").getTypeInfo(), Utils::TypeInfo::get<Core::TarvikImage>(true));
        const std::string description = result->getError(false)->getDescription().str();
        EXPECT_EQ(description.rfind(prefix, 0), 0u) << description;
        return description.substr(std::min(description.size(), std::strlen(prefix)));
    }
};

void expectOneCheckLine(const LogCapture& log, const std::string& message)
{
    ::expectOneCheckLine(log, "Decompressor", "src/tessals/tarvikviewertessalspackage/decompressor.cpp",
                         message);
}

} // namespace

TEST_F(DecompressorTest, WithoutAGrabResultGivesNoOutputAndNoLogLine)
{
    LogCapture log;
    for (const Core::ValueMap& inputs : {Core::ValueMap{}, Core::ValueMap{{"GrabResult", integer(3)}}})
        EXPECT_TRUE(run(inputs).empty());
    EXPECT_TRUE(log.entries().empty());
}

TEST_F(DecompressorTest, HandsTheErrorOfAGrabResultOnWithoutRepairOrLogLine)
{
    setFixImage(true);
    LogCapture log;
    const auto error = std::make_shared<Core::InvalidValueError>("lost on the wire", Utils::DateTime::now());
    const auto outputs = run({{"GrabResult", Utils::Variant(GrabResult(error))}});
    EXPECT_EQ(outputs.at("Image").getTypeInfo(), Utils::TypeInfo::get<Core::TarvikImage>(true));
    EXPECT_EQ(image(outputs)->getError(false), error);
    EXPECT_TRUE(log.entries().empty());
}

TEST_F(DecompressorTest, ChecksTheSizeOfAHealthyFrame)
{
    struct Case
    {
        EPixelType type;
        uint32_t width;
        uint32_t height;
        size_t paddingX;
        size_t payload;
        size_t bufferSize;
        const char* failure;
    };
    const char* const padding = "Grab result's buffer is too small for the rows and their padding.";
    const Case cases[] = {
        {Tarvik::PixelType_Mono12p, 10, 10, 0, 150, 150, ""},
        {Tarvik::PixelType_Mono12p, 10, 10, 0, 149, 150, implausible},
        // 300 bits; each row of the image starts on a byte, so the buffer holds 39.
        {Tarvik::PixelType_Mono10p, 10, 3, 0, 38, 39, ""},
        {Tarvik::PixelType_Mono10p, 10, 3, 0, 37, 39, implausible},
        {Tarvik::PixelType_Mono8, 0, 5, 0, 0, 1, ""},
        {Tarvik::PixelType_Mono8, 10, 10, 0, 100000, 99, implausible},
        // The check leaves padding out; the buffer must still hold it.
        {Tarvik::PixelType_Mono8, 4, 2, 2, 8, 8, padding},
        {Tarvik::PixelType_Mono8, 4, 2, 2, 8, 12, ""},
    };
    for (const Case& c : cases)
    {
        LogCapture log;
        const auto buffer = bufferOf(counting(c.bufferSize));
        const auto outputs = run(
            {{"GrabResult", grabVariant({true, c.type, c.width, c.height, c.paddingX, c.payload}, buffer)}});
        EXPECT_EQ(failureOf(outputs), c.failure) << c.width << "x" << c.height << " payload " << c.payload;
        if (*c.failure)
            expectOneCheckLine(log, c.failure);
        else // adopted without a copy
        {
            const auto adopted = image(outputs);
            EXPECT_EQ(adopted->getImageData().data, buffer->getData());
            EXPECT_EQ(adopted->getImageData().paddingX, c.paddingX);
        }
    }
}

TEST_F(DecompressorTest, RefusesAGrabResultWithoutABufferOnEveryPath)
{
    setFixImage(true);
    for (bool succeeded : {true, false})
    {
        LogCapture log;
        const auto outputs =
            run({{"GrabResult", grabVariant({succeeded, Tarvik::PixelType_Mono8, 4, 4, 0, 16}, nullptr)},
                 {"RepairHintPayloadSizeCamera", integer(16)}});
        EXPECT_EQ(failureOf(outputs), "Grab result has no buffer.");
        expectOneCheckLine(log, "Grab result has no buffer.");
    }
}

namespace
{

struct Hints
{
    std::optional<int64_t> grabber = std::nullopt;
    std::optional<int64_t> camera = std::nullopt;
    std::optional<Utils::Variant> format = std::nullopt;
    std::optional<Utils::Variant> width = std::nullopt;
    std::optional<Utils::Variant> height = std::nullopt;
};

Core::ValueMap inputsOf(const Hints& hints)
{
    Core::ValueMap inputs;
    if (hints.grabber)
        inputs["RepairHintPayloadSizeStreamGrabber"] = integer(*hints.grabber);
    if (hints.camera)
        inputs["RepairHintPayloadSizeCamera"] = integer(*hints.camera);
    for (const auto& [pin, value] :
         {std::pair{"RepairHintPixelFormat", &hints.format}, std::pair{"RepairHintWidth", &hints.width},
          std::pair{"RepairHintHeight", &hints.height}})
        if (*value)
            inputs[pin] = **value;
    return inputs;
}

// "<format> <width>x<height> took <n>": n leading bytes are those of `source`, all after them zero.
std::string describe(const Core::IImage& image, const std::vector<uint8_t>& source)
{
    const std::vector<uint8_t> bytes = bytesOf(image);
    const size_t limit = std::min(bytes.size(), source.size());
    const size_t taken =
        std::mismatch(bytes.begin(), bytes.begin() + limit, source.begin()).first - bytes.begin();
    const bool zeroTail = std::all_of(bytes.begin() + taken, bytes.end(), [](uint8_t b) { return b == 0; });
    return std::string(Tarvik::CPixelTypeMapper::GetNameByTarvikPixelType(image.getPixelType())) + " " +
           std::to_string(image.getWidth()) + "x" + std::to_string(image.getHeight()) + " took " +
           std::to_string(taken) + (zeroTail ? "" : " and more");
}

} // namespace

TEST_F(DecompressorTest, RepairsABrokenFrameFromItsHints)
{
    const GrabResultDescription mono8{false, Tarvik::PixelType_Mono8, 40, 40, 0, 0};
    const GrabResultDescription unknown{false, Tarvik::PixelType_Undefined, 40, 40, 0, 0};
    const GrabResultDescription noWidth{false, Tarvik::PixelType_Mono8, 0, 40, 0, 0};
    struct Case
    {
        const char* what;
        GrabResultDescription frame;
        Hints hints;
        std::string result;
    };
    const Case cases[] = {
        {"camera only", mono8, {.camera = 1000}, "Mono8 40x40 took 1000"},
        {"grabber beats camera", mono8, {.grabber = 1200, .camera = 1000}, "Mono8 40x40 took 1200"},
        {"hint above the buffer takes the buffer", mono8, {.grabber = 5000}, "Mono8 40x40 took 1600"},
        {"both zero", mono8, {.grabber = 0, .camera = 0}, notConclusive},
        {"no payload pins", mono8, {}, notConclusive},
        {"negative payload", mono8, {.camera = -5}, notConclusive},
        {"format hints of a wrong type go unread",
         mono8,
         {.camera = 1600, .format = integer(1), .width = text("x"), .height = Utils::Variant()},
         "Mono8 40x40 took 1600"},
        {"two of three format hints",
         unknown,
         {.camera = 1600, .format = text("Mono8"), .width = integer(40)},
         notConclusive},
        {"width 0 takes all three hints",
         noWidth,
         {.camera = 1600, .format = text("Mono16"), .width = integer(20), .height = integer(30)},
         "Mono16 20x30 took 1200"},
        {"hints give a whole new format",
         unknown,
         {.camera = 1600, .format = text("Mono8"), .width = integer(640), .height = integer(480)},
         "Mono8 640x480 took 1600"},
        {"the default pixel format text",
         unknown,
         {.camera = 1600, .format = text("Undefined"), .width = integer(40), .height = integer(40)},
         notConclusive},
    };
    setFixImage(true);
    const std::vector<uint8_t> bytes = counting(1600);
    for (const Case& c : cases)
    {
        Core::ValueMap inputs = inputsOf(c.hints);
        inputs["GrabResult"] = grabVariant(c.frame, bufferOf(bytes));
        LogCapture log;
        const auto outputs = run(inputs);
        const std::string failure = failureOf(outputs);
        EXPECT_EQ(failure.empty() ? describe(*image(outputs), bytes) : failure, c.result) << c.what;
        if (c.result == notConclusive)
            expectOneCheckLine(log, notConclusive);
    }
    // A hint that is read must be of its pin's type; the failure is then the value's, not the hints'.
    const auto outputs = run(
        {{"GrabResult", grabVariant(mono8, bufferOf(bytes))}, {"RepairHintPayloadSizeCamera", text("1600")}});
    EXPECT_EQ(failureOf(outputs), "Could not cast variant data to requested type.");
}

TEST_F(DecompressorTest, FixImageFollowsTheNodeMapAndTheSettings)
{
    const Core::ValueMap broken{
        {"GrabResult", grabVariant({false, Tarvik::PixelType_Mono8, 2, 2, 0, 4}, bufferOf(counting(4)))},
        {"RepairHintPayloadSizeCamera", integer(4)}};
    GenApi::CBooleanPtr fixImage = nodeMap()->GetNode("FixImage");
    EXPECT_EQ(fixImage->GetNode()->GetVisibility(), GenApi::Expert);
    EXPECT_FALSE(fixImage->GetValue());
    const char* const refused = "Grab result is broken but fix image is set to false.";
    {
        LogCapture log;
        EXPECT_EQ(failureOf(run(broken)), refused);
        expectOneCheckLine(log, refused);
    }
    setFixImage(true);
    EXPECT_EQ(failureOf(run(broken)), "");

    auto settings = std::make_shared<Core::MemorySettings>();
    node->save(settings);
    EXPECT_TRUE(settings->getBool("FixImage"));
    node->load(std::make_shared<Core::MemorySettings>());
    EXPECT_EQ(failureOf(run(broken)), "") << "a missing key leaves FixImage as it is";
    settings->setBool("FixImage", false);
    node->load(settings);
    EXPECT_FALSE(fixImage->GetValue());
    EXPECT_EQ(failureOf(run(broken)), refused);
}

namespace
{

struct CompressedFormat
{
    EPixelType type;
    uint32_t width;
    uint32_t height;
    size_t paddingX;
};

} // namespace

TEST_F(DecompressorTest, DecompressesACompressedFrameBitExact)
{
    const CompressedFormat formats[] = {
        {Tarvik::PixelType_Mono8, 64, 48, 0},
        {Tarvik::PixelType_Mono12, 50, 40, 0},
        {Tarvik::PixelType_BayerRG12p, 66, 30, 0},
        {Tarvik::PixelType_RGB8, 33, 21, 3},
    };
    Tarvik::CImageCompressor compressor(1, true, 1000);
    const Utils::Variant descriptor{CompressionDescriptor(compressor.GetCompressionDescriptor())};
    for (const CompressedFormat& f : formats)
    {
        const std::vector<uint8_t> pixels =
            counting(Tarvik::ComputeBufferSize(f.type, f.width, f.height, f.paddingX));
        const std::vector<uint8_t> frame =
            compressor.CompressImage(pixels.data(), pixels.size(), f.type, f.width, f.height, f.paddingX);
        const auto outputs =
            run({{"GrabResult",
                  grabVariant({true, f.type, f.width, f.height, f.paddingX, frame.size()}, bufferOf(frame))},
                 {"CompressionDescriptor", descriptor}});
        ASSERT_EQ(failureOf(outputs), "") << std::hex << f.type;
        const auto decompressed = image(outputs);
        EXPECT_EQ(decompressed->getPixelType(), f.type);
        EXPECT_EQ(decompressed->getWidth(), f.width);
        EXPECT_EQ(decompressed->getHeight(), f.height);
        EXPECT_EQ(decompressed->getImageData().paddingX, f.paddingX);
        EXPECT_EQ(bytesOf(*decompressed), pixels) << std::hex << f.type;
    }
}

TEST_F(DecompressorTest, RefusesDamagedOrMismatchedCompressedFrames)
{
    Tarvik::CImageCompressor compressor;
    const std::vector<uint8_t> pixels = counting(40 * 30);
    const std::vector<uint8_t> good =
        compressor.CompressImage(pixels.data(), pixels.size(), Tarvik::PixelType_Mono8, 40, 30, 0);
    const Utils::Variant descriptor{CompressionDescriptor(compressor.GetCompressionDescriptor())};
    auto damaged = [&](size_t offset, uint8_t value)
    {
        std::vector<uint8_t> frame = good;
        frame[offset] = value;
        return frame;
    };
    struct Case
    {
        const char* what;
        std::vector<uint8_t> frame;
        std::optional<Utils::Variant> descriptor;
        const char* failure;
        bool logged;
    };
    const char* const noDescriptor = "Grab result is compressed, but no compression descriptor was provided.";
    const char* const badStatus = "Grab result is compressed, but compression status is not ok.";
    const Case cases[] = {
        {"no descriptor", good, std::nullopt, noDescriptor, true},
        {"descriptor of another type", good, integer(1), noDescriptor, true},
        {"bad status before a missing descriptor", damaged(6, 1), std::nullopt, noDescriptor, true},
        {"bad status", damaged(6, 1), descriptor, badStatus, true},
        // A refusal of the frame format itself ends as the value's failure, without a log line.
        {"checksum", damaged(good.size() - 3, static_cast<uint8_t>(good[good.size() - 3] ^ 1)), descriptor,
         "checksum", false},
    };
    for (const Case& c : cases)
    {
        Core::ValueMap inputs{
            {"GrabResult",
             grabVariant({true, Tarvik::PixelType_Mono8, 40, 30, 0, c.frame.size()}, bufferOf(c.frame))}};
        if (c.descriptor)
            inputs["CompressionDescriptor"] = *c.descriptor;
        LogCapture log;
        const std::string failure = failureOf(run(inputs));
        SCOPED_TRACE(c.what);
        if (c.logged)
        {
            EXPECT_EQ(failure, c.failure);
            expectOneCheckLine(log, c.failure);
        }
        else
        {
            EXPECT_NE(failure.find(c.failure), std::string::npos) << failure;
            EXPECT_TRUE(log.entries().empty());
        }
    }
}

// Only an image in the frame of a good grab is decompressed: compression data
// without one is handed on, and a failed grab is repaired from its bytes as they are.
TEST_F(DecompressorTest, DecompressesOnlyAnImageOfAGoodGrab)
{
    Tarvik::CImageCompressor compressor;
    const auto empty = bufferOf(compressor.CompressImage(nullptr, 0, Tarvik::PixelType_Mono8, 0, 4, 0));
    const auto adopted = image(run(
        {{"GrabResult", grabVariant({true, Tarvik::PixelType_Mono8, 8, 4, 0, empty->getSize()}, empty)}}));
    ASSERT_FALSE(adopted->hasError(false));
    EXPECT_EQ(adopted->getImageData().data, empty->getData());

    const std::vector<uint8_t> frame =
        compressor.CompressImage(counting(64).data(), 64, Tarvik::PixelType_Mono8, 8, 8, 0);
    setFixImage(true);
    const auto outputs =
        run({{"GrabResult", grabVariant({false, Tarvik::PixelType_Mono8, 8, 8, 0, 64}, bufferOf(frame))},
             {"RepairHintPayloadSizeCamera", integer(64)},
             {"CompressionDescriptor",
              Utils::Variant(CompressionDescriptor(compressor.GetCompressionDescriptor()))}});
    ASSERT_EQ(failureOf(outputs), "");
    std::vector<uint8_t> expected(64, 0);
    std::copy_n(frame.begin(), std::min<size_t>(64, frame.size()), expected.begin());
    EXPECT_EQ(bytesOf(*image(outputs)), expected);
}
