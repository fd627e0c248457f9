// The failure rule of the nodes that compute: a failed check logs one line and
// raises; run() catches every failure and hands error values to its output pins
// instead, so that no failure of a frame ever leaves run().
#pragma once

#include <TarvikDataProcessingCore/core/Errors.h>
#include <TarvikDataProcessingCore/core/INode.h>
#include <TarvikDataProcessingCore/threading/RecursiveMutex.h>

#include <GCBase/GCException.h>

#include <exception>
#include <initializer_list>
#include <memory>
#include <string>

namespace TarvikViewerTessalPackage::Detail
{

// What follows the last backslash of a source path; a path without one is used whole.
const char* sourceBaseName(const char* path) noexcept;

// The checks of one node's run(): class name as the log prints it, qualified
// function name, and the node's log category.
class RunChecks
{
public:
    RunChecks(const char* nodeClass, const char* function, int (*category)()) noexcept
        : m_nodeClass(nodeClass)
        , m_function(function)
        , m_category(category)
    {
    }

    // Logs "<class> <node>: <function> failed. Message: "<message>" (<file>:<line>)" at
    // severity 3 and raises GenICam::InvalidArgumentException with the message.
    [[noreturn]] void fail(const void* node, const char* message, const char* file, int line) const;

private:
    const char* m_nodeClass;
    const char* m_function;
    int (*m_category)();
};

// The failure text of the exception being handled, by the three catch families.
std::string currentFailureText();

// Runs `body`, which gives the outputs of `update`. Any failure gives instead
// one value of class `Value` in error state on each of `errorPins`, with the
// description `prefix` followed by the failure text. Never throws.
template <typename Value, typename Body>
Tarvik::DataProcessing::Core::UpdateOutputs
runGuarded(const std::shared_ptr<Tarvik::DataProcessing::Core::IGraphUpdate>& update, const char* prefix,
           std::initializer_list<const GenICam::gcstring*> errorPins, Body&& body) noexcept
{
    using namespace Tarvik::DataProcessing;
    std::string failure;
    try
    {
        return {{update, body()}};
    }
    catch (...)
    {
        failure = currentFailureText();
    }
    try
    {
        const GenICam::gcstring description(prefix + failure);
        Core::ValueMap outputs;
        for (const GenICam::gcstring* pin : errorPins)
        {
            // Each pin gets an error of its own, so that no two values share one.
            auto error = std::make_shared<Core::InvalidValueError>(description, Utils::DateTime::now());
            outputs[*pin] =
                Utils::Variant(Value(std::move(error), std::make_shared<Threading::RecursiveMutex>()));
        }
        return {{update, std::move(outputs)}};
    }
    catch (...)
    {
        // Not even an error value could be made (memory is exhausted): deliver nothing.
        return {{update, {}}};
    }
}

} // namespace TarvikViewerTessalPackage::Detail

// Fails a check of run() at this source position.
#define TESSAL_FAIL_CHECK(checks, message) (checks).fail(this, message, __FILE__, __LINE__)
