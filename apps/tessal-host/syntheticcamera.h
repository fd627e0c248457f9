// The host's embedded frame source: a node without inputs that renders the
// synthetic scene on each update, frame after frame, in the pixel format it is
// set to, and hands it out as an image over a buffer of the framework's
// provider (nothing is copied on the way).
//
// Not thread-safe: the graph's thread runs it.
#pragma once

#include "syntheticscene.h"

#include <TarvikDataProcessingCore/core/AdvancedNode.h>

#include <memory>
#include <string>

struct SyntheticCameraSettings
{
    uint32_t width = 640;
    uint32_t height = 480;
    Tarvik::EPixelType pixelType = Tarvik::PixelType_BayerRG8;
};

class SyntheticCamera : public Tarvik::DataProcessing::Core::AdvancedNode
{
public:
    // Raises std::invalid_argument for settings the scene cannot render.
    SyntheticCamera(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool,
                    const SyntheticCameraSettings& settings);
    ~SyntheticCamera() override;

    Tarvik::DataProcessing::Utils::TypeInfo getTypeInfo(bool mustExist) const override;
    const void* getRawPointer() const override { return this; }
    void* getRawPointer() override { return this; }
    bool isSynchronous() const override { return true; }

    Tarvik::DataProcessing::Core::UpdateOutputs
    run(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
        Tarvik::DataProcessing::Core::ValueMap inputs) override;

    // The camera is set up by its graph file, not through settings.
    void load(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>&) override {}
    void save(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>&) override {}

    // The number the next frame will carry; frames count from 0.
    uint64_t nextFrame() const { return m_nextFrame; }
    const SyntheticScene& scene() const { return m_scene; }
    // How the camera delivered `frame`: "ok", "compressed" or "failed".
    std::string frameStatus(uint64_t frame) const;

private:
    SyntheticScene m_scene;
    uint64_t m_nextFrame = 0;
};
