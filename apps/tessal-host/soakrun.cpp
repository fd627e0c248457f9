#include "soakrun.h"

#include "frameledger.h"
#include "nodemaptool.h"

#include <GCBase/GCException.h>

#include <TarvikDataProcessingCore/utils/Log.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <fstream>
#include <mutex>
#include <random>
#include <thread>
#include <unistd.h>

using namespace Tarvik::DataProcessing;

namespace
{

using Clock = std::chrono::steady_clock;

// Shorter runs have too few samples after the warm-up to tell a leak from an allocator's moods.
constexpr double shortestJudgedRun = 60.0;
constexpr auto memorySamplePeriod = std::chrono::milliseconds(250);

std::string mebibytes(uint64_t bytes)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.1f MiB", static_cast<double>(bytes) / (1024.0 * 1024.0));
    return text;
}

// Counts the log lines by severity and category while it lives, in place of printing them.
class LogCounter
{
public:
    LogCounter()
        : m_previous(Utils::setLogSink(
              [this](const Utils::LogEntry& entry)
              {
                  std::lock_guard lock(m_mutex);
                  ++m_counts[std::to_string(entry.severity) + " " + entry.category];
              }))
    {
    }
    ~LogCounter() { Utils::setLogSink(m_previous); }
    LogCounter(const LogCounter&) = delete;
    LogCounter& operator=(const LogCounter&) = delete;

    std::map<std::string, uint64_t> counts() const
    {
        std::lock_guard lock(m_mutex);
        return m_counts;
    }

private:
    mutable std::mutex m_mutex;
    std::map<std::string, uint64_t> m_counts;
    Utils::LogSink m_previous;
};

// The graph and the one who may use it: the frame loop, one update at a time,
// or the toggler for a stop and start, whom the frame loop lets in first.
struct SharedGraph
{
    Core::Graph graph;
    std::mutex mutex;
    std::condition_variable restartDone;
    std::atomic<bool> restartWanted{false};
};

// The second thread: node-map writes and restarts of the graph, until stopped.
class Toggler
{
public:
    Toggler(SharedGraph& shared, FrameLedger& ledger, const SoakOptions& options)
        : m_shared(shared)
        , m_ledger(ledger)
        , m_options(options)
        , m_gate(*shared.graph.node(FrameLedger::gate))
        , m_decoupler(*shared.graph.node(FrameLedger::decoupler))
        , m_decompressor(*shared.graph.node(FrameLedger::decompressor))
        , m_sharpness(*shared.graph.node(FrameLedger::sharpness))
        , m_thread([this] { loop(); })
    {
    }

    ~Toggler() { stop(); }

    void stop()
    {
        m_stopRequested = true;
        if (m_thread.joinable())
            m_thread.join();
    }

    // Read after stop().
    uint64_t writes() const { return m_writes; }
    uint64_t restarts() const { return m_restarts; }
    const std::vector<std::string>& failures() const { return m_failures; }

private:
    void loop()
    {
        std::mt19937_64 random(m_options.seed);
        const auto chance = [&](double p) { return std::bernoulli_distribution(p)(random); };
        const auto pick = [&](uint64_t count)
        { return std::uniform_int_distribution<uint64_t>(0, count - 1)(random); };
        try
        {
            while (!m_stopRequested)
            {
                switch (pick(5))
                {
                case 0:
                    write(m_gate, "Enable", chance(0.75) ? "true" : "false");
                    break;
                case 1:
                    write(m_decoupler, "ThrottleMode", chance(0.5) ? "true" : "false");
                    break;
                case 2:
                {
                    static const char* const rates[] = {"2", "10", "25", "60", "500"};
                    write(m_decoupler, "Fps", rates[pick(std::size(rates))]);
                    break;
                }
                case 3:
                    write(m_decompressor, "FixImage", chance(0.5) ? "true" : "false");
                    break;
                default:
                    writeAoi(pick(5), random);
                    break;
                }
                if (m_writes / m_options.restartEvery > m_restarts)
                    restart();
                std::this_thread::sleep_for(std::chrono::microseconds(500 + pick(4000)));
            }
        }
        catch (const GenICam::GenericException& e)
        {
            m_failures.push_back(std::string("the toggler stopped: ") + e.GetDescription());
        }
        catch (const std::exception& e)
        {
            m_failures.push_back(std::string("the toggler stopped: ") + e.what());
        }
    }

