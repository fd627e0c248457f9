#include "built_package.h"
#include "packageloader.h"

#include <TarvikDataProcessingCore/core/AdvancedNode.h>
#include <TarvikDataProcessingCore/core/INodeMapContainer.h>

#include <gtest/gtest.h>

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
