// What the help says about each command, and the words that some of them take.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace kelpctl {

struct CommandText {
    const char* name;
    const char* summary;
    const char* example;
};

inline constexpr std::array<CommandText, 13> commandTexts = {{
    {"setup", "Create the environment, as the host's interpreter does", "kelpctl setup kelp_hub_distro.tar.gz"},
    {"teardown", "Remove the environment, as the host's interpreter does", "kelpctl teardown"},
    {"check", "Print 0 when WSL can be used, -3 when it cannot, whichever backend is selected", "kelpctl check"},
    {"doctor", "Examine this computer: what there is, what is missing, what to do next", "kelpctl doctor"},
    {"provision", "Create a distribution or an image from an archive",
     "kelpctl --docker provision --archive rootfs.tar --name my_hub --root-fs"},
    {"remove", "Remove a distribution or an image", "kelpctl remove my_hub"},
    {"start", "Start the container", "kelpctl --docker start --container kelp_hub --image my_hub"},
    {"stop", "Stop and remove the container", "kelpctl --docker stop --container kelp_hub"},
    {"exec", "Run the program behind \"--\" inside the environment; the exit status is the program's",
     "kelpctl exec -e LEVEL=3 -- ls -l /opt"},
    {"prefix", "Print the start of a command line that runs inside the environment", "kelpctl prefix --vector"},
    {"env", "Print the arguments behind \"--\" and the variables, prepared for the environment",
     "kelpctl --docker env -e LEVEL=3 -- docker exec kelp_hub"},
    {"completion", "Print a script that teaches a shell to complete kelpctl's commands and flags",
     "source <(kelpctl completion bash)"},
    {"help", "Show the help of a command", "kelpctl help exec"},
}};

inline constexpr std::array shells = {"bash", "powershell"};
inline constexpr std::array logLevels = {"error", "detail"};

std::vector<std::string> commandNames();

// Whether what stands behind "--" is a program with its arguments.
bool takesProgram(const std::string& command);

// Below the flags: examples, variables, exit statuses.
std::string programHelp();

} // namespace kelpctl
