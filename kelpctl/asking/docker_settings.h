// What Docker's client reads before it asks an engine: which engine is meant, and who keeps the passwords.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelpctl {

// What decides which engine is asked; the first that there is.
enum class EngineChoice { hostVariable, contextVariable, configuration, builtIn };

struct DockerSettings {
    EngineChoice choice = EngineChoice::builtIn;
    // The variable's value, or the name of the context.
    std::string chosen = "default";
    // The programs that the configuration names for passwords, such as "docker-credential-desktop".
    std::vector<std::string> helpers;
};

// What the text of a configuration (config.json) says by itself. Text that is none says nothing.
DockerSettings settingsIn(std::string_view configuration);

// Of this user, with the variables of this process. Throws nothing.
DockerSettings dockerSettings();

} // namespace kelpctl
