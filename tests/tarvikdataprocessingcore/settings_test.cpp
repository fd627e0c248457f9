// Settings by path: typed values, integers that read as doubles but not the
// other way round, refusals that change nothing, and a file that survives a reopen.
#include <TarvikDataProcessingCore/core/MemorySettings.h>

#include <GCBase/GCException.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

using namespace Tarvik::DataProcessing;

TEST(MemorySettings, StoresTypedValuesByPathAndRefusesOthers)
{
    Core::MemorySettings settings;
    EXPECT_FALSE(settings.contains("Enable"));
    settings.setBool("Enable", true);
    settings.setInt({"Decoupler", "ThrottleMode"}, 2);
    settings.setDouble("Fps", 12.5);
    EXPECT_TRUE(settings.getBool("Enable"));
    EXPECT_EQ(settings.getInt({"Decoupler", "ThrottleMode"}), 2);
    EXPECT_DOUBLE_EQ(settings.getDouble("Fps"), 12.5);
    EXPECT_DOUBLE_EQ(settings.getDouble({"Decoupler", "ThrottleMode"}), 2.0);
    EXPECT_TRUE(settings.contains("Decoupler"));
    EXPECT_FALSE(settings.contains({"Decoupler", "Fps"}));

    EXPECT_THROW(settings.getBool("Missing"), GenICam::InvalidArgumentException);
    EXPECT_THROW(settings.getBool("Fps"), GenICam::InvalidArgumentException);
    EXPECT_THROW(settings.getInt("Fps"), GenICam::InvalidArgumentException);
    EXPECT_THROW(settings.setBool(Utils::SettingsPath(), true), GenICam::InvalidArgumentException);
    EXPECT_THROW(settings.fromJson("[1, 2]"), GenICam::InvalidArgumentException);
    EXPECT_THROW(settings.fromJson("{ broken"), GenICam::InvalidArgumentException);
    EXPECT_DOUBLE_EQ(settings.getDouble("Fps"), 12.5);
}

TEST(JsonFileSettings, SurvivesAReopen)
{
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("tessal-settings-" + std::to_string(getpid()) + ".json");
    Core::JsonFileSettings(file.string()).setInt({"Aoi", "AoiWidth"}, 640);
    EXPECT_EQ(Core::JsonFileSettings(file.string()).getInt({"Aoi", "AoiWidth"}), 640);
    std::filesystem::remove(file);
}