    void write(Core::INode& node, const char* feature, const std::string& value)
    {
        setFeature(node, feature, value);
        ++m_writes;
    }

    // A valid, an empty, a too small, an out-of-bounds or a random valid area.
    void writeAoi(uint64_t choice, std::mt19937_64& random)
    {
        const int64_t width = m_options.camera.width;
        const int64_t height = m_options.camera.height;
        int64_t aoi[4] = {width / 4, height / 4, width / 2, height / 2};
        switch (choice)
        {
        case 0:
            break;
        case 1:
            aoi[2] = 0;
            break;
        case 2:
            aoi[2] = aoi[3] = 2;
            break;
        case 3:
            aoi[0] = aoi[1] = 0;
            aoi[2] = width;
            aoi[3] = height;
            break;
        default:
            aoi[0] = std::uniform_int_distribution<int64_t>(0, width / 2)(random);
            aoi[1] = std::uniform_int_distribution<int64_t>(0, height / 2)(random);
            aoi[2] = std::uniform_int_distribution<int64_t>(3, std::max<int64_t>(3, width / 2 - 1))(random);
            aoi[3] = std::uniform_int_distribution<int64_t>(3, std::max<int64_t>(3, height / 2 - 1))(random);
            break;
        }
        const char* const features[] = {"AoiLeft", "AoiTop", "AoiWidth", "AoiHeight"};
        for (size_t i = 0; i < 4; ++i)
            write(m_sharpness, features[i], std::to_string(aoi[i]));
    }

    // Stops the graph, checks the accounts while it stands, and starts it again.
    void restart()
    {
        m_shared.restartWanted = true;
        std::unique_lock lock(m_shared.mutex);
        // The frame loop waits for the flag: clear it however this ends.
        const auto letFramesIn = [&]
        {
            m_shared.restartWanted = false;
            lock.unlock();
            m_shared.restartDone.notify_all();
        };
        try
        {
            m_shared.graph.stop();
            m_ledger.settle();
            if (m_failures.empty())
                for (const std::string& failure :
                     accountingFailures(m_ledger.tally(), nodeCountsOf(m_shared.graph)))
                    m_failures.push_back("after restart " + std::to_string(m_restarts + 1) + ": " + failure);
            m_shared.graph.start();
            ++m_restarts;
        }
        catch (...)
        {
            letFramesIn();
            throw;
        }
        letFramesIn();
    }

    SharedGraph& m_shared;
    FrameLedger& m_ledger;
    const SoakOptions& m_options;
    Core::INode& m_gate;
    Core::INode& m_decoupler;
    Core::INode& m_decompressor;
    Core::INode& m_sharpness;
    std::atomic<bool> m_stopRequested{false};
    uint64_t m_writes = 0;
    uint64_t m_restarts = 0;
    std::vector<std::string> m_failures;
    std::thread m_thread;
};

// Resident memory at the start, middle and end, and the peaks that decide.
class MemoryWatch
{
public:
    explicit MemoryWatch(double warmUpShare)
        : m_warmUpShare(warmUpShare)
    {
    }

    // `progress` from 0 to 1.
    void sample(double progress)
    {
        const uint64_t now = residentMemory();
        if (progress >= 0.5)
        {
            if (m_middle == 0)
                m_middle = now;
            m_peakSecondHalf = std::max(m_peakSecondHalf, now);
        }
        else if (progress >= m_warmUpShare)
            m_peakFirstHalf = std::max(m_peakFirstHalf, now);
    }

    void finish(SoakReport& report, uint64_t start) const
    {
        report.memoryStart = start;
        report.memoryEnd = residentMemory();
        report.memoryMiddle = m_middle ? m_middle : report.memoryEnd;
        report.memoryPeakFirstHalf = m_peakFirstHalf;
        report.memoryPeakSecondHalf = std::max(m_peakSecondHalf, report.memoryEnd);
    }

private:
    double m_warmUpShare;
    uint64_t m_middle = 0;
    uint64_t m_peakFirstHalf = 0;
    uint64_t m_peakSecondHalf = 0;
};

