#pragma once

#include <string>
#include <string_view>

// WSL_STAND_IN_MODE: a comma-separated list of ways to behave differently. "MODE@VERB" limits one to a verb: version,
// list, import, unregister, terminate, shutdown, status, set-default, help or exec.
namespace stand_in {

// The environment's value, or the fallback where the variable is not set.
std::string environmentOr(const char* name, std::string_view fallback);

// A number from the environment; a value that is none counts as not set.
long numberFromEnvironment(const char* name, long fallback);

// Tells which verb this process carries out. Called once, before any question.
void setVerb(std::string_view verb);

bool modeIsOn(std::string_view mode);

// The value of "MODE=VALUE"; empty when that mode is off.
std::string modeValue(std::string_view mode);

} // namespace stand_in
