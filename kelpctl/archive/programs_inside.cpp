#include "archive/programs_inside.h"

#include "archive/paths.h"

#include <algorithm>
#include <array>
#include <deque>
#include <vector>

namespace kelpctl {
namespace {

using namespace std::string_view_literals;

// Where programs are, and what may be a link to such a folder.
constexpr std::array programFolders = {"bin"sv, "sbin"sv, "usr/bin"sv, "usr/sbin"sv, "usr/local/bin"sv};
constexpr std::array foldersAbove = {""sv, "usr"sv, "usr/local"sv};

// A large distribution has some thousands.
constexpr std::size_t mostNodes = 16384;
constexpr std::size_t longestTarget = 1024;
// As Linux follows.
constexpr int mostLinks = 40;

struct Processor {
    unsigned int number;
    const char* name;
};

// The numbers that ELF has for them.
constexpr std::array processors = {Processor{3, "386"},      Processor{21, "ppc64"}, Processor{22, "s390x"},
                                   Processor{40, "arm"},     Processor{62, "amd64"}, Processor{183, "arm64"},
                                   Processor{243, "riscv64"}};

template <std::size_t Count>
bool isAmong(const std::array<std::string_view, Count>& folders, const std::string& folder)
{
    return std::find(folders.begin(), folders.end(), folder) != folders.end();
}

std::string joined(const std::vector<std::string>& parts)
{
    std::string path;
    for (const std::string& part : parts) {
        path += (path.empty() ? "" : "/") + part;
    }
    return path;
}

} // namespace

std::string processorOfProgram(std::string_view head)
{
    constexpr std::size_t orderPosition = 5;
    constexpr std::size_t processorPosition = 18;
    if (head.size() < programHeadSize || !head.starts_with("\x7f"
                                                           "ELF")) {
        return {};
    }
    const bool littleEndian = head[orderPosition] == '\1';
    const auto low = static_cast<unsigned char>(head[processorPosition + (littleEndian ? 0U : 1U)]);
    const auto high = static_cast<unsigned char>(head[processorPosition + (littleEndian ? 1U : 0U)]);
    const unsigned int number = low + high * 256U;
    const auto* known = std::find_if(processors.begin(), processors.end(),
                                     [number](const Processor& each) { return each.number == number; });
    if (known == processors.end()) {
        return "machine " + std::to_string(number);
    }
    return known->name + std::string(littleEndian && known->name == "ppc64"sv ? "le" : "");
}

bool ProgramsInside::concerns(const std::string& path, EntryType type)
{
    const std::string folder = folderOf(path);
    return !path.empty() &&
           (isAmong(programFolders, folder) || (type == EntryType::link && isAmong(foldersAbove, folder)));
}

void ProgramsInside::take(const std::string& path, const Entry& entry, std::string_view head)
{
    if (entry.target.size() > longestTarget || path.size() > longestTarget ||
        (nodes_.size() >= mostNodes && !nodes_.contains(path))) {
        full_ = true;
        return;
    }
    // Of a hard link the target is a path from the root.
    nodes_[path] = {entry.type, (entry.type == EntryType::hardLink ? "/" : "") + entry.target,
                    processorOfProgram(head)};
}

ProgramsInside::Found ProgramsInside::find(const std::string& path) const
{
    const std::vector<std::string> start = partsOf(path);
    std::deque<std::string> left(start.begin(), start.end());
    std::vector<std::string> place;
    int links = 0;
    while (!left.empty()) {
        const std::string part = left.front();
        left.pop_front();
        if (part == "..") {
            place.resize(place.size() - std::min<std::size_t>(place.size(), 1));
            continue;
        }
        place.push_back(part);
        const auto node = nodes_.find(joined(place));
        if (node == nodes_.end() || node->second.target.empty()) {
            continue;
        }
        if (++links > mostLinks) {
            return {ShellState::circle};
        }
        const std::string& target = node->second.target;
        const std::vector<std::string> further = partsOf(target);
        place.pop_back();
        if (target.starts_with('/')) {
            place.clear();
        }
        left.insert(left.begin(), further.begin(), further.end());
    }
    const std::string end = joined(place);
    const auto node = nodes_.find(end);
    if (node != nodes_.end()) {
        return node->second.type == EntryType::folder ? Found{} : Found{ShellState::present, node->second.processor};
    }
    const bool known = isAmong(programFolders, folderOf(end)) && !full_;
    return {known ? ShellState::missing : ShellState::elsewhere};
}

} // namespace kelpctl
