#include "node_test_support.h"

#include <TarvikBase/PixelTypeMapper.h>
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
    TestedNode decompressor{"Decompressor"};

    Core::ValueMap run(Core::ValueMap inputs) { return decompressor.run(std::move(inputs)); }

    GenApi::CBooleanPtr fixImage() { return tessalNodeMap(*decompressor.node)->GetNode("FixImage"); }

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

} // namespace

// Without a grab result nothing comes out; the error of one goes on, unrepaired.
TEST_F(DecompressorTest, GivesNothingForNoGrabResultAndHandsItsErrorOnWithoutALogLine)
{
    fixImage()->SetValue(true);
    LogCapture log;
    for (const Core::ValueMap& inputs : {Core::ValueMap{}, Core::ValueMap{{"GrabResult", integer(3)}}})
        EXPECT_TRUE(run(inputs).empty());
    const auto error = std::make_shared<Core::InvalidValueError>("lost on the wire", Utils::DateTime::now());
    const auto outputs = run({{"GrabResult", Utils::Variant(GrabResult(error))}});
    EXPECT_EQ(outputs.at("Image").getTypeInfo(), Utils::TypeInfo::get<Core::TarvikImage>(true));
    EXPECT_EQ(image(outputs)->getError(false), error);
    EXPECT_TRUE(log.entries().empty());
}

namespace
{

// The inputs beside the grab result.
struct Hints
{
    std::optional<int64_t> grabber = std::nullopt;
    std::optional<int64_t> camera = std::nullopt;
    std::optional<Utils::Variant> format = std::nullopt;
    std::optional<Utils::Variant> width = std::nullopt;
    std::optional<Utils::Variant> height = std::nullopt;
    std::optional<Utils::Variant> descriptor = std::nullopt;
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
          std::pair{"RepairHintHeight", &hints.height},
          std::pair{"CompressionDescriptor", &hints.descriptor}})
        if (*value)
            inputs[pin] = **value;
    return inputs;
}

// "<format> <width>x<height>[+<padding>] took <n>[ in place]": n leading bytes are those of
// `buffer`, all after them zero; "in place" when the image is the buffer itself.
std::string describe(const Core::IImage& image, const Core::IBuffer& buffer)
{
    const std::vector<uint8_t> bytes = bytesOf(image);
    const auto* const source = static_cast<const uint8_t*>(buffer.getData());
    const size_t limit = std::min(bytes.size(), buffer.getSize());
    const size_t taken = std::mismatch(bytes.begin(), bytes.begin() + limit, source).first - bytes.begin();
    const bool zeroTail = std::all_of(bytes.begin() + taken, bytes.end(), [](uint8_t b) { return b == 0; });
    const size_t paddingX = image.getImageData().paddingX;
    return std::string(Tarvik::CPixelTypeMapper::GetNameByTarvikPixelType(image.getPixelType())) + " " +
           std::to_string(image.getWidth()) + "x" + std::to_string(image.getHeight()) +
           (paddingX ? "+" + std::to_string(paddingX) : "") + " took " + std::to_string(taken) +
           (zeroTail ? "" : " and more") + (image.getImageData().data == buffer.getData() ? " in place" : "");
}

} // namespace

