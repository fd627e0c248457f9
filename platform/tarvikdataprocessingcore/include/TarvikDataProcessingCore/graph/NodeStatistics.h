// What the graph runtime measured of one node: frames in and out, the errors it
// raised by text, and the time of each run.
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

    uint64_t framesIn() const { return m_runTimes.size(); }
    uint64_t framesOut() const { return m_framesOut; }
    const std::map<std::string, uint64_t>& errors() const { return m_errors; }
    uint64_t errorCount() const;
    // The run time below which `percent` of the runs lie (nearest rank); 0 without runs.
    double runTimePercentile(double percent) const;
    double runTimeMedian() const { return runTimePercentile(50.0); }
    double runTimeTotal() const;

private:
    std::vector<double> m_runTimes;
    uint64_t m_framesOut = 0;
    std::map<std::string, uint64_t> m_errors;
};

} // namespace Tarvik::DataProcessing::Core
