// One run of a graph on its frame sources: start, so many updates, stop; then
// the run's folder and the per-node summary on the terminal.
#pragma once

#include "graphfile.h"
#include "modulecatalog.h"

#include <cstdint>
#include <filesystem>
#include <string>

struct RunOptions
{
    uint64_t frames = 100;
    std::filesystem::path outputFolder;
    // Every Nth frame that reaches a display is written as PNG, and the last one.
    uint64_t pngEvery = 50;
    bool quiet = false;
};

// Exit codes of the host's commands.
enum ExitCode : int
{
    exitDone = 0,
    exitFailed = 1,
    exitBadInput = 2,
    exitCannotOpen = 3,
    exitSourceLost = 4,
};

// A folder under ./tessal-runs named after the command and the time.
std::filesystem::path defaultOutputFolder(const std::string& command);

// Runs the graph and writes its outputs; exitFailed when a node reported errors.
// A camera that is lost ends the run early, with exitSourceLost.
// Raises GraphFileError for a graph that cannot be built.
int runGraph(const ModuleCatalog& catalog, const GraphDescription& description, const RunOptions& options);
