#include "aravissource.h"

#include "camerafeatures.h"
#include "sourceerror.h"

#include <TarvikDataProcessingCore/core/Errors.h>
#include <TarvikDataProcessingCore/core/Image.h>
#include <TarvikDataProcessingCore/core/ScalarValues.h>

#include <TarvikViewerDataTypes2/GrabResult.h>

#include <TarvikBase/PixelTypeMapper.h>

#include <arv.h>

using namespace Tarvik::DataProcessing;

namespace
{

constexpr uint64_t unlimited = ~uint64_t{0};

std::shared_ptr<Threading::RecursiveMutex> newLock()
{
    return std::make_shared<Threading::RecursiveMutex>();
}

// Raises SourceError with Aravis' message when `error` is set, and frees it.
void check(GError* error, const std::string& doing)
{
    if (!error)
        return;
    const std::string message = doing + ": " + error->message;
    g_error_free(error);
    throw SourceError(message);
}

// Aravis pixel formats are the GenICam pixel format values, as the package's are.
Tarvik::EPixelType pixelTypeOf(ArvPixelFormat format)
{
    const auto type = static_cast<Tarvik::EPixelType>(format);
    return Tarvik::CPixelTypeMapper::GetNameByTarvikPixelType(type).empty() ? Tarvik::PixelType_Undefined
                                                                            : type;
}

const char* statusName(ArvBufferStatus status)
{
    switch (status)
    {
    case ARV_BUFFER_STATUS_SUCCESS:
        return "success";
    case ARV_BUFFER_STATUS_CLEARED:
        return "cleared";
    case ARV_BUFFER_STATUS_TIMEOUT:
        return "timeout";
    case ARV_BUFFER_STATUS_MISSING_PACKETS:
        return "missing packets";
    case ARV_BUFFER_STATUS_WRONG_PACKET_ID:
        return "wrong packet id";
    case ARV_BUFFER_STATUS_SIZE_MISMATCH:
        return "size mismatch";
    case ARV_BUFFER_STATUS_FILLING:
        return "filling";
    case ARV_BUFFER_STATUS_ABORTED:
        return "aborted";
    default:
        return "unknown";
    }
}

// An Aravis buffer adopted by the graph: it goes back to its stream when the
// last value that shares it is gone.
class StreamBuffer : public Core::IBuffer
{
public:
    StreamBuffer(ArvStream* stream, ArvBuffer* buffer)
        : m_stream(ARV_STREAM(g_object_ref(stream)))
        , m_buffer(buffer)
    {
        m_data = arv_buffer_get_data(buffer, &m_size);
    }
    ~StreamBuffer() override
    {
        arv_stream_push_buffer(m_stream, m_buffer);
        g_object_unref(m_stream);
    }
    StreamBuffer(const StreamBuffer&) = delete;
    StreamBuffer& operator=(const StreamBuffer&) = delete;

    void* getData() override { return const_cast<void*>(m_data); }
    const void* getData() const override { return m_data; }
    size_t getSize() const override { return m_size; }

private:
    ArvStream* m_stream;
    ArvBuffer* m_buffer;
    const void* m_data = nullptr;
    size_t m_size = 0;
};

} // namespace

struct AravisSource::Camera
{
    ~Camera()
    {
        stopAcquisition();
        if (stream)
            g_object_unref(stream);
        if (camera)
            g_object_unref(camera);
    }

    ArvDevice* device() const { return arv_camera_get_device(camera); }

    int64_t integer(const char* feature)
    {
        GError* error = nullptr;
        const int64_t value = arv_camera_get_integer(camera, feature, &error);
        check(error, std::string("cannot read \"") + feature + "\"");
        return value;
    }

    void stopAcquisition()
    {
        if (acquiring)
            arv_camera_stop_acquisition(camera, nullptr);
        acquiring = false;
    }

    // The camera's description of its frames, for the repair hints.
    void readHints()
    {
        GError* error = nullptr;
        // A format that the camera's own enumeration does not name reads as none.
        const char* const format = arv_camera_get_pixel_format_as_string(camera, &error);
        g_clear_error(&error);
        pixelFormat = Utils::Variant(Core::String(format ? format : "", newLock()));
        width = Utils::Variant(Core::Integer(integer("Width"), newLock()));
        height = Utils::Variant(Core::Integer(integer("Height"), newLock()));
        payloadSize = arv_camera_get_payload(camera, &error);
        check(error, "cannot read \"PayloadSize\"");
        payload = Utils::Variant(Core::Integer(static_cast<int64_t>(payloadSize), newLock()));
    }

