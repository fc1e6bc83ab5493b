#include "measures.h"

#include "measure_files.h"
#include "measure_programs.h"

#include <array>
#include <stdexcept>
#include <string_view>

namespace verify {

namespace {

struct Measure {
    std::string_view name;
    Answer (*function)(const std::string& argument, const Names& names);
};

constexpr std::array measures = {
    Measure{"inherited-handles", inheritedHandles},
    Measure{"handle-list", handleList},
    Measure{"arguments", oddArguments},
    Measure{"kept-pipe", keptPipe},
    Measure{"tree", endedTree},
    Measure{"command-line", longCommandLine},
    Measure{"bare-environment", bareEnvironment},
    Measure{"long-path", longPath},
    Measure{"temporary-folder", temporaryFolderByVariable},
    Measure{"link", linkOf},
    Measure{"aliases", programsOfTheStore},
    Measure{"growing-file", growingFile},
    Measure{"adapter", adapters},
    Measure{"registration", registration},
    Measure{"console-text", consoleText},
};

} // namespace

Answer measure(const std::string& name, const std::string& argument, const Names& names)
{
    for (const Measure& each : measures) {
        if (each.name == name) {
            return each.function(argument, names);
        }
    }
    throw std::invalid_argument("no such measure: " + name);
}

} // namespace verify
