#include "reporthtml.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>

namespace
{

constexpr double plotWidth = 640.0;
constexpr double plotHeight = 200.0;
// Images shown at the top of the page, the newest last.
constexpr size_t shownImages = 4;

std::string escaped(const std::string& text)
{
    std::string out;
    for (const char c : text)
    {
        switch (c)
        {
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '&':
            out += "&amp;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

std::string number(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return text;
}

// A polyline of `values` over the plot; x spread evenly, y scaled to the largest value.
std::string polyline(const std::vector<double>& values, double top, const char* colour)
{
    std::string points;
    const double step = values.size() > 1 ? plotWidth / static_cast<double>(values.size() - 1) : 0.0;
    for (size_t i = 0; i < values.size(); ++i)
    {
        const double y = top > 0 ? plotHeight - values[i] / top * plotHeight : plotHeight;
        points += number(static_cast<double>(i) * step) + "," + number(y) + " ";
    }
    return "<polyline fill=\"none\" stroke=\"" + std::string(colour) + "\" stroke-width=\"1.5\" points=\"" +
           points + "\"/>";
}

std::string svg(const std::string& content, const std::string& caption)
{
    return "<figure><svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + number(plotWidth) + "\" height=\"" +
           number(plotHeight) + "\" viewBox=\"0 0 " + number(plotWidth) + " " + number(plotHeight) +
           "\"><rect width=\"100%\" height=\"100%\" fill=\"#fafafa\" stroke=\"#ccc\"/>" + content +
           "</svg><figcaption>" + escaped(caption) + "</figcaption></figure>\n";
}

const char* colourOf(const std::string& channel)
{
    return channel == "Red" ? "#d33" : channel == "Green" ? "#2a2" : channel == "Blue" ? "#33d" : "#333";
}

std::string histogramPlot(const std::map<std::string, std::vector<uint64_t>>& histograms)
{
    // Wide histograms are summed into at most 512 bins, so that the plot stays small.
    std::string lines;
    double top = 0.0;
    std::map<std::string, std::vector<double>> binned;
    for (const auto& [channel, counts] : histograms)
    {
        const size_t group = std::max<size_t>(1, (counts.size() + 511) / 512);
        std::vector<double>& bins = binned[channel];
        bins.assign((counts.size() + group - 1) / group, 0.0);
        for (size_t i = 0; i < counts.size(); ++i)
            bins[i / group] += static_cast<double>(counts[i]);
        top = std::max(top, *std::max_element(bins.begin(), bins.end()));
    }
    for (const auto& [channel, bins] : binned)
        lines += polyline(bins, top, colourOf(channel));
    std::string caption = "Histograms of the last frame:";
    for (const auto& [channel, counts] : histograms)
        caption += " " + channel + " (" + std::to_string(counts.size()) + " values)";
    return svg(lines, caption);
}

std::string sharpnessPlot(const std::vector<FrameFigures>& frames)
{
    std::vector<double> values;
    for (const FrameFigures& figures : frames)
        values.push_back(figures.sharpness.value_or(0.0));
    const double top = values.empty() ? 0.0 : *std::max_element(values.begin(), values.end());
    return svg(polyline(values, top, "#06c"), "Sharpness per frame, frames 0 to " +
                                                  std::to_string(frames.empty() ? 0 : frames.size() - 1) +
                                                  ", highest " + number(top));
}

std::string nodeTable(const std::string& summaryJson)
{
    const nlohmann::json summary = nlohmann::json::parse(summaryJson);
    std::string rows;
    for (const auto& node : summary["nodes"])
    {
        std::string errors;
        for (const auto& [text, count] : node["errors"].items())
            errors += escaped(text) + " (" + std::to_string(count.get<uint64_t>()) + ")<br>";
        rows += "<tr><td>" + escaped(node["name"].get<std::string>()) + "</td><td>" +
                escaped(node["module"].get<std::string>()) + "</td><td>" +
                std::to_string(node["framesIn"].get<uint64_t>()) + "</td><td>" +
                std::to_string(node["framesOut"].get<uint64_t>()) + "</td><td>" +
                number(node["runMicrosecondsMedian"].get<double>()) + "</td><td>" +
                number(node["runMicroseconds99"].get<double>()) + "</td><td>" + errors + "</td></tr>\n";
    }
    return "<table><tr><th>Node</th><th>Module</th><th>Frames in</th><th>Frames out</th><th>Run median "
           "(&micro;s)"
           "</th><th>Run 99 % (&micro;s)</th><th>Errors</th></tr>\n" +
           rows + "</table>\n";
}

} // namespace

std::string reportHtml(const std::vector<FrameFigures>& frames,
                       const std::map<std::string, std::vector<uint64_t>>& histograms,
                       const std::vector<std::string>& images, const std::string& summaryJson)
{
    std::string html =
        "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>Tessal run</title><style>"
        "body{font-family:sans-serif;margin:2em}img{max-width:45%;margin:4px;border:1px solid #ccc}"
        "table{border-collapse:collapse}td,th{border:1px solid #ccc;padding:4px 8px;text-align:left}"
        "</style></head><body>\n<h1>Tessal run: " +
        std::to_string(frames.size()) + " frames</h1>\n<h2>Last frames</h2>\n";
    const size_t first = images.size() > shownImages ? images.size() - shownImages : 0;
    for (size_t i = first; i < images.size(); ++i)
        html += "<img src=\"" + escaped(images[i]) + "\" alt=\"" + escaped(images[i]) + "\">\n";
    if (images.empty())
        html += "<p>No frame reached a display.</p>\n";
    html +=
        "<h2>Histograms</h2>\n" + (histograms.empty() ? "<p>No histogram.</p>\n" : histogramPlot(histograms));
    html += "<h2>Sharpness</h2>\n" + sharpnessPlot(frames);
    html += "<h2>Nodes</h2>\n" + nodeTable(summaryJson);
    return html + "</body></html>\n";
}