    // A new stream with a full pool, or none once the camera has vanished.
    // Buffers of the old one that the graph still holds go back to it, and it
    // goes with the last of them.
    void openStream()
    {
        if (stream)
            g_object_unref(stream);
        stream = nullptr;
        GError* error = nullptr;
        stream = arv_camera_create_stream(camera, nullptr, nullptr, &error);
        check(error, "cannot open the camera's stream");
        const size_t bufferSize = settings.bufferSize ? settings.bufferSize : payloadSize;
        for (unsigned i = 0; i < (vanished ? 0 : settings.bufferCount); ++i)
            arv_stream_push_buffer(stream, arv_buffer_new(bufferSize, nullptr));
    }

    AravisSettings settings;
    ArvCamera* camera = nullptr;
    ArvStream* stream = nullptr;
    bool acquiring = false;
    bool vanished = false;
    uint64_t frames = 0;
    unsigned timeoutsInRow = 0;
    std::string lost;
    size_t payloadSize = 0;
    Utils::Variant pixelFormat;
    Utils::Variant width;
    Utils::Variant height;
    Utils::Variant payload;
};

AravisSource::AravisSource(const std::shared_ptr<Core::IResourcePool>& resourcePool,
                           const AravisSettings& settings)
    : HostNode(resourcePool)
    , m_camera(std::make_unique<Camera>())
{
    Camera& c = *m_camera;
    c.settings = settings;
    if (settings.camera.rfind("Fake", 0) == 0)
        arv_enable_interface("Fake");
    GError* error = nullptr;
    c.camera = arv_camera_new(settings.camera.empty() ? nullptr : settings.camera.c_str(), &error);
    check(error, "cannot open camera \"" + settings.camera + "\"");
    // Writes out of range or to features that cannot be written are refused, as a node map does.
    arv_device_set_range_check_policy(c.device(), ARV_RANGE_CHECK_POLICY_ENABLE);
    arv_device_set_access_check_policy(c.device(), ARV_ACCESS_CHECK_POLICY_ENABLE);
    if (settings.width)
        arv_camera_set_integer(c.camera, "Width", settings.width, &error);
    if (!error && settings.height)
        arv_camera_set_integer(c.camera, "Height", settings.height, &error);
    if (!error && !settings.pixelFormat.empty())
        arv_camera_set_pixel_format_from_string(c.camera, settings.pixelFormat.c_str(), &error);
    for (auto feature = settings.features.begin(); !error && feature != settings.features.end(); ++feature)
    {
        const char* const name = feature.key().c_str();
        if (feature->is_string())
            arv_camera_set_string(c.camera, name, feature->get<std::string>().c_str(), &error);
        else if (feature->is_boolean())
            arv_camera_set_boolean(c.camera, name, feature->get<bool>(), &error);
        else if (feature->is_number_integer())
            arv_camera_set_integer(c.camera, name, feature->get<int64_t>(), &error);
        else
            arv_camera_set_float(c.camera, name, feature->get<double>(), &error);
    }
    check(error, "cannot set up camera \"" + settings.camera + "\"");
    c.readHints();
    c.openStream();

    const auto integerType = Utils::TypeInfo::get<Core::IInteger>(true);
    createOutput("GrabResult", "The frame as the stream delivered it", Utils::TypeInfo::get<GrabResult>(true),
                 true, unlimited);
    createOutput("PixelFormat", "The camera's PixelFormat feature", Utils::TypeInfo::get<Core::IString>(true),
                 true, unlimited);
    createOutput("Width", "The camera's Width feature", integerType, true, unlimited);
    createOutput("Height", "The camera's Height feature", integerType, true, unlimited);
    createOutput("PayloadSize", "The camera's PayloadSize feature", integerType, true, unlimited);
    createOutput("StreamPayloadSize", "The bytes the stream received for the frame", integerType, true,
                 unlimited);
    createOutput("Image", "The successful frame as an image", Utils::TypeInfo::get<Core::IImage>(true), true,
                 unlimited);
}

AravisSource::~AravisSource()
{
    cleanup();
}

