#include "registry.h"

#include "modes.h"
#include "output.h"

#include <algorithm>
#include <fcntl.h>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <strings.h>
#include <sys/file.h>
#include <unistd.h>

namespace stand_in {
namespace {

std::filesystem::path stateFolder()
{
    const std::string folder = environmentOr("WSL_STAND_IN_STATE", "");
    if (folder.empty()) {
        printRawError("wsl stand-in: WSL_STAND_IN_STATE must name the folder for the registry\n");
        throw Failure{"", "", 2};
    }
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        printRawError("wsl stand-in: " + folder + ": " + error.message() + "\n");
        throw Failure{"", "", 2};
    }
    return folder;
}

void writeProcesses(std::ostream& out, const std::vector<ProcessId>& processes)
{
    out << ' ' << processes.size();
    for (const ProcessId& process : processes) {
        out << ' ' << process.number << ' ' << process.started;
    }
}

// Only those that still live. One that ended without saying so is taken to have ended just now.
std::vector<ProcessId> readProcesses(std::istream& in, std::int64_t& lastEnd)
{
    std::size_t count = 0;
    in >> count;
    std::vector<ProcessId> processes;
    for (std::size_t i = 0; i < count; ++i) {
        ProcessId process;
        in >> process.number >> process.started;
        if (isAlive(process)) {
            processes.push_back(process);
        } else {
            lastEnd = now();
        }
    }
    return processes;
}

void write(std::ostream& out, const Distribution& distribution)
{
    out << distribution.name << ' ' << distribution.state << ' ' << distribution.id << ' ' << distribution.version
        << ' ' << std::quoted(distribution.basePath.string()) << ' ' << distribution.worker.number << ' '
        << distribution.worker.started << ' ' << distribution.lastClientEnd;
    writeProcesses(out, distribution.clients);
    writeProcesses(out, distribution.programs);
    out << '\n';
}

bool read(std::istream& in, Distribution& distribution)
{
    std::string basePath;
    in >> distribution.name >> distribution.state >> distribution.id >> distribution.version >> std::quoted(basePath) >>
        distribution.worker.number >> distribution.worker.started >> distribution.lastClientEnd;
    if (!in) {
        return false;
    }
    distribution.basePath = basePath;
    distribution.clients = readProcesses(in, distribution.lastClientEnd);
    distribution.programs = readProcesses(in, distribution.lastClientEnd);
    return true;
}

} // namespace

std::filesystem::path rootFileSystem(const Distribution& distribution)
{
    return distribution.basePath / ("rootfs-" + distribution.id);
}

std::filesystem::path disk(const Distribution& distribution)
{
    return distribution.basePath / "ext4.vhdx";
}

bool isInstalled(const Distribution& distribution)
{
    return distribution.state == "Installed";
}

bool isBusy(const Distribution& distribution)
{
    return !isInstalled(distribution) && isAlive(distribution.worker);
}

bool isRunning(const Distribution& distribution)
{
    if (!isInstalled(distribution)) {
        return false;
    }
    if (!distribution.clients.empty() || !distribution.programs.empty()) {
        return true;
    }
    const long idleTime = numberFromEnvironment("WSL_STAND_IN_IDLE_MS", 15000);
    const std::int64_t idleSince = distribution.lastClientEnd;
    return idleSince != 0 && (idleTime < 0 || now() - idleSince < idleTime);
}

void stop(Distribution& distribution)
{
    for (const ProcessId& program : distribution.programs) {
        killAndWait(program);
    }
    distribution.programs.clear();
    distribution.clients.clear();
    distribution.lastClientEnd = 0;
}

bool sameName(std::string_view left, std::string_view right)
{
    return left.size() == right.size() && ::strncasecmp(left.data(), right.data(), left.size()) == 0;
}

Registry::Registry() : folder(stateFolder())
{
    lock = ::open((folder / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ::flock(lock, LOCK_EX);
    load();
}

Registry::~Registry()
{
    ::flock(lock, LOCK_UN);
    ::close(lock);
}

void Registry::load()
{
    std::ifstream file(folder / "registry");
    std::getline(file, defaultName);
    for (Distribution distribution; read(file, distribution); distribution = {}) {
        distributions.push_back(distribution);
    }
    // So that the end of a process is noticed once, and not anew by each reader.
    save();
}

void Registry::save() const
{
    const std::filesystem::path scratch = folder / "registry.new";
    std::ofstream file(scratch);
    file << defaultName << '\n';
    for (const Distribution& distribution : distributions) {
        write(file, distribution);
    }
    file.close();
    std::filesystem::rename(scratch, folder / "registry");
}

Distribution* Registry::find(std::string_view name)
{
    const auto found = std::find_if(distributions.begin(), distributions.end(),
                                    [&](const Distribution& each) { return sameName(each.name, name); });
    return found == distributions.end() ? nullptr : &*found;
}

void Registry::remove(std::string_view name)
{
    std::erase_if(distributions, [&](const Distribution& each) { return sameName(each.name, name); });
    if (sameName(defaultName, name)) {
        const auto next = std::find_if(distributions.begin(), distributions.end(), isInstalled);
        defaultName = next == distributions.end() ? "" : next->name;
    }
}

} // namespace stand_in
