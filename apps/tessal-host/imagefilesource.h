// A frame source that plays image files: one file, or every PNG and raw file of
// a folder in the order of their names. It repeats the sequence for as many
// frames as the run asks.
//
// A ".png" file is read with libpng (see pngreader.h for the formats); any
// other file is a raw frame of the pixel format, width, height and line padding
// that the settings give, and its bytes become the frame without a copy. It
// gives each frame as a camera would: "GrabResult" with the hints a camera's
// features give ("PixelFormat", "Width", "Height", "PayloadSize"), and "Image".
//
// A file that cannot be read (a corrupt or truncated PNG, a raw file of the
// wrong size) gives an error value naming the file on every output in place of
// its frame, and the sequence goes on.
//
// Not thread-safe: the graph's thread runs it.
#pragma once

#include "hostnode.h"

#include <TarvikBase/PixelType.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct ImageFileSettings
{
    // A file, or a folder of files.
    std::string path;
    // The layout of raw files.
    Tarvik::EPixelType rawPixelType = Tarvik::PixelType_Undefined;
    uint32_t rawWidth = 0;
    uint32_t rawHeight = 0;
    // Bytes at the end of each line.
    size_t rawPaddingX = 0;
};

class ImageFileSource : public HostNode<ImageFileSource>
{
public:
    // Raises SourceError when the path is missing or holds no files, and
    // std::invalid_argument when there are raw files but no layout for them.
    ImageFileSource(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool,
                    const ImageFileSettings& settings);
    ~ImageFileSource() override;

    Tarvik::DataProcessing::Core::UpdateOutputs
    run(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
        Tarvik::DataProcessing::Core::ValueMap inputs) override;

    const std::vector<std::filesystem::path>& files() const { return m_files; }

private:
    struct Frame;
    Frame readPngFile(const std::filesystem::path& file);
    Frame readRawFile(const std::filesystem::path& file);

    ImageFileSettings m_settings;
    std::vector<std::filesystem::path> m_files;
    uint64_t m_nextFrame = 0;
};
