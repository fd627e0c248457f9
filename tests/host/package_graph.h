// The built package's catalog and one graph of it, with the outputs of each node
// of the last update only: a value kept longer would hold on to its buffer.
#pragma once

#include "built_package.h"
#include "modulecatalog.h"

#include <TarvikDataProcessingCore/core/IImage.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <string>

class PackageGraph : public ::testing::Test
{
protected:
    void build(const GraphDescription& description)
    {
        graph.emplace();
        catalog.build(*graph, description);
        graph->setObserver(
            [this](const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>&,
                   const std::string& node, const Tarvik::DataProcessing::Core::ValueMap& outputs)
            { last[node] = outputs; });
    }

    // Starts the graph, runs the updates, each followed by `check` with its number, and stops.
    void run(
        uint64_t updates, const std::function<void(uint64_t)>& check = [](uint64_t) {})
    {
        graph->start();
        for (uint64_t update = 0; update < updates; ++update)
        {
            graph->runUpdate();
            check(update);
        }
        graph->stop();
    }

    template <typename T = Tarvik::DataProcessing::Core::IImage>
    Tarvik::DataProcessing::Utils::COWPtr<T> lastValue(const std::string& node,
                                                       const char* pin = "Image") const
    {
        return last.at(node).at(pin).template get<Tarvik::DataProcessing::Utils::COWPtr<T>>(true);
    }

    PackageLoader package{builtPackagePath()};
    ModuleCatalog catalog{package};
    std::optional<Tarvik::DataProcessing::Core::Graph> graph;
    std::map<std::string, Tarvik::DataProcessing::Core::ValueMap> last;
};
