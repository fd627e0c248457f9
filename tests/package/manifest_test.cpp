#include "built_package.h"
#include "packageloader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

TEST(Manifest, MatchesTheReferenceByteForByte)
{
    std::ifstream file(std::string(TESSAL_TEST_DATA_DIR) + "/package/manifest.json", std::ios::binary);
    ASSERT_TRUE(file);
    std::stringstream reference;
    reference << file.rdbuf();
    EXPECT_EQ(PackageLoader(builtPackagePath()).manifest(), reference.str());
}
