// A library that looks like a package but is broken in one way, chosen by the build:
// FAKE_WRONG_VERSION, FAKE_BAD_MANIFEST or FAKE_NO_MANIFEST.
#include <cstdlib>
#include <cstring>

extern "C"
{
    __attribute__((visibility("default"))) int get_InterfaceVersion()
    {
#ifdef FAKE_WRONG_VERSION
        return 1;
#else
        return 2;
#endif
    }

#ifndef FAKE_NO_MANIFEST
    __attribute__((visibility("default"))) char* create_StaticInfo()
    {
        const char* const text = "{\"Modules\": [ {\"Name\": \"Gate\"} ]";
        char* const block = static_cast<char*>(std::malloc(std::strlen(text) + 2));
        std::strcpy(block, text);
#ifndef FAKE_BAD_MANIFEST
        std::strcat(block, "}");
#endif
        return block;
    }
#endif

    __attribute__((visibility("default"))) void destroy_Info(char** info)
    {
        std::free(*info);
        *info = nullptr;
    }
}
