#include "asking/watch.h"

#include "asking/unpacked_size.h"
#include "asking/volume.h"
#include "terminal/counters.h"

#include "lvm/commands.h"
#include "lvm/files.h"

#include <algorithm>
#include <system_error>

namespace kelpctl {
namespace {

namespace rules = orb::lvm::detail;

// As WSL calls it.
constexpr char diskName[] = "ext4.vhdx";

Signal signalOf(const std::vector<std::string>& arguments)
{
    switch (rules::commandOf(arguments)) {
    case rules::Command::wslImport:
        return Signal::disk;
    case rules::Command::dockerLoad:
        return Signal::load;
    case rules::Command::dockerImport:
        return Signal::import;
    default:
        return Signal::none;
    }
}

} // namespace

Eyes systemEyes()
{
    return {sizeOfOpened, bytesReadBy, [](const std::filesystem::path& folder) { return volumeOf(folder).freeBytes; },
            unpackedSize};
}

// A path that is not well-formed leads nowhere, and there is nothing to see.
void Watch::begin(const RunJournal::Running& program)
{
    run_ = program.number;
    samples_.clear();
    expected_.signal = Signal::none;
    expected_.total.reset();
    try {
        const std::filesystem::path archive = rules::toPath(rules::sourceOf(program.arguments));
        const Signal signal = signalOf(program.arguments);
        const bool disk = signal == Signal::disk;
        file_ = disk ? rules::toPath(rules::importFolderOf(program.arguments)) / diskName : archive;
        if (signal != Signal::none) {
            expected_.total = disk ? eyes_.unpacked(archive) : eyes_.sizeOf(archive);
        }
        expected_.signal = signal;
    } catch (const std::system_error&) {
    }
}

Sample Watch::sampleOf(const RunJournal::Running& program) const
{
    Sample sample;
    if (expected_.signal == Signal::disk) {
        sample.bytes = eyes_.sizeOf(file_);
        sample.freeRoom = eyes_.freeIn(file_.parent_path().parent_path());
    } else if (expected_.signal != Signal::none && program.processId) {
        sample.bytes = eyes_.readBy(*program.processId, file_);
    }
    if (samples_.empty()) {
        return sample;
    }
    // A client that has closed the archive has sent all of it.
    const std::optional<std::uint64_t> before = samples_.back().bytes;
    const bool closed = expected_.signal != Signal::disk && before && !sample.bytes;
    sample.bytes = std::max(closed ? expected_.total : sample.bytes, before);
    return sample;
}

Watch::View Watch::look(std::chrono::steady_clock::time_point now)
{
    const std::optional<RunJournal::Running> program = journal_.running();
    if (!program) {
        return {};
    }
    if (program->number != run_) {
        begin(*program);
    }
    Sample sample = sampleOf(*program);
    sample.at = std::chrono::duration_cast<std::chrono::milliseconds>(now - program->start);
    samples_.push_back(sample);
    return {run_, stageOf(samples_, expected_)};
}

} // namespace kelpctl
