// A distribution that is missing: imported.
#include "host_fixture.h"

#include "frame.h"
#include "wsl.h"

#include <stdexcept>
#include <system_error>

namespace {

using namespace fake;
using namespace orb::lvm;
using namespace orb::lvm::detail;

using ImportError =
    foundation::core::except::Exception<orb::container_support::WSL_CANNOT_IMPORT_TAR_FILE, std::exception, void>;

std::string line(const std::string& text)
{
    return wslDetail("importFromTarIfNecessary: " + text);
}

class WslImport : public HostTest {
protected:
    // The archive folder lies in a folder that really exists, and so does the place for the distribution.
    WslImport()
    {
        expectWslLookup();
        getExecutablePath();
        host().nativeForm = folder.path().u16string();
        host().temporaryDirectory = u"the temp dir";
        host().temporaryName = wide(location);
        host().forgetEvents();
    }

    void expectImport(const std::string& name, const std::string& archive, const RunResult& result = {})
    {
        expectListing(false, {0, "other\n", ""});
        host().expectRun(importCommand(name, archive), result);
    }

    Arguments importCommand(const std::string& name, const std::string& archive) const
    {
        return {wslPath, "--import", name, location, archive, "--version", "2"};
    }

    // From the start to the decision to import.
    static Events missing(const std::string& name, int listingStatus = 0)
    {
        return sequence({wslPathUsed(),
                         {line("wslPath = " + wslPath)},
                         name == hub ? Events{askedRelease} : Events{},
                         {line("localDistroName = " + name)},
                         listing(false, listingStatus),
                         {line("kelp distro exists 0"), line("attempt to import distro")}});
    }

    Events folderNamed() const
    {
        return {"temp_directory_name",
                "tmpnam <the temp dir> <> <>",
                "cvt_ustring_string " + location,
                line("localDistroLocationPath = " + location),
                "cvt_string_ustring " + location,
                "exists " + location};
    }

    Events folderMade() const
    {
        return sequence({folderNamed(),
                         {line("localDistroLocationPath exist " + location + " distroLocationExist = 0"),
                          line("localDistroLocationPath = " + location + " doesn't exist, will attempt to create"),
                          line("localDistroLocationPath wasCreated = 1")}});
    }

    // The events of the default archive's choice.
    Events defaultArchive(bool compressed) const
    {
        const std::string join = "concatenate_pathname " + narrow(wide(tars)) + "|1 ";
        Events events = tarsDirectoryLookup();
        events.push_back(join + "kelp_hub_distro.tar.gz 1");
        events.push_back("exists " + tars + "/kelp_hub_distro.tar.gz");
        if (!compressed) {
            events.push_back(join + "kelp_hub_distro.tar 1");
        }
        const std::string chosen = tars + (compressed ? "/kelp_hub_distro.tar.gz" : "/kelp_hub_distro.tar");
        events.push_back("cvt_ustring_utf8 " + chosen);
        events.push_back(line("localTarFilePath = " + chosen));
        events.push_back(line(compressed ? "useGZ = 1" : "useGZ = 0"));
        return events;
    }

    TestFolder folder;
    const std::string location = folder.entry("new/d\xC3\xA9p\xC3\xB4t");
    const std::string tars = folder.entry("toolbox/shared/kavori/kelp/tar_files");
};

TEST_F(WslImport, AGivenArchiveIsImportedWithoutBeingLookedAt)
{
    expectImport(hub, "C:\\no such archive");
    wslImportFromTarIfNecessary("C:\\no such archive", "");
    EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(wide(location))));
    expectEvents(sequence({missing(hub), folderMade(), {ran(importCommand(hub, "C:\\no such archive"))}}));
}

TEST_F(WslImport, AGivenNameIsUsedAsItIs)
{
    expectImport("mine", "archive");
    wslImportFromTarIfNecessary("archive", "mine");
    expectEvents(sequence({missing("mine"), folderMade(), {ran(importCommand("mine", "archive"))}}));
}

TEST_F(WslImport, NamesAreComparedWhole)
{
    expectListing(false, {0, "Mine mine2 min " + hub, ""});
    host().expectRun(importCommand("mine", "archive"));
    wslImportFromTarIfNecessary("archive", "mine");
    expectEvents(sequence({missing("mine"), folderMade(), {ran(importCommand("mine", "archive"))}}));
}

