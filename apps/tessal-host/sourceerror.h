// A frame source that cannot be opened: a missing file or folder, a folder
// without frames, a camera that is not there. The host ends with the exit code
// for sources that could not be opened.
#pragma once

#include <stdexcept>

class SourceError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
