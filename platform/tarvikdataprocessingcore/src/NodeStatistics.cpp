#include <TarvikDataProcessingCore/graph/NodeStatistics.h>

#include <algorithm>
#include <cmath>

namespace Tarvik::DataProcessing::Core
{

namespace
{

constexpr double shortestBucketed = 0.01;
constexpr double bucketGrowth = 1.01;
// Bucket 0 holds the runs up to shortestBucketed, bucket i > 0 those up to
// shortestBucketed * bucketGrowth^i; the last also all longer ones (1e10 us).
const size_t bucketCount = static_cast<size_t>(std::ceil(std::log(1e12) / std::log(bucketGrowth))) + 1;

size_t bucketOf(double microseconds)
{
    if (!(microseconds > shortestBucketed))
        return 0;
    const double steps = std::ceil(std::log(microseconds / shortestBucketed) / std::log(bucketGrowth));
    return std::min(static_cast<size_t>(steps), bucketCount - 1);
}

// Of a bucket above 0.
double middleOf(size_t bucket)
{
    return shortestBucketed * std::pow(bucketGrowth, static_cast<double>(bucket) - 0.5);
}

} // namespace

void NodeStatistics::recordRun(double microseconds, bool gaveOutput)
{
    if (m_runTimeBuckets.empty())
    {
        m_runTimeBuckets.assign(bucketCount, 0);
        m_shortestRun = m_longestRun = microseconds;
    }
    ++m_runTimeBuckets[bucketOf(microseconds)];
    m_shortestRun = std::min(m_shortestRun, microseconds);
    m_longestRun = std::max(m_longestRun, microseconds);
    m_runTimeTotal += microseconds;
    ++m_runs;
    if (gaveOutput)
        ++m_framesOut;
}

uint64_t NodeStatistics::errorCount() const
{
    uint64_t count = 0;
    for (const auto& [text, times] : m_errors)
        count += times;
    return count;
}

double NodeStatistics::runTimePercentile(double percent) const
{
    if (m_runs == 0)
        return 0.0;
    const auto rank = static_cast<uint64_t>(std::ceil(percent / 100.0 * static_cast<double>(m_runs)));
    const uint64_t wanted = std::clamp<uint64_t>(rank, 1, m_runs);
    if (wanted == 1)
        return m_shortestRun;
    if (wanted == m_runs)
        return m_longestRun;
    uint64_t seen = 0;
    size_t bucket = 0;
    while ((seen += m_runTimeBuckets[bucket]) < wanted)
        ++bucket;
    // The shortest run lies in the first bucket if anything does, the longest in the last.
    if (bucket == 0)
        return m_shortestRun;
    if (bucket == bucketCount - 1)
        return m_longestRun;
    return std::clamp(middleOf(bucket), m_shortestRun, m_longestRun);
}

} // namespace Tarvik::DataProcessing::Core
