// The text of the GenICam exception that an action raises, with its class name,
// or "no exception": lets a test compare the whole failure in one expectation.
#pragma once

#include <GCBase/GCException.h>

#include <string>

template <typename Action>
std::string failureOf(Action&& action)
{
    try
    {
        action();
    }
    catch (const GenICam::GenericException& e)
    {
        return std::string(e.GetExceptionName()) + ": " + e.GetDescription();
    }
    return "no exception";
}
