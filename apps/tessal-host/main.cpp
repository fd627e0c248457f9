// tessal-host: loads the package through its exports, as the viewer does, and
// runs its nodes.
//
//   tessal-host demo [--package PATH]   the main job on the embedded default
//
// The package is looked for beside the host (../lib), unless --package or the
// environment variable TESSAL_PACKAGE names it.
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/core/MemorySettings.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

using namespace Tarvik::DataProcessing;

namespace
{

std::string defaultPackagePath()
{
    if (const char* fromEnvironment = std::getenv("TESSAL_PACKAGE"))
        return fromEnvironment;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    return (self.parent_path().parent_path() / "lib" / "libTarvikViewerTessalPackage.so").string();
}

void printModules(const std::string& manifestText)
{
    const nlohmann::ordered_json manifest = nlohmann::ordered_json::parse(manifestText);
    std::printf("Manifest: version %s by %s, %zu modules\n", manifest["Version"].get<std::string>().c_str(),
                manifest["Vendor"].get<std::string>().c_str(), manifest["Modules"].size());
    for (const auto& module : manifest["Modules"])
        std::printf("  %-20s %s  %s\n", module["Name"].get<std::string>().c_str(),
                    module["Uuid"].get<std::string>().c_str(),
                    module["DisplayName"].get<std::string>().c_str());
}

std::string describe(const Core::ValueMap& outputs)
{
    const auto found = outputs.find("GenericOutput");
    if (found == outputs.end())
        return "nothing";
    const auto integer = found->second.get<Utils::COWPtr<Core::IInteger>>(false);
    return integer.isValid() ? "GenericOutput = " + std::to_string(integer->getValue())
                             : "GenericOutput (empty)";
}

void runGate(const PackageLoader& package)
{
    std::printf("Gate: created through create_Gate\n");
    const std::shared_ptr<Core::INode> gate = package.createNode("Gate");
    auto settings = std::make_shared<Core::MemorySettings>();
    const auto update = std::shared_ptr<Core::IGraphUpdate>();
    int64_t frame = 0;
    for (bool enable : {false, true})
    {
        settings->setBool("Enable", enable);
        gate->load(settings);
        for (int i = 0; i < 3; ++i, ++frame)
        {
            const Utils::Variant input{Core::Integer(frame, nullptr)};
            const Core::UpdateOutputs outputs = gate->run(update, {{"GenericInput", input}});
            std::printf("  Enable=%-5s GenericInput = %lld -> %s\n", enable ? "true" : "false",
                        static_cast<long long>(frame), describe(outputs.begin()->second).c_str());
        }
    }
    std::printf("Gate: destroyed through destroy_Gate\n");
}

// A small Bayer frame: a red field on the left half, a blue one on the right.
Utils::Variant syntheticBayerFrame(uint32_t width, uint32_t height)
{
    std::vector<uint8_t> pixels(size_t{width} * height);
    for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x)
        {
            const bool redSite = y % 2 == 0 && x % 2 == 0;
            const bool blueSite = y % 2 == 1 && x % 2 == 1;
            const bool leftHalf = x < width / 2;
            pixels[size_t{y} * width + x] = (leftHalf && redSite) || (!leftHalf && blueSite) ? 200 : 20;
        }
    Utils::Variant frame;
    frame.setData(Utils::COWPtr<Core::IImage>(new Core::Image(
        pixels.data(), pixels.size(), Tarvik::PixelType_BayerRG8, width, height, 0, 0, nullptr, nullptr)));
    return frame;
}

void runConverter(const PackageLoader& package)
{
    std::printf("Converter: created through create_Converter\n");
    const std::shared_ptr<Core::INode> converter = package.createNode("Converter");
    const uint32_t width = 64;
    const uint32_t height = 48;
    const Core::UpdateOutputs outputs =
        converter->run(nullptr, {{"Image", syntheticBayerFrame(width, height)}});
    const auto converted =
        outputs.begin()->second.at("ImageConverted").get<Utils::COWPtr<Core::IImage>>(true);
    if (converted->hasError(false))
    {
        std::printf("  ImageConverted carries an error: %s\n",
                    converted->getError(false)->getDescription().c_str());
        return;
    }
    const auto* const bgra = static_cast<const uint8_t*>(converted->getImageData().data);
    const size_t stride = size_t{width} * 4 + converted->getImageData().paddingX;
    for (const uint32_t x : {width / 4, width * 3 / 4})
    {
        const uint8_t* const pixel = bgra + size_t{height / 2} * stride + size_t{x} * 4;
        std::printf("  BayerRG8 %ux%u -> pixel type 0x%08X, pixel (%u,%u) B=%u G=%u R=%u A=%u\n", width,
                    height, static_cast<unsigned>(converted->getPixelType()), x, height / 2, pixel[0],
                    pixel[1], pixel[2], pixel[3]);
    }
    std::printf("Converter: destroyed through destroy_Converter\n");
}

int demo(const std::string& packagePath)
{
    const PackageLoader package(packagePath);
    std::printf("Package: %s (interface version %d)\n", packagePath.c_str(), package.interfaceVersion());
    printModules(package.manifest());
    runGate(package);
    runConverter(package);
    return 0;
}

int usage()
{
    std::fprintf(stderr, "usage: tessal-host demo [--package PATH]\n");
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.empty() || arguments[0] != "demo")
        return usage();
    std::string packagePath = defaultPackagePath();
    for (size_t i = 1; i < arguments.size(); ++i)
    {
        if (arguments[i] == "--package" && i + 1 < arguments.size())
            packagePath = arguments[++i];
        else
            return usage();
    }
    try
    {
        return demo(packagePath);
    }
    catch (const GenICam::GenericException& e)
    {
        std::fprintf(stderr, "tessal-host: %s\n", e.GetDescription());
    }
    catch (const std::exception& e)
    {
        std::fprintf(stderr, "tessal-host: %s\n", e.what());
    }
    return 1;
}
