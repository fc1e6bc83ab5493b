#include "asking/docker_settings.h"

#include "asking/settings_file.h"
#include "terminal/json.h"
#include "terminal/platform.h"

#include "lvm/files.h"

#include "host/environment.h"

#include <algorithm>
#include <exception>
#include <filesystem>

namespace kelpctl {
namespace {

namespace json = boost::json;

// Empty as well for what is no text.
std::string variable(const char* name)
{
    try {
        return foundation::core::env::variable(name).value_or("");
    } catch (const std::exception&) {
        return {};
    }
}

void addHelper(DockerSettings& settings, const std::string& name)
{
    const std::string program = "docker-credential-" + name;
    const auto& known = settings.helpers;
    if (!name.empty() && std::find(known.begin(), known.end(), program) == known.end()) {
        settings.helpers.push_back(program);
    }
}

std::filesystem::path configurationFile()
{
    const std::string folder = variable("DOCKER_CONFIG");
    return (folder.empty() ? userFolder() / ".docker" : orb::lvm::detail::toPath(folder)) / "config.json";
}

} // namespace

DockerSettings settingsIn(std::string_view configuration)
{
    DockerSettings settings;
    const json::value value = parsedJson(configuration);
    if (const std::string context = textAt(value, "currentContext"); !context.empty()) {
        settings.choice = EngineChoice::configuration;
        settings.chosen = context;
    }
    addHelper(settings, textAt(value, "credsStore"));
    const json::object* members = value.if_object();
    const json::value* helpers = members == nullptr ? nullptr : members->if_contains("credHelpers");
    if (helpers != nullptr && helpers->is_object()) {
        for (const auto& [registry, helper] : helpers->as_object()) {
            addHelper(settings, helper.is_string() ? std::string(helper.get_string()) : std::string());
        }
    }
    return settings;
}

DockerSettings dockerSettings()
{
    DockerSettings settings;
    try {
        settings = settingsIn(settingsFile(configurationFile()).value_or(""));
    } catch (const std::exception&) {
        // A folder's name that is no text holds no file.
    }
    if (const std::string host = variable("DOCKER_HOST"); !host.empty()) {
        settings.choice = EngineChoice::hostVariable;
        settings.chosen = host;
    } else if (const std::string context = variable("DOCKER_CONTEXT"); !context.empty()) {
        settings.choice = EngineChoice::contextVariable;
        settings.chosen = context;
    }
    return settings;
}

} // namespace kelpctl
