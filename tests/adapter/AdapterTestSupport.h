// Helpers of the adapter's tests: reference files, schema validation, recording observers.
#pragma once

#include <AnythingToNodeMapAdapter/IParameterPortObserver.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace AdapterTest
{

// The bytes of tests/data/adapter/<name>; an unreadable file fails the calling test.
std::string readReference(const std::string& name);

// Runs xmllint with the GenApi 1.1 schema on text; the failure carries xmllint's output.
::testing::AssertionResult isValidRegisterDescription(const std::string& text);

// Lines of text, each without its line feed, so that a mismatch names the line.
std::vector<std::string> splitLines(const std::string& text);

// Names a parameterised case after the field name of its parameter.
struct CaseName
{
    template <typename P>
    std::string operator()(const ::testing::TestParamInfo<P>& info) const
    {
        return info.param.name;
    }
};

class RecordingObserver : public AnythingToNodeMapAdapter::IParameterPortObserver
{
public:
    virtual ~RecordingObserver() = default;

    void onParameterPortChanged(AnythingToNodeMapAdapter::IBasicParameterPort* port) override
    {
        ++calls;
        lastPort = port;
    }

    int calls = 0;
    AnythingToNodeMapAdapter::IBasicParameterPort* lastPort = nullptr;
};

} // namespace AdapterTest
