// Settings written through the node map while another thread converts. Bands of
// one conversion on several threads are checked against the reference converter.
#include "ConversionTestSupport.h"

#include <GenApi/IEnumeration.h>
#include <GenApi/INodeMap.h>
#include <GenApi/Pointer.h>
#include <TarvikUtility/ImageFormatConverter.h>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

using namespace Tarvik;
using namespace ConversionTestSupport;

TEST(ImageFormatConverterThreads, NodeMapWritesDuringConversionsGiveOneSettingOrTheOther)
{
    const uint32_t width = 64;
    const uint32_t height = 32;
    const std::vector<uint8_t> source = RandomBytes(MinimalBytes(PixelType_Mono10, width, height, 0), 3);
    CImageFormatConverter converter;
    converter.OutputPixelFormat = PixelType_Mono16;
    const std::vector<uint8_t> lsb = Converted(converter, source, PixelType_Mono10, width, height);
    converter.OutputBitAlignment = OutputBitAlignment_MsbAligned;
    const std::vector<uint8_t> msb = Converted(converter, source, PixelType_Mono10, width, height);
    ASSERT_NE(lsb, msb);

    GenApi::CEnumerationPtr alignment = converter.GetNodeMap()->GetNode("OutputBitAlignment");
    std::atomic<bool> stop{false};
    std::thread writer(
        [&]
        {
            for (int i = 0; !stop.load(); ++i)
                alignment->SetIntValue(i % 2);
        });
    int mixed = 0;
    for (int i = 0; i < 200; ++i)
    {
        const std::vector<uint8_t> result = Converted(converter, source, PixelType_Mono10, width, height);
        mixed += result != lsb && result != msb;
    }
    stop = true;
    writer.join();
    EXPECT_EQ(mixed, 0);
}
