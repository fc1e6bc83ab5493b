// What the tests of the wsl stand-in share: a registry of the test's own, and a way to run one command after another.
#pragma once

#include "run_program.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

class WslTest : public testing::Test {
protected:
    WslTest();
    // Ends what a test left running.
    ~WslTest() override;

    // The arguments are quoted as a Windows caller with standard quoting would.
    Outcome wsl(const std::vector<std::string>& arguments, const std::string& input = {});
    // The whole command line after the program's name, as it stands.
    Outcome wslRaw(const std::string& commandLine);
    // A program inside the distribution "Hub".
    Outcome inHub(const std::vector<std::string>& arguments, const std::string& input = {});
    Outcome shellInHub(const std::string& script);

    Outcome importAs(const std::string& name);
    std::filesystem::path folderOf(const std::string& name) const;
    // Packs files (4 KiB each) into a tar archive with the options given.
    std::filesystem::path archive(const std::string& name, const std::string& tarOptions,
                                  const std::vector<std::string>& files) const;
    std::string list(const std::vector<std::string>& options);

    TemporaryFolder folder;
    Environment environment;
};

inline constexpr long long ownFailure = 255;
inline constexpr char success[] = "The operation completed successfully. \r\n";

// Lines with CR LF.
std::string lines(const std::string& text);
// The same in UTF-16LE. ASCII only.
std::string utf16(const std::string& text);
// Runs a line of the machine's own shell.
void shell(const std::string& line);

// A failure of the stand-in itself: its text on standard output, nothing on standard error.
testing::Matcher<const Outcome&> failsWith(const std::string& text);
testing::Matcher<const Outcome&> failsSaying(const std::string& part);
testing::Matcher<const Outcome&> succeedsWith(const testing::Matcher<const std::string&>& output);