TEST_F(WslImport, TheCompressedArchiveOfTheInstallTreeIsPreferred)
{
    folder.makeFile("toolbox/shared/kavori/kelp/tar_files/kelp_hub_distro.tar");
    const std::string archive = folder.makeFile("toolbox/shared/kavori/kelp/tar_files/kelp_hub_distro.tar.gz");
    expectImport(hub, archive);
    wslImportFromTarIfNecessary("", "");
    expectEvents(sequence({missing(hub), defaultArchive(true), folderMade(), {ran(importCommand(hub, archive))}}));
}

TEST_F(WslImport, TheUncompressedArchiveIsTakenOtherwise)
{
    const std::string archive = folder.makeFile("toolbox/shared/kavori/kelp/tar_files/kelp_hub_distro.tar");
    expectImport(hub, archive);
    wslImportFromTarIfNecessary("", "");
    expectEvents(sequence({missing(hub), defaultArchive(false), folderMade(), {ran(importCommand(hub, archive))}}));
}

TEST_F(WslImport, AMissingArchiveIsLeftToTheImport)
{
    const std::string archive = tars + "/kelp_hub_distro.tar";
    expectImport(hub, archive, {1, "", "not found"});
    try {
        wslImportFromTarIfNecessary("", "");
        ADD_FAILURE() << "no error";
    } catch (const ImportError& error) {
        EXPECT_EQ(error.message().arguments.at(0).text(), archive);
    }
    expectEvents(sequence({missing(hub),
                           defaultArchive(false),
                           folderMade(),
                           {ran(importCommand(hub, archive)), line("distro's import unsuccessful status = 1"),
                            wslError("importFromTarIfNecessary: distro's import unsuccessful cout = "),
                            wslError("importFromTarIfNecessary: distro's import unsuccessful cerr = not found")}}));
}

TEST_F(WslImport, AFolderThatExistsIsNotMade)
{
    folder.makeFolder("new/d\xC3\xA9p\xC3\xB4t");
    expectImport(hub, "archive");
    wslImportFromTarIfNecessary("archive", "");
    expectEvents(sequence({missing(hub),
                           folderNamed(),
                           {line("localDistroLocationPath exist " + location + " distroLocationExist = 1"),
                            ran(importCommand(hub, "archive"))}}));
}

TEST_F(WslImport, AFolderThatCannotBeMadeIsLoggedAndTheImportTriedAllTheSame)
{
    // A file stands where the folder's parent should be.
    folder.makeFile("new");
    const std::filesystem::path path = wide(location);
    std::error_code code;
    std::filesystem::create_directories(path, code);
    const std::string reason = std::filesystem::filesystem_error("create_directories", path, code).what();
    expectImport(hub, "archive");
    wslImportFromTarIfNecessary("archive", "");
    ASSERT_TRUE(code);
    expectEvents(
        sequence({missing(hub),
                  folderNamed(),
                  {line("localDistroLocationPath exist " + location + " distroLocationExist = 0"),
                   line("localDistroLocationPath = " + location + " doesn't exist, will attempt to create"),
                   wslError("importFromTarIfNecessary: localDistroLocationPath folder wasn't created: " + reason),
                   ran(importCommand(hub, "archive"))}}));
}

TEST_F(WslImport, AnExceptionOfALogSinkIsNoFolderThatCannotBeMade)
{
    expectListing(false, {});
    host().failAt(line("localDistroLocationPath wasCreated = 1"));
    EXPECT_THROW(wslImportFromTarIfNecessary("archive", ""), std::runtime_error);
    EXPECT_TRUE(host().eventsLike("log orb:lvm:wsl 512").empty());
}

TEST_F(WslImport, ExceptionsOfTheTemporaryNamePassThrough)
{
    for (const char* call : {"temp_directory_name", "tmpnam", "cvt_ustring_string", "cvt_string_ustring"}) {
        expectListing(false, {});
        host().failAt(call);
        EXPECT_THROW(wslImportFromTarIfNecessary("archive", ""), std::runtime_error) << call;
        EXPECT_EQ(host().eventsLike(call).size(), 1U);
        host().forgetEvents();
    }
}

