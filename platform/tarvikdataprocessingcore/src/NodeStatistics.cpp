#include <TarvikDataProcessingCore/graph/NodeStatistics.h>

#include <algorithm>
#include <cmath>

namespace Tarvik::DataProcessing::Core
{

void NodeStatistics::recordRun(double microseconds, bool gaveOutput)
{
    m_runTimes.push_back(microseconds);
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

double NodeStatistics::runTimeTotal() const
{
    double total = 0.0;
    for (const double time : m_runTimes)
        total += time;
    return total;
}

double NodeStatistics::runTimePercentile(double percent) const
{
    if (m_runTimes.empty())
        return 0.0;
    std::vector<double> sorted = m_runTimes;
    const auto rank = static_cast<size_t>(std::ceil(percent / 100.0 * static_cast<double>(sorted.size())));
    const size_t index = std::clamp<size_t>(rank, 1, sorted.size()) - 1;
    std::nth_element(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(index), sorted.end());
    return sorted[index];
}

} // namespace Tarvik::DataProcessing::Core