Core::UpdateOutputs AravisSource::run(const std::shared_ptr<Core::IGraphUpdate>& update, Core::ValueMap)
{
    Camera& c = *m_camera;
    const auto fail = [&](const std::string& text)
    {
        const auto error = std::make_shared<Core::InvalidValueError>(text.c_str(), Utils::DateTime::now());
        Utils::Variant image;
        image.setData(Utils::COWPtr<Core::IImage>(new Core::Image(error, newLock())));
        return Core::UpdateOutputs{{update,
                                    {{"GrabResult", Utils::Variant(GrabResult(error))},
                                     {"PixelFormat", c.pixelFormat},
                                     {"Width", c.width},
                                     {"Height", c.height},
                                     {"PayloadSize", c.payload},
                                     {"StreamPayloadSize", c.payload},
                                     {"Image", image}}}};
    };
    if (!c.lost.empty())
        return fail(c.lost);
    if (!c.acquiring && !c.vanished)
    {
        GError* error = nullptr;
        arv_camera_start_acquisition(c.camera, &error);
        if (error)
        {
            const std::string text = std::string("cannot start the acquisition: ") + error->message;
            g_error_free(error);
            return fail(text);
        }
        c.acquiring = true;
    }
    ArvBuffer* const popped = arv_stream_timeout_pop_buffer(c.stream, uint64_t{c.settings.timeoutMs} * 1000);
    if (!popped)
    {
        const std::string within = " within " + std::to_string(c.settings.timeoutMs) + " ms";
        if (++c.timeoutsInRow == c.settings.lostAfterTimeouts)
            c.lost = "camera \"" + c.settings.camera + "\" lost: " + std::to_string(c.timeoutsInRow) +
                     " frames in a row did not come" + within;
        return fail(c.lost.empty() ? "no frame from camera \"" + c.settings.camera + "\"" + within : c.lost);
    }
    c.timeoutsInRow = 0;
    const auto buffer = std::make_shared<StreamBuffer>(c.stream, popped);
    if (++c.frames == c.settings.vanishAfterFrames)
    {
        // Gone as with a pulled cable: no acquisition, and a stream that delivers nothing.
        c.stopAcquisition();
        c.vanished = true;
        c.openStream();
    }
    const Utils::Variant streamPayload =
        Utils::Variant(Core::Integer(static_cast<int64_t>(buffer->getSize()), newLock()));
    const auto outputs = [&](const GrabResultDescription& description, Utils::Variant image)
    {
        return Core::UpdateOutputs{{update,
                                    {{"GrabResult", Utils::Variant(GrabResult(description, buffer))},
                                     {"PixelFormat", c.pixelFormat},
                                     {"Width", c.width},
                                     {"Height", c.height},
                                     {"PayloadSize", c.payload},
                                     {"StreamPayloadSize", streamPayload},
                                     {"Image", std::move(image)}}}};
    };
    const auto failedImage = [&](const std::string& text)
    {
        Utils::Variant image;
        image.setData(Utils::COWPtr<Core::IImage>(new Core::Image(
            std::make_shared<Core::InvalidValueError>(text.c_str(), Utils::DateTime::now()), newLock())));
        return image;
    };

    const ArvBufferStatus status = arv_buffer_get_status(popped);
    if (status != ARV_BUFFER_STATUS_SUCCESS)
        // The bytes that arrived, without a description: only the hints can repair them.
        return outputs(
            {false, Tarvik::PixelType_Undefined, 0, 0, 0, 0},
            failedImage(std::string("the camera's buffer came with status \"") + statusName(status) + "\""));
    const ArvPixelFormat format = arv_buffer_get_image_pixel_format(popped);
    const Tarvik::EPixelType type = pixelTypeOf(format);
    if (type == Tarvik::PixelType_Undefined)
    {
        char hex[16];
        std::snprintf(hex, sizeof hex, "0x%08x", static_cast<unsigned>(format));
        return fail(std::string("the camera sent pixel format ") + hex + ", which the package does not know");
    }
    gint paddingX = 0;
    arv_buffer_get_image_padding(popped, &paddingX, nullptr);
    const GrabResultDescription description{true,
                                            type,
                                            static_cast<uint32_t>(arv_buffer_get_image_width(popped)),
                                            static_cast<uint32_t>(arv_buffer_get_image_height(popped)),
                                            static_cast<size_t>(paddingX),
                                            buffer->getSize()};
    Utils::Variant image;
    image.setData(Utils::COWPtr<Core::IImage>(new Core::Image(type, description.width, description.height,
                                                              description.paddingX, buffer, newLock())));
    return outputs(description, std::move(image));
}

std::vector<FeatureRow> AravisSource::listFeatures() const
{
    return listCameraFeatures(m_camera->device());
}

std::string AravisSource::getFeature(const std::string& name) const
{
    return getCameraFeature(m_camera->device(), name);
}

void AravisSource::setFeature(const std::string& name, const std::string& value)
{
    Camera& c = *m_camera;
    c.stopAcquisition();
    setCameraFeature(c.device(), name, value);
    c.readHints();
    c.openStream();
}

std::string AravisSource::registerDescription() const
{
    return cameraDescription(m_camera->device());
}

const std::string& AravisSource::lostReason() const
{
    return m_camera->lost;
}

namespace
{
const Utils::TypeRegistrar<AravisSource, Utils::DirectBase<Core::AdvancedNode>,
                           Utils::IndirectBase<Core::NodeBase>, Utils::IndirectBase<Core::INode>,
                           Utils::IndirectBase<Utils::IObject>>
    aravisRegistrar("TessalHost::AravisSource");
} // namespace
