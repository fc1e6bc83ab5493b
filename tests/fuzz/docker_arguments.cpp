// AUX_DOCKER_ARGS: whatever the user sets.
#include "fuzz.h"

#include "docker.h"

#include <cstdlib>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The environment knows no zero bytes.
    const std::string text = fuzz::split(fuzz::textOf(data, size), '\0').front();
    setenv("AUX_DOCKER_ARGS", text.c_str(), 1);
    std::vector<std::string> command;
    fuzz::setRunner([&command](const std::vector<std::string>& arguments) {
        command = arguments;
        return orb::process::detail::RunResult{0, "/usr/bin/env\n", {}};
    });
    fuzz::require(orb::lvm::detail::runHubContainer("the-image", "the-container"), "the client's status is the result");
    std::vector<std::string> expected{"/usr/bin/env", "run", "-di", "--network=host", "--name=the-container"};
    for (const std::string& word : fuzz::streamWords(text)) {
        expected.push_back(word);
    }
    expected.emplace_back("the-image");
    fuzz::require(command == expected, "the words stand between the name and the image");
    return 0;
}
