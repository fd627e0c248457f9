// Logging of the framework: printf-style entries in named categories.
//
// Entries go to the installed sink, if any, and else to stderr, one line each,
// when their severity is at or above the level that TARVIK_LOG_LEVEL selects
// (a number: lower is more severe; default 4, so errors and warnings show).
// Thread-safe: entries from several threads never interleave within a line.
#pragma once

#include <TarvikDataProcessingCore/Export.h>

#include <functional>
#include <string>

namespace Tarvik::DataProcessing::Utils
{

// Lower is more severe. A failed check of a node's run logs at 3; an exception
// that was caught and swallowed logs at 4.
enum Severitiy : int
{
    Severitiy_Fatal = 1,
    Severitiy_Critical = 2,
    Severitiy_Error = 3,
    Severitiy_Warning = 4,
    Severitiy_Info = 5,
    Severitiy_Debug = 6,
};

// The id of a category, made on first request; the same text gives the same id.
TDPC_API int getCatId(const char* categoryName);
TDPC_API std::string getCategoryName(int categoryId);

TDPC_API void createLogEntry(Severitiy severity, int categoryId, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

struct LogEntry
{
    Severitiy severity;
    int categoryId;
    std::string category;
    std::string text;
};

using LogSink = std::function<void(const LogEntry&)>;

// Routes every entry, whatever its severity, to `sink` instead of stderr; an
// empty sink restores stderr. Returns the sink that was installed before.
TDPC_API LogSink setLogSink(LogSink sink);

} // namespace Tarvik::DataProcessing::Utils