// A healthy frame is adopted in place once its size is checked; a broken one is
// repaired from its hints into a new image. Each refusal is logged once.
TEST_F(DecompressorTest, AdoptsAHealthyFrameAndRepairsABrokenOneFromItsHints)
{
    using namespace Tarvik;
    const char* const padding = "Grab result's buffer is too small for the rows and their padding.";
    const char* const noBuffer = "Grab result has no buffer.";
    const GrabResultDescription mono8{false, PixelType_Mono8, 40, 40, 0, 0};
    const GrabResultDescription unknown{false, PixelType_Undefined, 40, 40, 0, 0};
    const GrabResultDescription noWidth{false, PixelType_Mono8, 0, 40, 0, 0};
    const char* const noDescriptor = "Grab result is compressed, but no compression descriptor was provided.";
    CImageCompressor compressor;
    const Utils::Variant descriptor{CompressionDescriptor(compressor.GetCompressionDescriptor())};
    const std::vector<uint8_t> empty = compressor.CompressImage(nullptr, 0, PixelType_Mono8, 0, 4, 0);
    const std::vector<uint8_t> pixels = counting(40 * 30);
    const std::vector<uint8_t> good =
        compressor.CompressImage(pixels.data(), pixels.size(), PixelType_Mono8, 40, 30, 0);
    const auto damaged = [&](size_t offset, uint8_t value)
    {
        std::vector<uint8_t> frame = good;
        frame[offset] = value;
        return frame;
    };
    const GrabResultDescription compressed{true, PixelType_Mono8, 40, 30, 0, good.size()};
    struct Case
    {
        const char* what;
        GrabResultDescription frame;
        std::optional<std::vector<uint8_t>> bytes;
        Hints hints;
        std::string result;
    };
    const Case cases[] = {
        {"healthy",
         {true, PixelType_Mono12p, 10, 10, 0, 150},
         counting(150),
         {},
         "Mono12p 10x10 took 150 in place"},
        {"short payload", {true, PixelType_Mono12p, 10, 10, 0, 149}, counting(150), {}, implausible},
        // 300 bits; each row of the image starts on a byte, so the buffer holds 39.
        {"rows start on bytes",
         {true, PixelType_Mono10p, 10, 3, 0, 38},
         counting(39),
         {},
         "Mono10p 10x3 took 39 in place"},
        {"short payload of rows", {true, PixelType_Mono10p, 10, 3, 0, 37}, counting(39), {}, implausible},
        {"no width", {true, PixelType_Mono8, 0, 5, 0, 0}, counting(1), {}, "Mono8 0x5 took 0 in place"},
        {"short buffer", {true, PixelType_Mono8, 10, 10, 0, 100000}, counting(99), {}, implausible},
        // The check leaves padding out; the buffer must still hold it.
        {"no room for padding", {true, PixelType_Mono8, 4, 2, 2, 8}, counting(8), {}, padding},
        {"padded", {true, PixelType_Mono8, 4, 2, 2, 8}, counting(12), {}, "Mono8 4x2+2 took 12 in place"},
        {"no buffer", {true, PixelType_Mono8, 4, 4, 0, 16}, std::nullopt, {.camera = 16}, noBuffer},
        {"no buffer to repair",
         {false, PixelType_Mono8, 4, 4, 0, 16},
         std::nullopt,
         {.camera = 16},
         noBuffer},
        {"camera only", mono8, counting(1600), {.camera = 1000}, "Mono8 40x40 took 1000"},
        {"grabber beats camera",
         mono8,
         counting(1600),
         {.grabber = 1200, .camera = 1000},
         "Mono8 40x40 took 1200"},
        {"hint above the buffer takes the buffer",
         mono8,
         counting(1600),
         {.grabber = 5000},
         "Mono8 40x40 took 1600"},
        {"both zero", mono8, counting(1600), {.grabber = 0, .camera = 0}, notConclusive},
        {"no payload pins", mono8, counting(1600), {}, notConclusive},
        {"negative payload", mono8, counting(1600), {.camera = -5}, notConclusive},
        {"format hints of a wrong type go unread",
         mono8,
         counting(1600),
         {.camera = 1600, .format = integer(1), .width = text("x"), .height = Utils::Variant()},
         "Mono8 40x40 took 1600"},
        {"two of three format hints",
         unknown,
         counting(1600),
         {.camera = 1600, .format = text("Mono8"), .width = integer(40)},
         notConclusive},
        {"width 0 takes all three hints",
         noWidth,
         counting(1600),
         {.camera = 1600, .format = text("Mono16"), .width = integer(20), .height = integer(30)},
         "Mono16 20x30 took 1200"},
        {"hints give a whole new format",
         unknown,
         counting(1600),
         {.camera = 1600, .format = text("Mono8"), .width = integer(640), .height = integer(480)},
         "Mono8 640x480 took 1600"},
        {"the default pixel format text",
         unknown,
         counting(1600),
         {.camera = 1600, .format = text("Undefined"), .width = integer(40), .height = integer(40)},
         notConclusive},
        // Compression data without an image in the frame is handed on; a failed grab is
        // repaired from its compressed bytes as they are.
        {"frame without an image",
         {true, PixelType_Mono8, 8, 4, 0, empty.size()},
         empty,
         {},
         "Mono8 8x4 took 32 in place"},
        {"compressed frame of a failed grab",
         {false, PixelType_Mono8, 40, 30, 0, 1200},
         good,
         {.camera = 1200, .descriptor = descriptor},
         "Mono8 40x30 took " + std::to_string(std::min<size_t>(1200, good.size()))},
        {"no descriptor", compressed, good, {}, noDescriptor},
        {"descriptor of another type", compressed, good, {.descriptor = integer(1)}, noDescriptor},
        {"bad status before a missing descriptor", compressed, damaged(6, 1), {}, noDescriptor},
        {"bad status",
         compressed,
         damaged(6, 1),
         {.descriptor = descriptor},
         "Grab result is compressed, but compression status is not ok."},
    };
    fixImage()->SetValue(true);
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.what);
        const auto buffer = c.bytes ? bufferOf(*c.bytes) : nullptr;
        Core::ValueMap inputs = inputsOf(c.hints);
        inputs["GrabResult"] = grabVariant(c.frame, buffer);
        LogCapture log;
        const auto outputs = run(inputs);
        const std::string failure = failureOf(outputs);
        const auto result = image(outputs); // read through const: no copy on access
        EXPECT_EQ(failure.empty() ? describe(*result, *buffer) : failure, c.result);
        if (!failure.empty())
            decompressor.expectOneCheckLine(log, failure);
    }
    // A hint that is read must be of its pin's type; the failure is then the value's, not the hints'.
    const auto outputs = run({{"GrabResult", grabVariant(mono8, bufferOf(counting(1600)))},
                              {"RepairHintPayloadSizeCamera", text("1600")}});
    EXPECT_EQ(failureOf(outputs), "Could not cast variant data to requested type.");

    // A refusal of the frame format itself ends as the value's failure, without a log line.
    LogCapture log;
    const std::vector<uint8_t> badChecksum =
        damaged(good.size() - 3, static_cast<uint8_t>(good[good.size() - 3] ^ 1));
    const std::string checksum =
        failureOf(run({{"GrabResult", grabVariant(compressed, bufferOf(badChecksum))},
                       {"CompressionDescriptor", descriptor}}));
    EXPECT_NE(checksum.find("checksum"), std::string::npos) << checksum;
    EXPECT_TRUE(log.entries().empty());
}