class Progress
{
public:
    explicit Progress(bool wanted)
        : m_enabled(wanted && isatty(STDERR_FILENO))
    {
    }
    ~Progress()
    {
        if (m_shown)
            std::fprintf(stderr, "\n");
    }

    void show(double seconds, uint64_t frames)
    {
        if (!m_enabled || seconds < m_nextShown)
            return;
        m_nextShown = seconds + 1.0;
        m_shown = true;
        std::fprintf(stderr, "\r  %.0f s  frame %llu  %.1f frames/s  resident %s ", seconds,
                     static_cast<unsigned long long>(frames), static_cast<double>(frames) / seconds,
                     mebibytes(residentMemory()).c_str());
    }

private:
    bool m_enabled;
    bool m_shown = false;
    double m_nextShown = 1.0;
};

} // namespace

uint64_t residentMemory()
{
    std::ifstream statm("/proc/self/statm");
    uint64_t size = 0;
    uint64_t resident = 0;
    if (!(statm >> size >> resident))
        return 0;
    return resident * static_cast<uint64_t>(sysconf(_SC_PAGESIZE));
}

SoakReport runSoak(const ModuleCatalog& catalog, const SoakOptions& options)
{
    DefaultGraphOptions graphOptions;
    graphOptions.camera = options.camera;
    SharedGraph shared;
    catalog.build(shared.graph, catalog.defaultGraph(graphOptions));
    for (const char* const name : {FrameLedger::decompressor, FrameLedger::converter, FrameLedger::histogram,
                                   FrameLedger::sharpness, FrameLedger::gate, FrameLedger::decoupler})
        if (!shared.graph.node(name))
            throw GraphFileError(std::string("the package offers no node for \"") + name +
                                 "\" of the default graph");
    const auto* const camera =
        dynamic_cast<const SyntheticCamera*>(shared.graph.node(FrameLedger::camera).get());
    if (!camera)
        throw GraphFileError("the default graph has no synthetic camera");
    FrameLedger ledger(shared.graph, *camera);

    SoakReport report;
    const LogCounter logLines;
    report.memoryTolerance = options.memoryTolerance;
    MemoryWatch memory(options.warmUpShare);
    const uint64_t memoryStart = residentMemory();
    const auto started = Clock::now();
    shared.graph.start();
    {
        Toggler toggler(shared, ledger, options);
        Progress progress(options.progress);
        auto nextSample = started;
        for (;;)
        {
            const auto now = Clock::now();
            const double seconds = std::chrono::duration<double>(now - started).count();
            double done = seconds / options.seconds;
            if (options.frames)
                done = std::max(done,
                                static_cast<double>(report.framesIn) / static_cast<double>(options.frames));
            if (done >= 1.0)
                break;
            {
                std::unique_lock lock(shared.mutex);
                shared.restartDone.wait(lock, [&] { return !shared.restartWanted; });
                shared.graph.runUpdate();
            }
            ++report.framesIn;
            if (now >= nextSample)
            {
                memory.sample(done);
                nextSample = now + memorySamplePeriod;
            }
            progress.show(seconds, report.framesIn);
        }
        toggler.stop();
        report.featureWrites = toggler.writes();
        report.restarts = toggler.restarts();
        report.otherFailures = toggler.failures();
    }
    shared.graph.stop();
    ledger.settle();
    report.seconds = std::chrono::duration<double>(Clock::now() - started).count();
    memory.finish(report, memoryStart);
    report.logLines = logLines.counts();

    const FrameTally& tally = ledger.tally();
    report.framesOut = tally.shown;
    report.framesOutWithError = tally.shownErrors;
    report.stoppedByGate = tally.stoppedByGate;
    report.droppedByDecoupler = tally.droppedByDecoupler;
    report.framesByStatus = tally.framesByStatus;
    report.accountingFailures = accountingFailures(tally, nodeCountsOf(shared.graph));
    if (report.framesIn != tally.framesIn)
        report.accountingFailures.push_back("frames run " + std::to_string(report.framesIn) +
                                            " != frames the camera gave " + std::to_string(tally.framesIn));
    for (const std::string& name : shared.graph.nodeNames())
        for (const auto& [text, count] : shared.graph.statistics(name).errors())
            report.errors[name][text] = count;

    if (report.seconds >= shortestJudgedRun &&
        report.memoryPeakSecondHalf > report.memoryPeakFirstHalf + options.memoryTolerance)
        report.otherFailures.push_back(
            "resident memory grew after the warm-up: " + mebibytes(report.memoryPeakFirstHalf) +
            " at most before the middle, " + mebibytes(report.memoryPeakSecondHalf) + " after it");
    return report;
}

