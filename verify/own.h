// What a run makes for itself, and takes away again: a folder, a distribution, an image. All have one name that no other
// run has, and a lock tells later runs whether this one still lives.
#pragma once

#include "answer.h"
#include "machine.h"
#include "names.h"
#include "system.h"

#include <filesystem>
#include <optional>
#include <string>

namespace verify {

class OwnThings {
public:
    // Makes the folder, and gives `names` the placeholders of all that is the run's own. Throws what the file system
    // throws when the temporary folder cannot be written to.
    OwnThings(const Machine& machine, Names& names);
    // Removes the folder.
    ~OwnThings();
    OwnThings(const OwnThings&) = delete;
    OwnThings& operator=(const OwnThings&) = delete;

    // What came of making it, at the first call.
    const Answer& distribution();
    const Answer& image();

    // Removes what was made outside of the folder, and puts the default distribution back.
    void remove();

    // Removes what runs that were killed have left, and says what.
    static std::vector<std::string> removeLeftovers(const Machine& machine);

private:
    const Machine& machine_;
    const Names& names_;
    std::string name_;
    std::filesystem::path folder_;
    std::optional<Lock> lock_;
    std::optional<Answer> distribution_;
    std::optional<Answer> image_;
};

} // namespace verify
