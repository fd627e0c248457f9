#include <TarvikDataProcessingCore/core/MemorySettings.h>

#include <GCBase/GCException.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

using namespace Tarvik::DataProcessing;

TEST(MemorySettings, StoresTypedValuesByPath)
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
}

TEST(MemorySettings, RefusesMissingPathsAndOtherTypes)
{
    Core::MemorySettings settings;
    settings.setDouble("Fps", 1.5);
    EXPECT_THROW(settings.getBool("Missing"), GenICam::InvalidArgumentException);
    EXPECT_THROW(settings.getBool("Fps"), GenICam::InvalidArgumentException);
    EXPECT_THROW(settings.getInt("Fps"), GenICam::InvalidArgumentException);
    EXPECT_THROW(settings.setBool(Utils::SettingsPath(), true), GenICam::InvalidArgumentException);
    EXPECT_THROW(settings.fromJson("[1, 2]"), GenICam::InvalidArgumentException);
    EXPECT_THROW(settings.fromJson("{ broken"), GenICam::InvalidArgumentException);
    EXPECT_DOUBLE_EQ(settings.getDouble("Fps"), 1.5);
}

TEST(JsonFileSettings, SurvivesAReopen)
{
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("tessal-settings-" + std::to_string(getpid()) + ".json");
    {
        Core::JsonFileSettings settings(file.string());
        settings.setBool("Enable", true);
        settings.setInt({"Aoi", "AoiWidth"}, 640);
    }
    {
        Core::JsonFileSettings settings(file.string());
        EXPECT_TRUE(settings.getBool("Enable"));
        EXPECT_EQ(settings.getInt({"Aoi", "AoiWidth"}), 640);
    }
    std::filesystem::remove(file);
}