TEST_F(DecompressorTest, FixImageFollowsTheNodeMapAndTheSettings)
{
    const Core::ValueMap broken{
        {"GrabResult", grabVariant({false, Tarvik::PixelType_Mono8, 2, 2, 0, 4}, bufferOf(counting(4)))},
        {"RepairHintPayloadSizeCamera", integer(4)}};
    const char* const refused = "Grab result is broken but fix image is set to false.";
    {
        LogCapture log;
        EXPECT_EQ(failureOf(run(broken)), refused);
        decompressor.expectOneCheckLine(log, refused);
    }
    fixImage()->SetValue(true);
    EXPECT_EQ(failureOf(run(broken)), "");
    decompressor.load([](Core::MemorySettings& settings) { settings.setBool("FixImage", false); });
    EXPECT_EQ(failureOf(run(broken)), refused);
}

TEST_F(DecompressorTest, DecompressesACompressedFrameBitExact)
{
    const struct
    {
        EPixelType type;
        uint32_t width;
        uint32_t height;
        size_t paddingX;
    } formats[] = {
        {Tarvik::PixelType_Mono8, 64, 48, 0},
        {Tarvik::PixelType_Mono12, 50, 40, 0},
        {Tarvik::PixelType_BayerRG12p, 66, 30, 0},
        {Tarvik::PixelType_RGB8, 33, 21, 3},
    };
    Tarvik::CImageCompressor compressor(1, true, 1000);
    const Utils::Variant descriptor{CompressionDescriptor(compressor.GetCompressionDescriptor())};
    for (const auto& f : formats)
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
