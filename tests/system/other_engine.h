// Docker's client with another engine behind it than the tests' own: the stand-in as the only docker.exe.
#pragma once

#include "machine.h"
#include "programs.h"

#include <string>

class OtherEngine {
public:
    // As the stand-in's modes say.
    explicit OtherEngine(const std::string& mode);

private:
    TemporaryFolder folder_;
    Programs programs_;
    EnvironmentVariable bridge_;
    EnvironmentVariable mode_;
    EnvironmentVariable state_;
    SearchPath searchPath_;
};
