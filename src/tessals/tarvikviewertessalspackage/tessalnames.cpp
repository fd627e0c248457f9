#include "tessalnames.h"

namespace TarvikViewerTessalPackage::Names
{

namespace Converter
{
const GenICam::gcstring InputImage("Image");
const GenICam::gcstring OutputImage("Image");
const GenICam::gcstring OutputImageConverted("ImageConverted");
const GenICam::gcstring OutputBitAlignment("OutputBitAlignment");
const GenICam::gcstring OutputPaddingX("OutputPaddingX");
const GenICam::gcstring OutputOrientation("OutputOrientation");
const GenICam::gcstring InconvertibleEdgeHandling("InconvertibleEdgeHandling");
} // namespace Converter

namespace Decompressor
{
const GenICam::gcstring InputGrabResult("GrabResult");
const GenICam::gcstring InputRepairHintPixelFormat("RepairHintPixelFormat");
const GenICam::gcstring InputRepairHintPayloadSizeStreamGrabber("RepairHintPayloadSizeStreamGrabber");
const GenICam::gcstring InputRepairHintPayloadSizeCamera("RepairHintPayloadSizeCamera");
const GenICam::gcstring InputRepairHintWidth("RepairHintWidth");
const GenICam::gcstring InputRepairHintHeight("RepairHintHeight");
const GenICam::gcstring InputCompressionDescriptor("CompressionDescriptor");
const GenICam::gcstring OutputImage("Image");
const GenICam::gcstring FixImage("FixImage");
} // namespace Decompressor

namespace Decoupler
{
const GenICam::gcstring GenericInput("GenericInput");
const GenICam::gcstring GenericOutput("GenericOutput");
const GenICam::gcstring ThrottleMode("ThrottleMode");
const GenICam::gcstring Fps("Fps");
} // namespace Decoupler

namespace Gate
{
const GenICam::gcstring GenericInput("GenericInput");
const GenICam::gcstring GenericOutput("GenericOutput");
const GenICam::gcstring Enable("Enable");
} // namespace Gate

namespace HistogramExtractor
{
const GenICam::gcstring InputImage("Image");
const GenICam::gcstring OutputRed("Red");
const GenICam::gcstring OutputGreen("Green");
const GenICam::gcstring OutputBlue("Blue");
const GenICam::gcstring OutputLum("Lum");
} // namespace HistogramExtractor

namespace SharpnessExtractor
{
const GenICam::gcstring InputImage("Image");
const GenICam::gcstring OutputSharpness("Sharpness");
const GenICam::gcstring AoiTop("AoiTop");
const GenICam::gcstring AoiLeft("AoiLeft");
const GenICam::gcstring AoiWidth("AoiWidth");
const GenICam::gcstring AoiHeight("AoiHeight");
} // namespace SharpnessExtractor

} // namespace TarvikViewerTessalPackage::Names
