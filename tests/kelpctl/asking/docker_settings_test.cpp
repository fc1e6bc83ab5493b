#include "asking/docker_settings.h"

#include "environment_variable.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

using kelpctl::dockerSettings;
using kelpctl::DockerSettings;
using kelpctl::EngineChoice;
using kelpctl::settingsIn;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(DockerSettings, AreReadFromTheConfiguration)
{
    const DockerSettings settings =
        settingsIn(R"({"auths": {}, "credsStore": "desktop", "currentContext": "desktop-linux",
        "credHelpers": {"a.example": "wincred", "b.example": "desktop", "c.example": 3}})");
    EXPECT_EQ(settings.choice, EngineChoice::configuration);
    EXPECT_EQ(settings.chosen, "desktop-linux");
    EXPECT_THAT(settings.helpers, ElementsAre("docker-credential-desktop", "docker-credential-wincred"));
}

TEST(DockerSettings, TextThatIsNoConfigurationSaysNothing)
{
    for (const std::string& text : {std::string(), std::string("{"), std::string("[]"), std::string("\xff\xfe{"),
                                    std::string(100000, '['), std::string(R"({"credsStore": 3, "credHelpers": "x"})"),
                                    std::string(R"({"credsStore": "", "currentContext": ""})")}) {
        const DockerSettings settings = settingsIn(text);
        EXPECT_EQ(settings.choice, EngineChoice::builtIn);
        EXPECT_EQ(settings.chosen, "default");
        EXPECT_THAT(settings.helpers, IsEmpty());
    }
}

class DockerSettingsOfTheUser : public testing::Test {
protected:
    void write(const std::filesystem::path& file, const std::string& text) const
    {
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }

    TemporaryFolder folder;
    EnvironmentVariable home{"HOME", folder.path().string()};
    EnvironmentVariable profile{"USERPROFILE", folder.path().string()};
    EnvironmentVariable configuration{"DOCKER_CONFIG"};
    EnvironmentVariable host{"DOCKER_HOST"};
    EnvironmentVariable context{"DOCKER_CONTEXT"};
};

TEST_F(DockerSettingsOfTheUser, LieInTheUsersFolderUnlessAVariableNamesAnother)
{
    EXPECT_EQ(dockerSettings().choice, EngineChoice::builtIn);
    write(folder.path() / ".docker" / "config.json", R"({"currentContext": "one"})");
    EXPECT_EQ(dockerSettings().chosen, "one");
    write(folder.path() / "other" / "config.json", R"({"currentContext": "two"})");
    setVariable("DOCKER_CONFIG", (folder.path() / "other").string());
    EXPECT_EQ(dockerSettings().chosen, "two");
}

// As the client itself decides.
TEST_F(DockerSettingsOfTheUser, AddressGoesBeforeAContextAndThatBeforeTheConfiguration)
{
    write(folder.path() / ".docker" / "config.json", R"({"currentContext": "one"})");
    EXPECT_EQ(dockerSettings().choice, EngineChoice::configuration);
    setVariable("DOCKER_CONTEXT", "two");
    EXPECT_EQ(dockerSettings().choice, EngineChoice::contextVariable);
    EXPECT_EQ(dockerSettings().chosen, "two");
    setVariable("DOCKER_HOST", "tcp://192.0.2.1:2375");
    EXPECT_EQ(dockerSettings().choice, EngineChoice::hostVariable);
    EXPECT_EQ(dockerSettings().chosen, "tcp://192.0.2.1:2375");
}

TEST_F(DockerSettingsOfTheUser, FolderInThePlaceOfTheFileIsNone)
{
    std::filesystem::create_directories(folder.path() / ".docker" / "config.json");
    EXPECT_EQ(dockerSettings().choice, EngineChoice::builtIn);
}

TEST_F(DockerSettingsOfTheUser, FileOfAnyLengthIsNotRead)
{
    write(folder.path() / ".docker" / "config.json", std::string(2 << 20, ' ') + R"({"currentContext": "one"})");
    EXPECT_EQ(dockerSettings().choice, EngineChoice::builtIn);
}

} // namespace
