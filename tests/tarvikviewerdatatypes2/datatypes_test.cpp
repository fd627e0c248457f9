#include <TarvikDataProcessingCore/core/AlignedBufferProvider.h>
#include <TarvikDataProcessingCore/utils/Variant.h>
#include <TarvikViewerDataTypes2/CompressionDescriptor.h>
#include <TarvikViewerDataTypes2/GrabResult.h>

#include <gtest/gtest.h>

using namespace Tarvik::DataProcessing;
using Utils::COWPtr;
using Utils::TypeInfo;
using Utils::Variant;

TEST(ViewerDataTypes, AreRegisteredUnderTheirNamesAndReadBackFromAVariant)
{
    ASSERT_TRUE(TypeInfo::get<GrabResult>(false).isValid());
    ASSERT_TRUE(TypeInfo::get<CompressionDescriptor>(false).isValid());
    EXPECT_TRUE(TypeInfo::get<COWPtr<GrabResult>>(false).isValid());
    EXPECT_TRUE(TypeInfo::get<COWPtr<CompressionDescriptor>>(false).isValid());

    const Variant descriptor{CompressionDescriptor({1, 2, 3})};
    EXPECT_EQ(descriptor.get<COWPtr<CompressionDescriptor>>(true)->getCompressionDescriptor(),
              (std::vector<uint8_t>{1, 2, 3}));
    EXPECT_FALSE(descriptor.get<Core::IValue>(true)->hasError(false));
}

TEST(ViewerDataTypes, AGrabResultSharesItsBufferWithEveryCopyAndClone)
{
    const auto buffer = std::make_shared<Core::AlignedBufferProvider>()->allocate(12);
    const GrabResultDescription description{true, Tarvik::PixelType_Mono8, 4, 3, 0, 10};
    COWPtr<GrabResult> first(new GrabResult(description, buffer));
    COWPtr<GrabResult> second = first;
    // A write through a shared handle clones the result, never the bytes.
    GrabResult& clone = *second;
    EXPECT_NE(&clone, std::as_const(first).get());
    EXPECT_EQ(clone.getBuffer(), buffer);
    EXPECT_EQ(clone.getBufferSize(), 12u);
    EXPECT_EQ(clone.getPayloadSize(), 10u);

    const GrabResult withoutBuffer(description, nullptr);
    EXPECT_EQ(withoutBuffer.getBufferSize(), 0u);
}

TEST(ViewerDataTypes, AGrabResultInErrorStateCarriesItsError)
{
    const auto error = std::make_shared<Core::InvalidValueError>("lost", Utils::DateTime::now());
    const GrabResult result(error);
    EXPECT_TRUE(result.hasError(false));
    EXPECT_EQ(result.getError(false), error);
    EXPECT_FALSE(result.grabSucceeded());
    EXPECT_THROW(GrabResult(std::shared_ptr<Core::IError>()), GenICam::InvalidArgumentException);
}
