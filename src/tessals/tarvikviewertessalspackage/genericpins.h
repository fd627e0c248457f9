// The pins of the nodes that hand a generic value on, Gate and Decoupler: a
// configurable input whose configured type the output takes over. A node makes
// this its friend, so that it may declare the node's pins.
#pragma once

#include <TarvikDataProcessingCore/core/IValue.h>
#include <TarvikDataProcessingCore/utils/TypeInfo.h>

#include <TarvikViewerDataTypes2/NoValue.h>

#include <GCBase/GCString.h>

#include <cstdint>

namespace TarvikViewerTessalPackage::Detail
{

struct GenericPins
{
    static constexpr uint64_t unlimited = ~uint64_t{0};
    static constexpr const char* outputDescription = "A generic output";

    // The input, whose default value is a fresh NoValue, and the output, both of IValue.
    template <typename Node>
    static void declare(Node& node, const GenICam::gcstring& input, const GenICam::gcstring& output)
    {
        using namespace Tarvik::DataProcessing;
        const Utils::Variant noValue{NoValue()};
        node.createInput(input, "A generic input, allowing many data types.",
                         Utils::TypeInfo::get<Core::IValue>(true), noValue, true, false, unlimited);
        declareOutput(node, output, Utils::TypeInfo::get<Core::IValue>(true));
    }

    // Declares `output` anew with `type`: the configured type of the input, or IValue
    // again when it is unconfigured.
    template <typename Node>
    static void declareOutput(Node& node, const GenICam::gcstring& output,
                              const Tarvik::DataProcessing::Utils::TypeInfo& type)
    {
        node.removeOutput(output);
        node.createOutput(output, outputDescription, type, true, unlimited);
    }
};

} // namespace TarvikViewerTessalPackage::Detail
