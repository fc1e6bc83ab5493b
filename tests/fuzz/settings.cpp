// The files and answers that kelpctl reads of others: .wslconfig, Docker's config.json, "docker version".
#include "fuzz.h"

#include "asking/docker.h"
#include "asking/docker_settings.h"
#include "asking/wsl_config.h"

#include <algorithm>
#include <set>

namespace {

void requireOneLine(const std::string& value, std::string_view text)
{
    fuzz::require(value.find('\n') == std::string::npos, "a value is of one line");
    fuzz::require(value.size() <= text.size(), "nothing is added to a value");
}

void readWslConfig(std::string_view text)
{
    const kelpctl::WslConfig config = kelpctl::wslConfigIn(text);
    requireOneLine(config.kernel, text);
    requireOneLine(config.networkingMode, text);
    const bool set = !config.kernel.empty() || !config.networkingMode.empty();
    fuzz::require(!set || (text.find('[') != std::string_view::npos && text.find('=') != std::string_view::npos),
                  "what is set is set in a section");
}

void readDockerSettings(std::string_view text)
{
    const kelpctl::DockerSettings settings = kelpctl::settingsIn(text);
    fuzz::require(!settings.chosen.empty(), "a context is chosen");
    fuzz::require(settings.choice == kelpctl::EngineChoice::configuration || settings.chosen == "default",
                  "what the configuration does not name is the default");
    fuzz::require(std::set<std::string>(settings.helpers.begin(), settings.helpers.end()).size() ==
                      settings.helpers.size(),
                  "each helper is named once");
    fuzz::require(std::all_of(settings.helpers.begin(), settings.helpers.end(),
                              [](const std::string& each) {
                                  const std::string start = "docker-credential-";
                                  return each.starts_with(start) && each.size() > start.size();
                              }),
                  "a helper has a name");
}

void readEngine(std::string_view text)
{
    const kelpctl::Programs programs{
        [text](const auto& arguments, const auto& /*environment*/, const auto& /*folder*/) {
            return kelpctl::runOf(arguments, {0, std::string(text), {}});
        },
        {}};
    const kelpctl::DockerEngine engine = kelpctl::askEngine(programs, "docker");
    fuzz::require(engine.product != kelpctl::DockerProduct::desktop || engine.platform.starts_with("Docker Desktop"),
                  "Docker Desktop names itself");
    const std::string endpoint = kelpctl::askEndpoint(programs, "docker");
    fuzz::require(endpoint.find('\n') == std::string::npos, "an endpoint is of one line");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = fuzz::textOf(data, size);
    readWslConfig(text);
    readDockerSettings(text);
    readEngine(text);
    return 0;
}
