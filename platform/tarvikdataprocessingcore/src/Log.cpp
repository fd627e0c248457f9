#include <TarvikDataProcessingCore/utils/Log.h>

#include <GCBase/GCException.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace Tarvik::DataProcessing::Utils
{

namespace
{

struct LogState
{
    std::mutex mutex;
    std::unordered_map<std::string, int> idsByName;
    std::vector<std::string> namesById;
    LogSink sink;
    int stderrLevel = readLevel();

    static int readLevel()
    {
        const char* const text = std::getenv("TARVIK_LOG_LEVEL");
        return text && *text ? std::atoi(text) : Severitiy_Warning;
    }
};

// Never destroyed, so that code running at exit can still log.
LogState& state()
{
    static LogState* const instance = new LogState;
    return *instance;
}

} // namespace

int getCatId(const char* categoryName)
{
    const std::string name = categoryName ? categoryName : "";
    LogState& s = state();
    std::lock_guard guard(s.mutex);
    const auto [it, inserted] = s.idsByName.emplace(name, static_cast<int>(s.namesById.size()));
    if (inserted)
        s.namesById.push_back(name);
    return it->second;
}

std::string getCategoryName(int categoryId)
{
    LogState& s = state();
    std::lock_guard guard(s.mutex);
    return categoryId >= 0 && static_cast<size_t>(categoryId) < s.namesById.size() ? s.namesById[categoryId]
                                                                                   : "";
}

void createLogEntry(Severitiy severity, int categoryId, const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const GenICam::gcstring text = GenICam::FormatV(format, arguments);
    va_end(arguments);

    LogEntry entry{severity, categoryId, getCategoryName(categoryId), text.str()};
    LogState& s = state();
    LogSink sink;
    {
        std::lock_guard guard(s.mutex);
        sink = s.sink;
        if (!sink)
        {
            if (severity <= s.stderrLevel)
                std::fprintf(stderr, "[%d] %s: %s\n", static_cast<int>(severity), entry.category.c_str(),
                             entry.text.c_str());
            return;
        }
    }
    sink(entry);
}

LogSink setLogSink(LogSink sink)
{
    LogState& s = state();
    std::lock_guard guard(s.mutex);
    std::swap(s.sink, sink);
    return sink;
}

} // namespace Tarvik::DataProcessing::Utils
