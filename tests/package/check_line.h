// The log line of a failed check in a node's run(), matched exactly but for the
// node's address and the source line.
#pragma once

#include "log_capture.h"

#include <gtest/gtest.h>

#include <cctype>
#include <string>

inline size_t skipWhile(const std::string& text, size_t position, int (*accept)(int))
{
    while (position < text.size() && accept(static_cast<unsigned char>(text[position])))
        ++position;
    return position;
}

// Exactly one entry: "<Node> 0x<address>: TarvikViewerTessalPackage::<Node>::run failed.
// Message: "<message>" (<source file>:<line>)" at severity 3 in the node's category.
inline void expectOneCheckLine(const LogCapture& log, const std::string& node, const std::string& sourceFile,
                               const std::string& message)
{
    const auto entries = log.entries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].severity, Tarvik::DataProcessing::Utils::Severitiy_Error);
    EXPECT_EQ(entries[0].category, "tarvik.dataprocessing.tessal." + node);

    const std::string& text = entries[0].text;
    const std::string head = node + " 0x";
    ASSERT_EQ(text.compare(0, head.size(), head), 0) << text;
    size_t position = skipWhile(text, head.size(), isxdigit);
    ASSERT_GT(position, head.size()) << text;
    const std::string middle = ": TarvikViewerTessalPackage::" + node + "::run failed. Message: \"" +
                               message + "\" (" + sourceFile + ":";
    ASSERT_EQ(text.compare(position, middle.size(), middle), 0) << text;
    position += middle.size();
    const size_t lineEnd = skipWhile(text, position, isdigit);
    EXPECT_GT(lineEnd, position) << text;
    EXPECT_EQ(text.substr(lineEnd), ")") << text;
}
