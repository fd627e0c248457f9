#include "instruction_sets.h"
#include "reference_sharpness.h"
#include "sharpnessmeasurement.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>

using namespace HistogramTest;
using namespace SharpnessTest;
using TarvikViewerTessalPackage::Detail::measureSharpness;
using TarvikViewerTessalPackage::Detail::SampleRegion;
using TarvikViewerTessalPackage::Detail::SharpnessSums;

namespace
{

constexpr double exactLimit = 9007199254740992.0; // 2^53

// The grid encoded in bytes or words with row padding, and the region of it at
// (left, top) measured in place.
SharpnessSums measure(const SampleGrid& grid, uint32_t depth, size_t paddingX, uint32_t left, uint32_t top,
                      uint32_t width, uint32_t height)
{
    const bool words = depth > 8;
    const std::vector<uint8_t> bytes = encode(grid, words ? Packing::Words : Packing::Bytes, depth, paddingX);
    const size_t sampleBytes = words ? 2 : 1;
    const size_t stride = grid.width * sampleBytes + paddingX;
    return measureSharpness(
        SampleRegion{bytes.data() + top * stride + left * sampleBytes, stride, width, height, depth});
}

void expectSums(const SharpnessSums& sums, const ReferenceSums& reference)
{
    EXPECT_EQ(sums.responseEnergy, reference.responseEnergy);
    EXPECT_EQ(sums.sampleSum, reference.sampleSum);
    EXPECT_EQ(sums.sampleCount, reference.sampleCount);
}

struct RandomCase
{
    uint32_t depth;
    uint32_t limit; // samples below this
    uint32_t width; // of the region; the grid has a frame of 2 around it
    uint32_t height;
    size_t paddingX;
};

// Widths around the vector lengths and past one block of vector iterations,
// where the kernels hand over to their scalar tails and flush their lanes; on
// every instruction set that the machine offers.
TEST(SharpnessMeasurement, EqualsThePlainDoubleSumsExactly)
{
    const RandomCase cases[] = {
        {8, 256, 3, 3, 0},     {8, 256, 4, 5, 3},       {8, 256, 37, 9, 1},      {8, 256, 131, 4, 7},
        {8, 256, 9000, 3, 5},  {8, 256, 640, 480, 13},  {16, 65536, 3, 3, 1},    {16, 65536, 19, 6, 0},
        {16, 65536, 67, 5, 3}, {16, 65536, 4500, 3, 1}, {12, 4096, 320, 240, 2},
    };
    const std::vector<int64_t> sets = instructionSets();
    ASSERT_GE(sets.size(), 2u);
    for (const int64_t target : sets)
    {
        SCOPED_TRACE(hwy::TargetName(target));
        hwy::SetSupportedTargetsForTest(target);
        uint32_t seed = 1;
        for (const RandomCase& c : cases)
        {
            SCOPED_TRACE(testing::Message() << c.depth << " bits, " << c.width << "x" << c.height);
            const SampleGrid grid = randomGrid(c.width + 2, c.height + 2, 1, c.limit, seed++);
            expectSums(measure(grid, c.depth, c.paddingX, 1, 2, c.width, c.height),
                       referenceSums(grid, 1, 2, c.width, c.height));
        }
    }
    hwy::SetSupportedTargetsForTest(0);
}

// Beyond 2^53 the double additions round, and an integer total would not be
// the figure: the sums must go on pixel by pixel there.
TEST(SharpnessMeasurement, EnergyBeyondTwoToThe53IsTheRoundedDoubleSum)
{
    SampleGrid grid = randomGrid(400, 400, 1, 256, 9);
    std::mt19937 random(10);
    for (uint16_t& sample : grid.samples)
        sample = random() % 2 ? static_cast<uint16_t>(65535 - sample) : sample;
    const ReferenceSums reference = referenceSums(grid, 0, 0, 400, 400);

    uint64_t exactEnergy = 0;
    for (uint32_t y = 1; y < 399; ++y)
        for (uint32_t x = 1; x < 399; ++x)
        {
            const ReferenceSums one = referenceSums(grid, x - 1, y - 1, 3, 3);
            exactEnergy += static_cast<uint64_t>(one.responseEnergy);
        }
    ASSERT_GT(reference.responseEnergy, exactLimit);
    ASSERT_NE(reference.responseEnergy, static_cast<double>(exactEnergy));

    expectSums(measure(grid, 16, 3, 0, 0, 400, 400), reference);
}

} // namespace
