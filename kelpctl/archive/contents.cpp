#include "archive/contents.h"

#include "archive/paths.h"
#include "terminal/text.h"

#include <algorithm>
#include <limits>
#include <sstream>

namespace kelpctl {
namespace {

constexpr char wslConf[] = "etc/wsl.conf";
constexpr char distributionConf[] = "etc/wsl-distribution.conf";

// Lists and descriptions have some kilobytes, settings less.
constexpr std::uintmax_t longestDocument = 1024UL * 1024;
constexpr std::size_t allDocuments = 8UL * 1024 * 1024;
constexpr std::size_t mostDocuments = 512;

bool isDescription(const std::string& path)
{
    constexpr char end[] = ".json";
    return path.ends_with(end) && isDigest(path.substr(0, path.size() - (sizeof end - 1)));
}

bool isBlob(const std::string& path)
{
    const std::size_t name = path.rfind('/') + 1;
    return path.starts_with("blobs/sha256/") && isDigest(path.substr(name));
}

// A layer of older archives is a folder.
bool isLayer(const std::string& path)
{
    return isDigest(folderOf(path)) && path.ends_with("/layer.tar");
}

bool isDocument(const std::string& path)
{
    return path == "manifest.json" || path == "index.json" || isDescription(path) || isBlob(path);
}

bool isSetting(const std::string& path)
{
    return path == wslConf || path == distributionConf;
}

std::string withoutBlanks(const std::string& text)
{
    std::string result;
    std::copy_if(text.begin(), text.end(), std::back_inserter(result),
                 [](char each) { return each != ' ' && each != '\t' && each != '\r'; });
    return result;
}

// Whether the settings switch it off: "enabled = false" in the section of that name.
bool switchesOff(const std::string& settings, const std::string& section)
{
    std::istringstream lines(settings);
    bool inside = false;
    bool off = false;
    for (std::string line; std::getline(lines, line);) {
        line = withoutBlanks(line);
        if (line.starts_with('[')) {
            inside = line == "[" + section + "]";
        } else if (inside && line.starts_with("enabled=")) {
            off = line == "enabled=false" || line == "enabled=0";
        }
    }
    return off;
}

} // namespace

std::size_t Contents::wanted(const Entry& entry)
{
    const std::string path = pathInside(entry.path).path;
    if (entry.type != EntryType::file || entry.size == 0) {
        return 0;
    }
    if (isDocument(path) || isSetting(path)) {
        return entry.size <= longestDocument ? static_cast<std::size_t>(entry.size) : 0;
    }
    return ProgramsInside::concerns(path, entry.type) ? programHeadSize : 0;
}

void Contents::keep(const std::string& path, const std::string& content)
{
    if (documents_.size() < mostDocuments && documentBytes_ + content.size() <= allDocuments) {
        documentBytes_ += content.size();
        documents_[path] = content;
    }
}

void Contents::take(const Entry& entry, const std::string& content)
{
    const PathInside place = pathInside(entry.path);
    const std::string& path = place.path;
    ++entries_;
    bytes_ += std::min(entry.size, std::numeric_limits<std::uintmax_t>::max() - bytes_);
    if (place.upward && (upwardPath_.empty() || (place.outside && !leadsOutside_))) {
        upwardPath_ = wellFormed(entry.path.substr(0, 200));
    }
    leadsOutside_ = leadsOutside_ || place.outside;
    hasEtc_ = hasEtc_ || path == "etc" || path.starts_with("etc/");
    imageMarked_ = imageMarked_ || path == "oci-layout" || isBlob(path) || isLayer(path);
    if (ProgramsInside::concerns(path, entry.type)) {
        programs_.take(path, entry, content);
    }
    // A layer among the blobs is no text.
    if (isSetting(path) || (isDocument(path) && (content.starts_with('{') || content.starts_with('[')))) {
        keep(path, content);
    }
}

void Contents::tell(ArchiveFacts& facts) const
{
    facts.entries = entries_;
    facts.contentBytes = bytes_;
    facts.upwardPath = upwardPath_;
    facts.leadsOutside = leadsOutside_;
    const ProgramsInside::Found shell = programs_.find("bin/sh");
    facts.root.hasEtc = hasEtc_;
    facts.root.shell = shell.state;
    facts.root.processor = shell.processor;
    facts.root.hasWslConf = documents_.contains(wslConf);
    const auto settings = documents_.find(distributionConf);
    const std::string text = settings == documents_.end() ? std::string() : settings->second;
    facts.root.makesShortcut = !switchesOff(text, "shortcut");
    facts.root.makesTerminalProfile = !switchesOff(text, "windowsterminal");
    facts.images = savedImages(documents_);
    facts.images.marked = imageMarked_ || facts.images.hasDockerList;
}

} // namespace kelpctl
