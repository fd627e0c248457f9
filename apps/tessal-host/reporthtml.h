// The run's report: one HTML page that any browser opens from the disk, with the
// last frames, the histograms of the last frame and the sharpness over time as
// inline SVG plots, and the per-node summary.
#pragma once

#include "runrecorder.h"

#include <map>
#include <string>
#include <vector>

std::string reportHtml(const std::vector<FrameFigures>& frames,
                       const std::map<std::string, std::vector<uint64_t>>& histograms,
                       const std::vector<std::string>& images, const std::string& summaryJson);
