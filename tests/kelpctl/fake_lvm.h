// A library that does nothing but write down how it was called and do what a test tells it to.
#pragma once

#include "host/process.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

struct FakeLvm {
    // One text a call: "<function> <arguments, each in brackets>".
    std::vector<std::string> calls;

    // What happens inside the calls.
    std::function<void()> duringImport = [] {};
    std::function<void()> duringClear = [] {};
    std::function<bool()> duringStart = [] { return true; };
    std::function<bool()> duringStop = [] { return true; };
    std::function<void()> duringCheck = [] {};
    // The search for the backend's program.
    std::function<void()> duringSearch = [] {};
    double checkResult = 0;

    // Of the backend that is not WSL.
    std::string dockerPath = "/usr/bin/docker";
};

FakeLvm& fakeLvm();

// What the observer of child programs sees when the library runs one.
void ranProgram(const std::vector<std::string>& arguments, const orb::process::detail::RunResult& result);

// Writes a record the way the library does.
void logAs(const char* channel, std::uint32_t severity, const std::string& message);
