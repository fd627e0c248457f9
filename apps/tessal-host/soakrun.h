// The soak: the default graph on the synthetic camera for minutes on end, with
// damaged frames from the camera and a second thread that changes the nodes'
// parameters through their node maps and stops and starts the graph, as a
// viewer's user and its camera would. It reports frames in and out, the errors
// by text, resident memory and whether every frame is accounted for (see
// frameledger.h). The log lines of the run are counted by severity and
// category, not printed: a soak fails thousands of frames on purpose.
//
// The second thread, the "toggler", writes in random order, a few milliseconds
// apart: "Enable" of the Gate (on three times in four), "ThrottleMode" and "Fps"
// of the Decoupler, "FixImage" of the Decompressor, and the four AOI features of
// the SharpnessExtractor (one after the other, to a valid, an empty, a too small
// or an out-of-bounds area). "Fps" takes values from 2 to 500: above 1000 and at
// 0 the Decoupler's worker runs without a pause, which would only burn a core.
// Every `restartEvery` writes it stops the graph and starts it again. The graph
// itself belongs to whoever holds its mutex: the frame loop for one update at a
// time, the toggler for a stop and start, which the frame loop lets in at once.
//
// Memory: resident memory (VmRSS) is sampled four times a second. The first
// `warmUpShare` of the run is warm-up: caches and pools fill, and the camera
// meets every damaged frame of its repeat period. The run fails if the highest
// sample of the second half exceeds the highest sample between warm-up and
// middle by more than `memoryTolerance`. A leak of any size per frame shows over
// a long enough run; the tolerance covers what an allocator keeps or returns
// at random.
//
// Not thread-safe: one soak at a time per process (it reads its own memory).
#pragma once

#include "modulecatalog.h"
#include "syntheticcamera.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

struct SoakOptions
{
    // The run ends after `seconds` or `frames`, whichever comes first (0: no frame limit).
    double seconds = 600.0;
    uint64_t frames = 0;
    SyntheticCameraSettings camera = {640, 480, Tarvik::PixelType_BayerRG8, 0.2, 0.05, 0.03, 0.03};
    uint64_t restartEvery = 250;
    double warmUpShare = 0.2;
    uint64_t memoryTolerance = 4 << 20;
    // Seed of the toggler's choices.
    uint64_t seed = 1;
    // Print progress on a terminal.
    bool progress = true;
};

struct SoakReport
{
    double seconds = 0.0;
    uint64_t framesIn = 0;
    uint64_t framesOut = 0;
    uint64_t framesOutWithError = 0;
    uint64_t stoppedByGate = 0;
    uint64_t droppedByDecoupler = 0;
    std::map<std::string, uint64_t> framesByStatus;
    uint64_t restarts = 0;
    uint64_t featureWrites = 0;
    // Errors that the nodes raised, by node and exact text.
    std::map<std::string, std::map<std::string, uint64_t>> errors;
    // Log lines by "severity category", kept from the terminal during the run.
    std::map<std::string, uint64_t> logLines;
    // Resident memory in bytes.
    uint64_t memoryStart = 0;
    uint64_t memoryMiddle = 0;
    uint64_t memoryEnd = 0;
    uint64_t memoryPeakFirstHalf = 0;
    uint64_t memoryPeakSecondHalf = 0;
    uint64_t memoryTolerance = 0;
    std::vector<std::string> accountingFailures;
    // A failure of the toggler or of the memory check, in words.
    std::vector<std::string> otherFailures;

    bool passed() const { return accountingFailures.empty() && otherFailures.empty(); }
    nlohmann::ordered_json toJson() const;
    // The report for a person, with the verdict last.
    std::string text() const;
};

// Resident memory of this process in bytes; 0 where /proc cannot tell.
uint64_t residentMemory();

// Runs the soak on the package's default graph. Raises GraphFileError when the
// package lacks a node of the default graph.
SoakReport runSoak(const ModuleCatalog& catalog, const SoakOptions& options);
