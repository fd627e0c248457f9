// The pin, parameter and settings names of the package's nodes, grouped by node.
// One constant serves as pin name, as key in a node's run() maps, as parameter
// port name and as settings key. The same text in two groups is two constants:
// no node reads another node's group.
#pragma once

#include <GCBase/GCString.h>

namespace TarvikViewerTessalPackage::Names
{

namespace Converter
{
extern const GenICam::gcstring InputImage;
extern const GenICam::gcstring OutputImage;
extern const GenICam::gcstring OutputImageConverted;
extern const GenICam::gcstring OutputBitAlignment;
extern const GenICam::gcstring OutputPaddingX;
extern const GenICam::gcstring OutputOrientation;
extern const GenICam::gcstring InconvertibleEdgeHandling;
} // namespace Converter

namespace Decompressor
{
extern const GenICam::gcstring InputGrabResult;
extern const GenICam::gcstring InputRepairHintPixelFormat;
extern const GenICam::gcstring InputRepairHintPayloadSizeStreamGrabber;
extern const GenICam::gcstring InputRepairHintPayloadSizeCamera;
extern const GenICam::gcstring InputRepairHintWidth;
extern const GenICam::gcstring InputRepairHintHeight;
extern const GenICam::gcstring InputCompressionDescriptor;
extern const GenICam::gcstring OutputImage;
extern const GenICam::gcstring FixImage;
} // namespace Decompressor

namespace Decoupler
{
extern const GenICam::gcstring GenericInput;
extern const GenICam::gcstring GenericOutput;
extern const GenICam::gcstring ThrottleMode;
extern const GenICam::gcstring Fps;
} // namespace Decoupler

namespace Gate
{
extern const GenICam::gcstring GenericInput;
extern const GenICam::gcstring GenericOutput;
extern const GenICam::gcstring Enable;
} // namespace Gate

namespace HistogramExtractor
{
extern const GenICam::gcstring InputImage;
extern const GenICam::gcstring OutputRed;
extern const GenICam::gcstring OutputGreen;
extern const GenICam::gcstring OutputBlue;
extern const GenICam::gcstring OutputLum;
} // namespace HistogramExtractor

namespace SharpnessExtractor
{
extern const GenICam::gcstring InputImage;
extern const GenICam::gcstring OutputSharpness;
extern const GenICam::gcstring AoiTop;
extern const GenICam::gcstring AoiLeft;
extern const GenICam::gcstring AoiWidth;
extern const GenICam::gcstring AoiHeight;
} // namespace SharpnessExtractor

} // namespace TarvikViewerTessalPackage::Names