nlohmann::ordered_json SoakReport::toJson() const
{
    return {{"passed", passed()},
            {"seconds", seconds},
            {"framesIn", framesIn},
            {"framesOut", framesOut},
            {"framesOutWithError", framesOutWithError},
            {"stoppedByGate", stoppedByGate},
            {"droppedByDecoupler", droppedByDecoupler},
            {"framesByStatus", framesByStatus},
            {"restarts", restarts},
            {"featureWrites", featureWrites},
            {"errors", errors},
            {"logLines", logLines},
            {"residentMemory",
             {{"start", memoryStart},
              {"middle", memoryMiddle},
              {"end", memoryEnd},
              {"peakAfterWarmUp", memoryPeakFirstHalf},
              {"peakSecondHalf", memoryPeakSecondHalf},
              {"tolerance", memoryTolerance},
              {"judged", seconds >= shortestJudgedRun}}},
            {"accountingFailures", accountingFailures},
            {"otherFailures", otherFailures}};
}

std::string SoakReport::text() const
{
    std::string text;
    char line[256];
    const auto add = [&](const char* format, auto... values)
    {
        std::snprintf(line, sizeof line, format, values...);
        text += line;
    };
    add("%llu frames in %.1f s (%.1f frames/s):", static_cast<unsigned long long>(framesIn), seconds,
        static_cast<double>(framesIn) / seconds);
    for (const auto& [status, count] : framesByStatus)
        add(" %s %llu", status.c_str(), static_cast<unsigned long long>(count));
    add("\n  out at the display     %llu (%llu of them error values)\n",
        static_cast<unsigned long long>(framesOut), static_cast<unsigned long long>(framesOutWithError));
    add("  stopped by the Gate    %llu\n", static_cast<unsigned long long>(stoppedByGate));
    add("  dropped by the Decoupler %llu\n", static_cast<unsigned long long>(droppedByDecoupler));
    add("  graph restarts %llu, node-map writes %llu\n", static_cast<unsigned long long>(restarts),
        static_cast<unsigned long long>(featureWrites));
    text += "  resident memory: start " + mebibytes(memoryStart) + ", middle " + mebibytes(memoryMiddle) +
            ", end " + mebibytes(memoryEnd) + "; peak after warm-up " + mebibytes(memoryPeakFirstHalf) +
            ", in the second half " + mebibytes(memoryPeakSecondHalf) + " (tolerance " +
            mebibytes(memoryTolerance) +
            (seconds >= shortestJudgedRun ? ")\n" : "; run too short to judge)\n");
    text += "Errors by node and text:\n";
    for (const auto& [node, texts] : errors)
        for (const auto& [message, count] : texts)
            text += "  " + node + " " + std::to_string(count) + " x " + message + "\n";
    text += "Log lines by severity and category:\n";
    for (const auto& [kind, count] : logLines)
        text += "  " + std::to_string(count) + " x " + kind + "\n";
    if (passed())
    {
        add("Every frame accounted for: %llu in = %llu stopped by the Gate + %llu dropped by the Decoupler + "
            "%llu shown\nPASS\n",
            static_cast<unsigned long long>(framesIn), static_cast<unsigned long long>(stoppedByGate),
            static_cast<unsigned long long>(droppedByDecoupler), static_cast<unsigned long long>(framesOut));
        return text;
    }
    text += "FAIL\n";
    for (const std::string& failure : accountingFailures)
        text += "  accounting: " + failure + "\n";
    for (const std::string& failure : otherFailures)
        text += "  " + failure + "\n";
    return text;
}