TEST_F(WslImport, EachImportHasAFolderOfItsOwn)
{
    expectImport(hub, "archive", {1, "", ""});
    EXPECT_THROW(wslImportFromTarIfNecessary("archive", ""), ImportError);
    const std::string second = folder.entry("second");
    host().temporaryName = wide(second);
    expectListing(false, {});
    host().expectRun({wslPath, "--import", hub, second, "archive", "--version", "2"});
    wslImportFromTarIfNecessary("archive", "");
    EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(wide(second))));
    EXPECT_EQ(host().eventsLike("temp_directory_name").size(), 2U);
}

TEST_F(WslImport, AFailingImportIsLoggedAndThrown)
{
    expectImport("mine", "C:\\archive", {-1, "some output\n", "some error\n"});
    try {
        wslImportFromTarIfNecessary("C:\\archive", "mine");
        ADD_FAILURE() << "no error";
    } catch (const ImportError& error) {
        EXPECT_EQ(error.message().catalogue, "orb:container_support");
        EXPECT_EQ(error.message().identifier, "WSL_CANNOT_IMPORT_TAR_FILE");
        ASSERT_EQ(error.message().arguments.size(), 2U);
        EXPECT_EQ(error.message().arguments[0].text(), "C:\\archive");
        EXPECT_EQ(error.message().arguments[1].text(), "cout = \nsome output\n\ncerr = \nsome error\n\n");
    }
    EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(wide(location))));
    expectEvents(sequence({missing("mine"),
                           folderMade(),
                           {ran(importCommand("mine", "C:\\archive")), line("distro's import unsuccessful status = -1"),
                            wslError("importFromTarIfNecessary: distro's import unsuccessful cout = some output\n"),
                            wslError("importFromTarIfNecessary: distro's import unsuccessful cerr = some error\n")}}));
}

TEST_F(WslImport, WhateverAFailingImportPrintsIsLoggedAndPartOfTheError)
{
    const std::string output = std::string(100'000, 'o') + std::string("\0\xFF\r\n", 4);
    const std::string error = std::string(100'000, 'e') + std::string("\0\xFE\r\n", 4);
    expectImport(hub, "archive", {1, output, error});
    try {
        wslImportFromTarIfNecessary("archive", "");
        ADD_FAILURE() << "no error";
    } catch (const ImportError& thrown) {
        EXPECT_EQ(thrown.message().arguments.at(1).text(), "cout = \n" + output + "\ncerr = \n" + error + "\n");
    }
    EXPECT_EQ(host().eventsLike("log orb:lvm:wsl 512"),
              (Events{wslError("importFromTarIfNecessary: distro's import unsuccessful cout = " + output),
                      wslError("importFromTarIfNecessary: distro's import unsuccessful cerr = " + error)}));
}

TEST_F(WslImport, AFailingImportThatPrintsNothing)
{
    expectImport(hub, "archive", {1, "", ""});
    try {
        wslImportFromTarIfNecessary("archive", "");
        ADD_FAILURE() << "no error";
    } catch (const ImportError& error) {
        EXPECT_EQ(error.message().arguments.at(1).text(), "cout = \n\ncerr = \n\n");
    }
}

TEST_F(WslImport, AListingThatFailsMakesTheDistroMissing)
{
    expectListing(false, {1, hub + "\n", "why"});
    host().expectRun(importCommand(hub, "archive"));
    wslImportFromTarIfNecessary("archive", "");
    Events expected = missing(hub, 1);
    expected.insert(expected.end() - 2, wslError("getDistros: status = 1; why"));
    expectEvents(sequence({expected, folderMade(), {ran(importCommand(hub, "archive"))}}));
}

TEST_F(WslImport, AnExceptionOfTheImportPassesThrough)
{
    expectListing(false, {0, "", ""});
    host().expectRun(importCommand(hub, "archive"), []() -> RunResult { throw std::runtime_error("cannot start"); });
    EXPECT_THROW(wslImportFromTarIfNecessary("archive", ""), std::runtime_error);
}

} // namespace
