// What pugixml lets pass but XML 1.0 forbids: bytes that are no UTF-8 or no
// XML character, entity references other than the five predefined ones and
// character references, '<' in attribute values, malformed names, repeated
// attributes. The loader parses with entity expansion switched off and lets
// these checks decode the text, so that nothing that is not well-formed XML
// is read as a register description.
#pragma once

#include <pugixml.hpp>

#include <cstddef>
#include <string>

namespace GenApi::Detail
{

// An empty text if every byte is part of a UTF-8 encoded XML character; else
// what is wrong and at which line.
std::string CheckCharacters(const char* text, size_t length);

// Decodes the references of every text and attribute value below node in place;
// an empty text if all is well, else what is wrong.
std::string DecodeTree(pugi::xml_node node);

} // namespace GenApi::Detail
