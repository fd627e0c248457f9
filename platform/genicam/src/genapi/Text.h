// Conversions between document text and numbers, shared by the loader and
// the nodes' ToString and FromString. Everything here is strict: a text that
// is not exactly a number of the wanted form gives no value.
#pragma once

#include <GCBase/GCString.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace GenApi::Detail
{

// "0x1F", "0X1f", "42", "-42": the HexOrDecimal form of the register description.
// Hexadecimal texts give the bit pattern of up to 64 bits, so "0xFFFFFFFFFFFFFFFF" is -1.
std::optional<int64_t> ParseInteger(std::string_view text);
// A decimal or scientific floating-point text as strtod reads it, "INF" and "NaN" included.
std::optional<double> ParseFloat(std::string_view text);
// "true", "false", "1", "0": the xs:boolean form.
std::optional<bool> ParseBoolean(std::string_view text);
// [A-Za-z][0-9A-Za-z_]*: the form of node names.
bool IsNodeName(std::string_view text);

GenICam::gcstring FormatInteger(int64_t value);
GenICam::gcstring FormatHex(int64_t value);
// The shortest text that reads back as the same double.
GenICam::gcstring FormatFloat(double value);

} // namespace GenApi::Detail
