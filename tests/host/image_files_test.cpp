// Image files as the host's frame source: PNG and raw frames come out pixel for
// pixel, a folder plays in the order of its names, and files that cannot be read
// give error values while the sequence goes on.
#include "host_command.h"
#include "package_graph.h"
#include "pngwriter.h"
#include "sourceerror.h"

#include <TarvikDataProcessingCore/core/IImage.h>
#include <TarvikDataProcessingCore/core/Image.h>

#include <zlib.h>

#include <fstream>

using namespace Tarvik::DataProcessing;

namespace
{

using ImagePtr = Utils::COWPtr<Core::IImage>;

// A frame whose every byte differs from its neighbours: a swapped byte order or
// a shifted row shows.
ImagePtr pattern(Tarvik::EPixelType type, uint32_t width, uint32_t height, size_t paddingX = 0)
{
    auto image =
        ImagePtr(new Core::Image(type, width, height, paddingX, std::shared_ptr<Core::IBufferProvider>(),
                                 std::make_shared<Threading::RecursiveMutex>()));
    auto* const bytes = static_cast<uint8_t*>(image->getImageData().data);
    for (size_t i = 0; i < image->getImageSize(); ++i)
        bytes[i] = static_cast<uint8_t>(i * 7 + i / 251);
    return image;
}

// The pixels of each line, without padding.
std::vector<uint8_t> pixelsOf(const Core::IImage& image)
{
    const auto data = image.getImageData();
    const size_t line = Tarvik::BitPerPixel(image.getPixelType()) / 8 * size_t{image.getWidth()};
    std::vector<uint8_t> pixels;
    for (uint32_t y = 0; y < image.getHeight(); ++y)
    {
        const auto* const row = static_cast<const uint8_t*>(data.data) + y * (line + data.paddingX);
        pixels.insert(pixels.end(), row, row + line);
    }
    return pixels;
}

class ImageFiles : public PackageGraph
{
protected:
    void SetUp() override { std::filesystem::create_directories(folder); }

    // Plays the folder for `frames` updates; keeps the image of each frame.
    void play(const nlohmann::json& settings, uint64_t frames)
    {
        const nlohmann::json graphJson = {
            {"nodes", {{{"name", "files"}, {"module", "ImageFiles"}, {"settings", settings}}}}};
        build(GraphDescription::parse(graphJson.dump(), "test"));
        run(frames, [this](uint64_t) { source.push_back(lastValue("files")); });
    }

    const std::filesystem::path folder = freshFolder("files");
    std::vector<ImagePtr> source;
};

} // namespace

TEST_F(ImageFiles, FramesComeOutPixelForPixelInTheOrderOfTheirNames)
{
    const std::vector<ImagePtr> written = {
        pattern(Tarvik::PixelType_Mono8, 13, 5),    pattern(Tarvik::PixelType_Mono16, 7, 3),
        pattern(Tarvik::PixelType_RGB8, 9, 4),      pattern(Tarvik::PixelType_RGBa8, 5, 6),
        pattern(Tarvik::PixelType_Mono8, 11, 3, 5),
    };
    for (size_t i = 0; i + 1 < written.size(); ++i)
        writePng(*written[i], (folder / ("frame-" + std::to_string(i) + ".png")).string());
    const auto raw = written.back()->getImageData();
    std::ofstream(folder / "frame-4.raw", std::ios::binary)
        .write(static_cast<const char*>(raw.data),
               static_cast<std::streamsize>(written.back()->getImageSize()));

    play({{"Path", folder.string()}, {"PixelFormat", "Mono8"}, {"Width", 11}, {"Height", 3}, {"PaddingX", 5}},
         written.size() + 1);
    ASSERT_EQ(source.size(), written.size() + 1);
    for (size_t i = 0; i < source.size(); ++i)
    {
        const Core::IImage& expected = *written[i % written.size()];
        ASSERT_FALSE(source[i]->hasError(false)) << source[i]->getError(false)->getDescription();
        EXPECT_EQ(source[i]->getPixelType(), expected.getPixelType()) << i;
        EXPECT_EQ(source[i]->getWidth(), expected.getWidth()) << i;
        EXPECT_EQ(pixelsOf(*source[i]), pixelsOf(expected)) << i;
    }
    // The raw frame is the file's bytes, padding included, without a copy of its own.
    EXPECT_EQ(source[4]->getImageData().paddingX, 5u);
}

TEST_F(ImageFiles, UnreadableFilesGiveErrorValuesAndTheSequenceGoesOn)
{
    writePng(*pattern(Tarvik::PixelType_Mono8, 64, 64), (folder / "0-good.png").string());
    std::ifstream in(folder / "0-good.png", std::ios::binary);
    std::string good((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::string corrupt = good;
    corrupt[good.size() / 2] = static_cast<char>(corrupt[good.size() / 2] ^ 0x5a);
    std::ofstream(folder / "1-truncated.png", std::ios::binary) << good.substr(0, good.size() / 2);
    std::ofstream(folder / "2-corrupt.png", std::ios::binary) << corrupt;
    std::ofstream(folder / "3-text.png", std::ios::binary) << "not a picture";
    std::ofstream(folder / "4-short.raw", std::ios::binary) << std::string(64 * 64 - 1, 'x');
    // A million pixels square in its header: refused before a terabyte is asked for.
    std::string huge = good;
    for (const size_t at : {16, 20})
        huge.replace(at, 4, std::string("\x00\x0f\x42\x40", 4));
    const uint32_t crc = crc32(0, reinterpret_cast<const Bytef*>(huge.data() + 12), 17);
    huge.replace(29, 4, {char(crc >> 24), char(crc >> 16), char(crc >> 8), char(crc)});
    std::ofstream(folder / "5-huge.png", std::ios::binary) << huge;

    play({{"Path", folder.string()}, {"PixelFormat", "Mono8"}, {"Width", 64}, {"Height", 64}}, 7);
    ASSERT_EQ(source.size(), 7u);
    EXPECT_FALSE(source[0]->hasError(false));
    EXPECT_FALSE(source[6]->hasError(false));
    const char* const reasons[] = {
        "is not a readable PNG: the file ends early (truncated)",
        "is not a readable PNG: ", "is not a readable PNG: Not a PNG file",
        "has 4095 bytes, a raw 64x64 Mono8 frame with 0 bytes of line padding has 4096",
        "is not a readable PNG: the file is too short for the size it declares (truncated)"};
    for (size_t i = 1; i <= 5; ++i)
    {
        ASSERT_TRUE(source[i]->hasError(false)) << i;
        EXPECT_THAT(source[i]->getError(false)->getDescription().c_str(),
                    testing::AllOf(testing::HasSubstr(reasons[i - 1]), testing::HasSubstr(folder.string())));
    }
    EXPECT_EQ(graph->statistics("files").errorCount(), 5u);
}

TEST_F(ImageFiles, MissingFilesAndRawFilesWithoutALayoutAreRefused)
{
    EXPECT_THROW(play({{"Path", (folder / "nothing-here").string()}}, 1), SourceError);
    EXPECT_THROW(play({{"Path", folder.string()}}, 1), SourceError);
    std::ofstream(folder / "frame.raw") << "raw";
    EXPECT_THROW(play({{"Path", folder.string()}}, 1), GraphFileError);
}
