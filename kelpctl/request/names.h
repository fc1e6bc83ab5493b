// The names that a request is about, and those that the backends accept.
#pragma once

#include "request/request.h"

#include <string>

namespace kelpctl {

// What the placeholders of advice stand for.
struct Names {
    // 1: "kelpctl" and the flags that led here, to be put in front of a command.
    std::string invocation = "kelpctl";
    // 2: the distribution or image.
    std::string image;
    // 3: the container.
    std::string container;
    // 4: what the failure is about: a path, a program, a status.
    std::string subject;
};

// Of what the request works on; there is no subject yet.
Names namesOf(const Request& request);

// The names that WSL accepts, and those that Docker accepts for the last part of a repository's name.
bool isWslName(const std::string& name);
bool isDockerName(const std::string& name);

// Letters of ASCII in lower case; WSL takes names that differ in case for the same.
std::string lowered(std::string text);

} // namespace kelpctl
