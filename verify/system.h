// What only the system can tell or do.
#pragma once

#include "names.h"

#include <boost/json/object.hpp>

#include <filesystem>
#include <optional>
#include <string>

namespace verify {

// Text that a program printed in the code page of consoles, as UTF-8; nothing when it is none.
std::optional<std::string> fromConsole(const std::string& bytes);

// The other way round; nothing when the code page does not have all letters.
std::optional<std::string> inConsolePage(const std::string& text);

// A few letters outside ASCII that the code page of consoles has.
std::string consoleLetters();

bool runsOnWine();
bool speaksEnglish();

// The system as the report shows it: Windows and its build, code pages, languages, rights, drives.
boost::json::object describeSystem();

// Makes the report hide the names of the user and of the machine.
void hideNames(Names& names);

// Sets a variable of this process, or takes it away.
void setVariable(const std::string& name, const std::optional<std::string>& value);

// Prepares standard output for UTF-8, and makes Ctrl-C call interrupt().
void prepareConsole();

// The folder that this program lies in.
std::filesystem::path programFolder();

// A path as UTF-8, and the other way round.
std::string utf8(const std::filesystem::path& path);
std::filesystem::path pathOf(const std::string& text);

// A file that nobody else can open, and that goes when this does or the process ends.
class Lock {
public:
    // Throws std::system_error when another process has it.
    explicit Lock(const std::filesystem::path& file);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    // Whether a live process has the file.
    static bool isHeld(const std::filesystem::path& file);

private:
    void* handle_;
};

} // namespace verify
