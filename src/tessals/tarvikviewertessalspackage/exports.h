// The package's whole outer surface: sixteen functions with C linkage. The
// framework asks for the interface version and the manifest, then creates and
// destroys nodes through them. Nothing else leaves the library (exports.map).
#pragma once

#include <TarvikDataProcessingCore/core/INode.h>
#include <TarvikDataProcessingCore/core/IResourcePool.h>

#include <memory>

#define TESSAL_EXPORT __attribute__((visibility("default")))

using TessalResourcePool = std::shared_ptr<Tarvik::DataProcessing::Core::IResourcePool>;
using TessalNode = Tarvik::DataProcessing::Core::INode;

extern "C"
{
    // Version of this export table: always 2.
    TESSAL_EXPORT int get_InterfaceVersion();
    // A fresh malloc'ed copy of the manifest text with its zero byte; give it back through destroy_Info.
    TESSAL_EXPORT char* create_StaticInfo();
    // The package has no dynamic information: always null.
    TESSAL_EXPORT char* create_DynamicInfo();
    // Frees *info and sets it to null; takes the address of the caller's pointer.
    TESSAL_EXPORT void destroy_Info(char** info);

    TESSAL_EXPORT TessalNode* create_Converter(const TessalResourcePool& resourcePool);
    TESSAL_EXPORT void destroy_Converter(TessalNode* node);
    TESSAL_EXPORT TessalNode* create_Decompressor(const TessalResourcePool& resourcePool);
    TESSAL_EXPORT void destroy_Decompressor(TessalNode* node);
    TESSAL_EXPORT TessalNode* create_Decoupler(const TessalResourcePool& resourcePool);
    TESSAL_EXPORT void destroy_Decoupler(TessalNode* node);
    TESSAL_EXPORT TessalNode* create_Gate(const TessalResourcePool& resourcePool);
    TESSAL_EXPORT void destroy_Gate(TessalNode* node);
    TESSAL_EXPORT TessalNode* create_HistogramExtractor(const TessalResourcePool& resourcePool);
    TESSAL_EXPORT void destroy_HistogramExtractor(TessalNode* node);
    TESSAL_EXPORT TessalNode* create_SharpnessExtractor(const TessalResourcePool& resourcePool);
    TESSAL_EXPORT void destroy_SharpnessExtractor(TessalNode* node);
}
