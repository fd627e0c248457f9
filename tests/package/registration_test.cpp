#include "built_package.h"
#include "log_capture.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace TarvikViewerTessalPackage
{
class Gate;
}

using namespace Tarvik::DataProcessing;

TEST(PackageRegistration, LoadingThePackageRegistersItsNodeClasses)
{
    PackageLoader package{builtPackagePath()};
    const Utils::TypeInfo gate = Utils::TypeInfo::get<TarvikViewerTessalPackage::Gate>(true);
    EXPECT_EQ(gate.getName(), GenICam::gcstring("TarvikViewerTessalPackage::Gate"));
    for (const Utils::TypeInfo& base :
         {Utils::TypeInfo::get<Core::AdvancedNode>(true), Utils::TypeInfo::get<Core::NodeBase>(true),
          Utils::TypeInfo::get<Core::INode>(true), Utils::TypeInfo::get<Utils::IObject>(true),
          Utils::TypeInfo::get<Core::INodeMapContainer>(true)})
        EXPECT_TRUE(gate.canConvert(base)) << base.getName();
}

TEST(PackageRegistration, AFailedRegistrationLogsOneLineAndTheLibraryStaysLoaded)
{
    LogCapture log;
    const std::string path = std::string(TESSAL_LIBRARY_DIR) + "/libfailing_registration_module.so";
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    ASSERT_NE(handle, nullptr) << dlerror();
    const auto loaded = reinterpret_cast<int (*)()>(dlsym(handle, "strandedModuleLoaded"));
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(loaded(), 1);

    const auto entries = log.entries();
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].severity, Utils::Severitiy_Warning);
    EXPECT_EQ(entries[0].category, "tarvik.dataprocessing.utils.TypeInfo");
    EXPECT_TRUE(entries[0].text.starts_with("TypeInfo 0x")) << entries[0].text;
    EXPECT_TRUE(entries[0].text.ends_with(
        ": Exception caught while registering a type. Message: Base type is not registered."))
        << entries[0].text;
    dlclose(handle);
}
