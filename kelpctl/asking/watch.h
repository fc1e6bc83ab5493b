// Looks at the program that runs from time to time, and tells how far its work is.
#pragma once

#include "asking/journal.h"
#include "asking/stage.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

namespace kelpctl {

// What a watch looks with. Each gives nothing where there is nothing to see.
struct Eyes {
    using Size = std::optional<std::uint64_t>;

    std::function<Size(const std::filesystem::path& file)> sizeOf;
    std::function<Size(std::uint32_t processId, const std::filesystem::path& file)> readBy;
    // On the volume of the folder.
    std::function<Size(const std::filesystem::path& folder)> freeIn;
    // Of an archive, when it is unpacked.
    std::function<Size(const std::filesystem::path& archive)> unpacked;
};

// Those of the system.
Eyes systemEyes();

// One thread looks, about once a second; the journal may change meanwhile.
class Watch {
public:
    Watch(const RunJournal& journal, std::optional<std::chrono::seconds> stallLimit, Eyes eyes = systemEyes())
        : journal_(journal), eyes_(std::move(eyes))
    {
        expected_.stallLimit = stallLimit;
    }

    struct View {
        // Of the run, counted from 1; 0 when nothing runs.
        std::size_t run = 0;
        Stage stage;
    };
    View look(std::chrono::steady_clock::time_point now);

private:
    void begin(const RunJournal::Running& program);
    Sample sampleOf(const RunJournal::Running& program) const;

    const RunJournal& journal_;
    Eyes eyes_;
    std::size_t run_ = 0;
    // The disk, or the archive.
    std::filesystem::path file_;
    Expectation expected_;
    std::vector<Sample> samples_;
};

} // namespace kelpctl
