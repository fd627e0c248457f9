// The run times of a node are bucketed, not kept one by one: percentiles within
// half a percent, exact at the ends, totals exact.
#include <TarvikDataProcessingCore/graph/NodeStatistics.h>

#include <gtest/gtest.h>

using Tarvik::DataProcessing::Core::NodeStatistics;

TEST(NodeStatistics, PercentilesOfBucketedRunTimesStayWithinHalfAPercent)
{
    NodeStatistics statistics;
    EXPECT_EQ(statistics.runTimeMedian(), 0.0) << "no runs";
    for (int microseconds = 1000; microseconds >= 1; --microseconds)
        statistics.recordRun(microseconds, microseconds % 4 != 0);
    EXPECT_EQ(statistics.framesIn(), 1000u);
    EXPECT_EQ(statistics.framesOut(), 750u);
    EXPECT_EQ(statistics.runTimeTotal(), 500500.0);
    EXPECT_EQ(statistics.runTimePercentile(0.0), 1.0) << "the shortest run, not its bucket";
    EXPECT_EQ(statistics.runTimePercentile(100.0), 1000.0) << "the longest run, not its bucket";
    for (const double percent : {10.0, 50.0, 99.0})
        EXPECT_NEAR(statistics.runTimePercentile(percent), 10.0 * percent, 0.005 * 10.0 * percent) << percent;

    NodeStatistics extremes;
    for (const double microseconds : {0.0, 0.0, 0.0, 1e15})
        extremes.recordRun(microseconds, true);
    EXPECT_EQ(extremes.runTimeMedian(), 0.0);
    EXPECT_EQ(extremes.runTimePercentile(100.0), 1e15) << "beyond the last bucket";
}
