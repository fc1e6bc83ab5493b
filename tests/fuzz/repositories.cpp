// The listings of images and containers: whatever docker.exe prints.
#include "fuzz.h"

#include "docker.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view listing = fuzz::textOf(data, size);
    fuzz::setRunner([listing](const std::vector<std::string>& arguments) {
        return orb::process::detail::RunResult{
            0, arguments.front() == "where" ? "/usr/bin/env\n" : std::string(listing), {}};
    });
    const std::vector<std::string> words = fuzz::streamWords(std::string(listing));
    fuzz::require(orb::lvm::detail::getContainersByAncestor("") == words, "containers are the words");
    const std::vector<std::string> repositories = orb::lvm::detail::getImageRepositories();
    fuzz::require(repositories.size() == words.size(), "one repository for each word");
    for (std::size_t i = 0; i < words.size(); ++i) {
        fuzz::require(repositories[i] == fuzz::split(words[i], '/').back(),
                      "a repository is what is behind the last /");
    }
    return 0;
}
