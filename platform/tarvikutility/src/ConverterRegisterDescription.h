// The converter's own register description: one feature per setting of the
// setting table, each on a 64-bit register of the settings registers.
#pragma once

#include <string>

namespace Tarvik::Conversion
{

// Name of the port the registers are read and written through.
inline constexpr const char* kConverterPortName = "Device";

std::string BuildConverterRegisterDescription();

} // namespace Tarvik::Conversion
