// What is behind a failure: by the status and the code of the program that failed, and by asking further. Never by the
// words that a program printed, which are in the user's language.
#pragma once

#include "asking/docker_settings.h"
#include "failure/advice_table.h"
#include "request/request.h"

#include <cstdint>
#include <optional>
#include <string>

namespace kelpctl {

// What Docker's client ends with when no program ran, it could not be executed, or it was not found. A program may end
// with these as well.
inline constexpr std::int32_t dockerRefused = 125;
inline constexpr std::int32_t dockerNotExecutable = 126;
inline constexpr std::int32_t dockerNotFound = 127;

// What to tell of an engine that does not answer, by what has decided which engine is asked.
AdviceKey causeOfSilentEngine(EngineChoice choice);

// The process service's status for a program that does not exist.
inline constexpr std::int32_t noSuchProgram = 127;

// The key of the cause's advice, empty when there is nothing more to say.
AdviceKey causeOf(AdviceKey identifier, const std::optional<Run>& run, const Context& context);

// What an interrupted run may have left behind.
AdviceKey causeOfInterruption(const std::optional<Run>& run);

// The code path in what a program printed: on standard output, where wsl.exe tells its failures, or else on standard
// error. Empty when there is none.
std::string codeOf(const Run& run);

// Whether Windows' own wsl.exe answers with it when there is no WSL behind it. A program may end with it as well.
bool isStatusWithoutWsl(std::int32_t status);

// Why there is no `wsl.exe`: what it is looked up with may be missing, as on other systems than Windows.
AdviceKey causeOfMissingWsl(const Context& context);

// Why `wsl.exe` failed at something else than running a program.
AdviceKey causeOfWslStatus(const Run& run);

} // namespace kelpctl
