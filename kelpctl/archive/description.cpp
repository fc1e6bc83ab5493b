#include "archive/description.h"

#include "terminal/json.h"
#include "terminal/text.h"

#include <array>

namespace kelpctl {
namespace {

namespace json = boost::json;

const char* damageName(Damage damage)
{
    constexpr std::array names = {"none", "cutOff", "broken", "noTar", "bomb"};
    return names.at(static_cast<std::size_t>(damage));
}

const char* shellName(ShellState shell)
{
    constexpr std::array names = {"missing", "present", "elsewhere", "circle"};
    return names.at(static_cast<std::size_t>(shell));
}

std::string readText(const ArchiveFacts& facts)
{
    const std::string entries = std::to_string(facts.entries) + (facts.entries == 1 ? " entry" : " entries");
    switch (facts.extent) {
    case Extent::nothing:
        return "nothing";
    case Extent::whole:
        return "all of it, " + entries + "; what it was packed with has no complaint";
    case Extent::beginning:
        break;
    }
    return "the beginning, " + entries + (facts.reason.empty() ? "" : ": " + facts.reason);
}

std::string shellText(const RootFileSystem& root)
{
    switch (root.shell) {
    case ShellState::present:
        return "/bin/sh" + (root.processor.empty() ? std::string() : ", " + root.processor);
    case ShellState::elsewhere:
        return "/bin/sh is a link to another folder, which was not followed";
    case ShellState::circle:
        return "/bin/sh is a link that leads in a circle";
    case ShellState::missing:
        break;
    }
    return "none";
}

std::string imageText(const SavedImage& image)
{
    std::string names;
    for (const std::string& name : image.names) {
        names += (names.empty() ? "" : ", ") + name;
    }
    const std::string platform = image.processor.empty() ? "processor not known" : image.system + "/" + image.processor;
    const std::string program = !image.namesProgram   ? "its program is not known"
                                : *image.namesProgram ? "names a program to run"
                                                      : "names no program to run";
    return (names.empty() ? "without a name" : names) + ": " + platform + ", " + program;
}

void printContent(const ArchiveFacts& facts, TableLines& table)
{
    table.row(Mark::none, "holds", contentName(facts));
    if (facts.root.found()) {
        const RootFileSystem& root = facts.root;
        table.row(Mark::none, "/etc", root.hasEtc ? "present" : "missing");
        table.row(Mark::none, "shell", shellText(root));
        table.row(Mark::none, "/etc/wsl.conf", root.hasWslConf ? "present" : "missing");
        table.row(Mark::none, "WSL would make",
                  root.makesShortcut && root.makesTerminalProfile ? "a shortcut and a profile of the terminal"
                  : root.makesShortcut                            ? "a shortcut"
                  : root.makesTerminalProfile                     ? "a profile of the terminal"
                                                                  : "neither shortcut nor profile of the terminal");
    }
    std::string label = "images";
    for (const SavedImage& image : facts.images.all) {
        table.row(Mark::none, label, imageText(image));
        label.clear();
    }
}

json::value rootObject(const RootFileSystem& root)
{
    if (!root.found()) {
        return nullptr;
    }
    return json::object{{"etc", root.hasEtc},
                        {"shell", shellName(root.shell)},
                        {"processor", textOrNull(root.processor)},
                        {"wslConf", root.hasWslConf},
                        {"makesShortcut", root.makesShortcut},
                        {"makesTerminalProfile", root.makesTerminalProfile}};
}

json::array imageList(const std::vector<SavedImage>& images)
{
    json::array list;
    for (const SavedImage& image : images) {
        list.push_back(json::object{{"names", arrayOf(image.names)},
                                    {"system", textOrNull(image.system)},
                                    {"processor", textOrNull(image.processor)},
                                    {"namesProgram", orNull(image.namesProgram)}});
    }
    return list;
}

json::value checksumObject(const std::optional<Checksum>& checksum)
{
    if (!checksum) {
        return nullptr;
    }
    return json::object{
        {"file", checksum->file}, {"expected", textOrNull(checksum->expected)}, {"found", textOrNull(checksum->found)}};
}

} // namespace

const char* contentName(const ArchiveFacts& facts)
{
    if (facts.root.found()) {
        return "root file system";
    }
    if (facts.images.marked || facts.images.hasOciList) {
        return "saved image";
    }
    return facts.whole() ? "nothing of use" : "not known";
}

const char* extentName(Extent extent)
{
    constexpr std::array names = {"nothing", "beginning", "whole"};
    return names.at(static_cast<std::size_t>(extent));
}

void printArchive(const ArchiveFacts& facts, const std::string& name, Purpose purpose, const Volume& volume,
                  TableLines& table)
{
    table.section("archive");
    table.row(Mark::none, "file", name);
    table.row(Mark::none, "kind", std::string(kindName(facts.kind)) + ", " + sizeText(facts.fileBytes));
    table.row(Mark::none, "read", readText(facts));
    table.row(Mark::none, "unpacked", facts.unpackedBytes ? sizeText(*facts.unpackedBytes) : "not known");
    if (facts.checksum) {
        const Checksum& sum = *facts.checksum;
        table.row(Mark::none, "checksum",
                  sum.expected.empty()        ? "none for it in " + sum.file
                  : sum.found.empty()         ? "not compared with " + sum.file
                  : sum.found == sum.expected ? "as in " + sum.file
                                              : "another than in " + sum.file);
    }
    table.section("contents");
    printContent(facts, table);
    table.section("room");
    const std::optional<std::uintmax_t> needed = neededBytes(facts, purpose);
    table.row(Mark::none, "needed", needed ? shortSizeText(*needed) : "not known");
    table.row(Mark::none, "free",
              volume.freeBytes ? shortSizeText(*volume.freeBytes) + " (" + volume.folder + ")" : "not known");
}

json::object archiveObject(const ArchiveFacts& facts, const std::string& name, Purpose purpose, const Volume& volume)
{
    return {{"file", name},
            {"kind", kindName(facts.kind)},
            {"size", facts.fileBytes},
            {"read", extentName(facts.extent)},
            {"damage", damageName(facts.damage)},
            {"reason", textOrNull(facts.reason)},
            {"entries", facts.entries},
            {"unpackedBytes", orNull(facts.unpackedBytes)},
            {"content", contentName(facts)},
            {"rootFileSystem", rootObject(facts.root)},
            {"images", imageList(facts.images.all)},
            {"checksum", checksumObject(facts.checksum)},
            {"neededBytes", orNull(neededBytes(facts, purpose))},
            {"volume", textOrNull(volume.folder)},
            {"freeBytes", orNull(volume.freeBytes)}};
}

} // namespace kelpctl
