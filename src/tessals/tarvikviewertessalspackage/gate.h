// Gate: passes a generic value from "GenericInput" to "GenericOutput" while the
// parameter "Enable" is true, and nothing while it is false. "Enable" is also
// the feature of that name under "Root" in the node map "@Tessal".
//
// Thread-safe: "Enable" is guarded by the node's lock, which the node map
// shares; run() holds it only to read the parameter.
#pragma once

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>

#include <memory>

namespace TarvikViewerTessalPackage
{

namespace Detail
{
struct GenericPins;
}

class Gate : public Tarvik::DataProcessing::Core::AdvancedNode,
             public Tarvik::DataProcessing::Core::INodeMapContainer
{
public:
    explicit Gate(const std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>& resourcePool);
    ~Gate() override;

    Tarvik::DataProcessing::Utils::TypeInfo getTypeInfo(bool mustExist) const override;
    const void* getRawPointer() const override;
    void* getRawPointer() override;
    bool isSynchronous() const override;

    Tarvik::DataProcessing::Core::UpdateOutputs
    run(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update,
        Tarvik::DataProcessing::Core::ValueMap inputs) override;

    void load(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>& settings) override;
    void save(const std::shared_ptr<Tarvik::DataProcessing::Core::ISettings>& settings) override;

    std::vector<std::pair<GenICam::gcstring, GenApi::INodeMap*>> getNodeMaps() override;
    Tarvik::DataProcessing::Utils::ISignal<void()>& getNodeMapsChangedSignal() override;

    bool getEnable() const;
    // Tells the node map's observer of "Enable" once per real change.
    void setEnable(bool enable);

protected:
    void onInputTypeConfigured(const GenICam::gcstring& pin,
                               const Tarvik::DataProcessing::Utils::TypeInfo& type) override;
    void onInputTypeUnconfigured(const GenICam::gcstring& pin) override;

private:
    friend struct Detail::GenericPins;

    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace TarvikViewerTessalPackage
