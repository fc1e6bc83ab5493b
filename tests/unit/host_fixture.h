// What the unit tests share: the fixture, and the pieces that many scripts and event lists are made of.
#pragma once

#include "environment_variable.h"
#include "fake_host.h"
#include "temporary_folder.h"

#include <filesystem>
#include <string>

namespace fake {

// A new folder that is removed with everything in it.
class TestFolder : public TemporaryFolder {
public:
    // The path of an entry, UTF-8 with forward slashes below the folder.
    std::string entry(const std::string& name) const;
    // Makes a file, and the folders it lies in, and gives its path as entry() does.
    std::string makeFile(const std::string& name) const;
    std::string makeFolder(const std::string& name) const;
};

// UTF-8 to UTF-16.
std::u16string wide(const std::string& text);

// Begins with none of the library's variables set, and ends with every expected run done. What the library keeps for
// the life of a process makes each test a process of its own.
class HostTest : public testing::Test {
protected:
    HostTest();
    void SetUp() override;
    void TearDown() override;
};

// The default names with the fake host's release "R9".
inline const std::string hub = "kelp_hub_R9";
inline const std::string wslPath = "W:\\wsl.exe";

// The runs and the events of the first look-up of wsl.exe, which finds wslPath.
void expectWslLookup();
Events wslLookup();
// The event of each call that needs the path.
Events wslPathUsed();

// The runs and the events of one listing of distributions.
void expectListing(bool onlyRunning, const RunResult& result);
Events listing(bool onlyRunning, int status);

// The run and the events of one look-up of docker.exe, which finds the existing file `path`.
void expectDockerLookup(const std::string& path);
Events dockerLookup(const std::string& path);

// The run and the events of one listing of images.
void expectImages(const std::string& dockerPath, const std::string& output);
Events images(const std::string& dockerPath);

// The events of the first use of the archive folder, which is below `nativeForm`.
Events tarsDirectoryLookup();

} // namespace fake
