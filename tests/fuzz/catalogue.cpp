// Files of translations: whatever is in them, a message is shown, and it is text that holds its arguments.
#include "fuzz.h"

#include "host/configuration.h"
#include "host/messages.h"

#include <filesystem>
#include <fstream>

#include <unistd.h>

namespace {

using namespace foundation::core;

// A tree of this process's own, with the one file in it; gone with the program.
class Tree {
public:
    Tree() : root_(std::filesystem::temp_directory_path() / ("zqorb-fuzz-" + std::to_string(getpid())))
    {
        std::filesystem::create_directories(root_ / "resources");
        config::Configuration configuration;
        configuration.setInstallationRoot(root_.string());
        configuration.setLanguage("de");
        config::configure(configuration);
    }
    ~Tree()
    {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;

    void write(std::string_view content) const
    {
        std::ofstream(root_ / "resources" / "orb_container_support.de.json", std::ios::binary) << content;
    }

private:
    std::filesystem::path root_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Tree tree;
    tree.write(fuzz::textOf(data, size));
    for (const char* identifier : {"IMAGE_NOT_EXIST", "DOCKER_NOT_AVAILABLE", "NO_SUCH_MESSAGE"}) {
        const std::string text = message::localisedText({"orb:container_support", identifier, {{"the {1} argument"}}});
        fuzz::require(fuzz::isUtf8(text), "a message is UTF-8");
        const bool showsArgument = text.find("the {1} argument") != std::string::npos;
        fuzz::require(showsArgument || identifier == std::string("DOCKER_NOT_AVAILABLE"),
                      "a message holds its argument");
    }
    return 0;
}
