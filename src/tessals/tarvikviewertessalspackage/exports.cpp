// The exported factories. They hold no state and catch nothing: a failing node
// constructor's exception reaches the caller, and the partly built node is gone.
#include "exports.h"

#include "converter.h"
#include "decompressor.h"
#include "decoupler.h"
#include "gate.h"
#include "histogramextractor.h"
#include "sharpnessextractor.h"

#include <cstdlib>

using namespace TarvikViewerTessalPackage;

extern "C"
{

    TESSAL_EXPORT int get_InterfaceVersion()
    {
        return 2;
    }

    TESSAL_EXPORT char* create_DynamicInfo()
    {
        return nullptr;
    }

    TESSAL_EXPORT void destroy_Info(char** info)
    {
        if (!info)
            return;
        std::free(*info);
        *info = nullptr;
    }

    TESSAL_EXPORT TessalNode* create_Converter(const TessalResourcePool& resourcePool)
    {
        return new Converter(resourcePool);
    }

    TESSAL_EXPORT void destroy_Converter(TessalNode* node)
    {
        delete node;
    }

    TESSAL_EXPORT TessalNode* create_Decompressor(const TessalResourcePool& resourcePool)
    {
        return new Decompressor(resourcePool);
    }

    TESSAL_EXPORT void destroy_Decompressor(TessalNode* node)
    {
        delete node;
    }

    TESSAL_EXPORT TessalNode* create_Decoupler(const TessalResourcePool& resourcePool)
    {
        return new Decoupler(resourcePool);
    }

    TESSAL_EXPORT void destroy_Decoupler(TessalNode* node)
    {
        delete node;
    }

    TESSAL_EXPORT TessalNode* create_Gate(const TessalResourcePool& resourcePool)
    {
        return new Gate(resourcePool);
    }

    TESSAL_EXPORT void destroy_Gate(TessalNode* node)
    {
        delete node;
    }

    TESSAL_EXPORT TessalNode* create_HistogramExtractor(const TessalResourcePool& resourcePool)
    {
        return new HistogramExtractor(resourcePool);
    }

    TESSAL_EXPORT void destroy_HistogramExtractor(TessalNode* node)
    {
        delete node;
    }

    TESSAL_EXPORT TessalNode* create_SharpnessExtractor(const TessalResourcePool& resourcePool)
    {
        return new SharpnessExtractor(resourcePool);
    }

    TESSAL_EXPORT void destroy_SharpnessExtractor(TessalNode* node)
    {
        delete node;
    }
}
