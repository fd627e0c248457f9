// Slot results and the combiner that logs what slots threw.
#include "failure_text.h"
#include "log_capture.h"

#include <TarvikDataProcessingCore/utils/SlotResult.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

using namespace Tarvik::DataProcessing;
using ::testing::ElementsAre;

namespace
{

template <typename E>
Utils::ExceptionPtr exceptionOf(const E& exception)
{
    try
    {
        throw exception;
    }
    catch (...)
    {
        return Utils::getCurrentException();
    }
}

} // namespace

TEST(ExceptionResult, RethrowsOnceAndIsThenInvalid)
{
    EXPECT_EQ(failureOf([] { Utils::ExceptionResult<void> result{Utils::ExceptionPtr()}; }),
              "InvalidArgumentException: Invalid exception pointer passed.");
    Utils::ExceptionResult<void> result(exceptionOf(std::out_of_range("index 9")));
    EXPECT_TRUE(result.isValid());
    EXPECT_TRUE(result.hasException());
    EXPECT_THAT([&] { result.get(); }, ::testing::ThrowsMessage<std::out_of_range>("index 9"));
    EXPECT_FALSE(result.isValid());
    EXPECT_EQ(failureOf([&] { result.get(); }), "RuntimeException: Result is not valid.");
    EXPECT_EQ(failureOf([&] { (void)result.hasException(); }), "RuntimeException: Result is not valid.");
}

TEST(VoidCombiner, LogsEachExceptionInOrderAndConsumesTheResults)
{
    Utils::SlotResults results;
    results.push_back(std::make_unique<Utils::ValueResult<void>>());
    results.push_back(std::make_unique<Utils::ExceptionResult<void>>(
        exceptionOf(INVALID_ARGUMENT_EXCEPTION("Bad width %d.", 0))));
    results.push_back(std::make_unique<Utils::ValueResult<void>>());
    results.push_back(
        std::make_unique<Utils::ExceptionResult<void>>(exceptionOf(std::runtime_error("lost"))));
    results.push_back(std::make_unique<Utils::ExceptionResult<void>>(exceptionOf(3.5)));

    LogCapture log;
    const Utils::VoidCombiner combiner;
    combiner(results);

    char address[32];
    std::snprintf(address, sizeof address, "%p", static_cast<const void*>(&combiner));
    const std::string prefix = std::string("SlotCombiner ") + address + ": ";
    std::vector<std::string> texts;
    for (const Utils::LogEntry& entry : log.entries())
    {
        EXPECT_EQ(entry.severity, Utils::Severitiy_Warning);
        EXPECT_EQ(entry.category, "tarvik.dataprocessing.utils.SlotCombiner");
        texts.push_back(entry.text);
    }
    EXPECT_THAT(texts, ElementsAre(prefix + "Exception caught while invoking a slot. Message: Bad width 0.",
                                   prefix + "Exception caught while invoking a slot. Message: lost",
                                   prefix + "Unknown exception caught while invoking a slot."));
    EXPECT_FALSE(results[1]->isValid());
    EXPECT_FALSE(results[4]->isValid());
    EXPECT_TRUE(results[0]->isValid());
}
