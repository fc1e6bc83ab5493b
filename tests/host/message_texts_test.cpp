// The texts of the library's errors, word for word: each argument stands where its meaning is said.
#include "host/configuration.h"
#include "host/messages.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using namespace foundation::core;
using message::Message;

constexpr char catalogue[] = "orb:container_support";

std::vector<Message> errors()
{
    const std::string archive = "ARCHIVE";
    const std::string image = "IMAGE";
    const std::string printed = "PRINTED";
    return {{catalogue, "DOCKER_NOT_AVAILABLE", {}},
            {catalogue, "IMAGE_NOT_EXIST", {image}},
            {catalogue, "TAR_FILE_LOAD_ERROR", {archive, image, printed}},
            {catalogue, "TAR_FILE_NOT_AVAILABLE", {archive}},
            {catalogue, "WSL_CANNOT_IMPORT_TAR_FILE", {archive, printed}}};
}

std::vector<std::string> textsIn(const std::string& language)
{
    config::Configuration configuration;
    configuration.setInstallationRoot(SOURCE_TREE);
    configuration.setLanguage(language);
    config::configure(configuration);
    std::vector<std::string> texts;
    for (const Message& error : errors()) {
        texts.push_back(message::localisedText(error));
    }
    return texts;
}

TEST(MessageTexts, AreTheseInEnglish)
{
    const std::vector<std::string> expected = {
        "The Docker client docker.exe was not found on the search path. Install Docker, or unset USE_WSL to use WSL.",
        "The Docker image IMAGE is still missing after it was pulled, loaded or imported. The archive may hold an "
        "image of another name.",
        "Docker could not load the archive ARCHIVE as the image IMAGE. The Docker client reported: PRINTED",
        "The archive ARCHIVE does not exist.",
        "WSL could not import the archive ARCHIVE. wsl.exe reported:\nPRINTED",
    };
    EXPECT_EQ(textsIn("en"), expected);
}

TEST(MessageTexts, AreTheseInGerman)
{
    const std::vector<std::string> expected = {
        "Der Docker-Client docker.exe wurde im Suchpfad nicht gefunden. Installieren Sie Docker, oder entfernen Sie "
        "USE_WSL aus der Umgebung, um WSL zu verwenden.",
        "Das Docker-Image IMAGE fehlt weiterhin, nachdem es gezogen, geladen oder importiert wurde. Das Archiv enthält "
        "möglicherweise ein Image mit anderem Namen.",
        "Docker konnte das Archiv ARCHIVE nicht als Image IMAGE laden. Der Docker-Client meldete: PRINTED",
        "Das Archiv ARCHIVE ist nicht vorhanden.",
        "WSL konnte das Archiv ARCHIVE nicht importieren. wsl.exe meldete:\nPRINTED",
    };
    EXPECT_EQ(textsIn("de"), expected);
}

} // namespace
