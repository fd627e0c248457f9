// What the graph runtime measured of one node: frames in and out, the errors it
// raised by text, and the time of each run.
//
// Run times are kept as counts in buckets that grow by 1% from 0.01 us to about
// three hours, not one by one, so that a node that runs for days costs the same
// memory as one that runs for seconds. A percentile is thus the geometric middle
// of its bucket, within half a percent of the true run time; the first and the
// last rank are the shortest and the longest run, exactly.
//
// Not thread-safe: the graph's thread writes it; read it when the graph stands.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Tarvik::DataProcessing::Core
{

class TDPC_API NodeStatistics
{
public:
    // One run that took `microseconds`; `gaveOutput` when it gave at least one value.
    void recordRun(double microseconds, bool gaveOutput);
    // Values the node gave on an update of its own, outside of run().
    void recordDelivery() { ++m_framesOut; }
    // An error value the node gave that none of its inputs carried.
    void recordError(const std::string& text) { ++m_errors[text]; }

    uint64_t framesIn() const { return m_runs; }
    uint64_t framesOut() const { return m_framesOut; }
    const std::map<std::string, uint64_t>& errors() const { return m_errors; }
    uint64_t errorCount() const;
    // The run time below which `percent` of the runs lie (nearest rank); 0 without runs.
    double runTimePercentile(double percent) const;
    double runTimeMedian() const { return runTimePercentile(50.0); }
    double runTimeTotal() const { return m_runTimeTotal; }

private:
    uint64_t m_runs = 0;
    double m_runTimeTotal = 0.0;
    double m_shortestRun = 0.0;
    double m_longestRun = 0.0;
    // Runs per bucket of run time; empty until the first run.
    std::vector<uint64_t> m_runTimeBuckets;
    uint64_t m_framesOut = 0;
    std::map<std::string, uint64_t> m_errors;
};

} // namespace Tarvik::DataProcessing::Core
