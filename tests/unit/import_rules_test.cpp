// Making a distribution exist, for any name, archive, install tree, answers of wsl.exe and addresses.
#include "story.h"

#include "orb/lvm.h"

#include "host/exceptions.h"

namespace {

using namespace fake;
using foundation::core::net::InetAddress;
using ImportError =
    foundation::core::except::Exception<orb::container_support::WSL_CANNOT_IMPORT_TAR_FILE, std::exception, void>;

class WslImportRule : public RuleTest {
protected:
    WslImportRule()
    {
        findWsl();
        host().nativeForm = wide(any.textOrNothing());
    }

    void detail(const std::string& text) { story->detail(wslChannel, "importFromTarIfNecessary: " + text); }
    void error(const std::string& text) { story->error(wslChannel, "importFromTarIfNecessary: " + text); }

    // One listing, which has the name or only names like it; false when it fails.
    bool isListed(bool onlyRunning, const std::string& name)
    {
        std::string printed;
        const std::size_t count = any.count();
        for (std::size_t i = 0; i < count; ++i) {
            printed += any.nearly(name) + "\r\n";
        }
        const RunResult result = {any.oneIn(5) ? any.status() : 0, printed, any.text()};
        Arguments command = {wsl, "--list", "-q"};
        pathUsed(*story);
        story->detail(wslChannel, "getDistros: wslPath = " + wsl);
        if (onlyRunning) {
            story->detail(wslChannel, "getDistros: wslPath onlyRunning = true");
            command.emplace_back("--running");
        }
        story->runs(command, result);
        const std::string status = "getDistros: status = " + std::to_string(result.status);
        story->detail(wslChannel, status);
        if (result.status != 0) {
            story->error(wslChannel, status + "; " + result.standardError);
            return false;
        }
        if (printed.empty()) {
            story->detail(wslChannel, "getDistros: no distros");
        }
        for (const std::string& word : wordsOf(printed)) {
            if (word == name) {
                return true;
            }
        }
        return false;
    }

    // The next question for the address gets one, or none.
    std::string address()
    {
        const std::string text = any.oneIn(3) ? "172.20." + std::to_string(addresses.size()) + ".1" : "";
        addresses.push_back(text);
        story->happens(askedInterfaces);
        return text;
    }

    void present(const std::string& name)
    {
        const bool isRunning = isListed(true, name);
        const std::string known = address();
        detail("(1) wslIPAddress =  " + known);
        if (!known.empty() || isRunning) {
            return;
        }
        detail("wslIPAddress is empty and distro is not running");
        pathUsed(*story);
        story->runs({wsl, "-d", withRelease("kelp_hub"), "--exec", "~"}, anyResult());
        for (int round = 0; round < 3; ++round) {
            story->happens("sleep 100000 us");
            if (!address().empty()) {
                return;
            }
        }
    }

    std::string defaultArchive()
    {
        const std::u16string& tars = orb::lvm::getContainerTarsDirectory();
        const bool packed = any.oneIn(2);
        using std::filesystem::file_type;
        host().fileTypes[tars + u"/kelp_hub_distro.tar.gz"] = packed ? file_type::regular : file_type::not_found;
        host().fileTypes[tars + u"/kelp_hub_distro.tar"] = any.oneIn(2) ? file_type::regular : file_type::not_found;
        const std::string archive = utf8(tars) + (packed ? "/kelp_hub_distro.tar.gz" : "/kelp_hub_distro.tar");
        detail("localTarFilePath = " + archive);
        detail(std::string("useGZ = ") + (packed ? "1" : "0"));
        return archive;
    }

    // A new folder, one that is there, one that comes to be there meanwhile, or one that cannot be made.
    std::string location()
    {
        const std::string number = std::to_string(++locations);
        std::string location = folder.entry("new \xC3\xA4/" + number + "/distro");
        host().temporaryDirectory = wide(any.text());
        story->happens("temp_directory_name");
        story->happens("tmpnam <" + narrow(host().temporaryDirectory) + "> <> <>");
        const std::size_t kind = any.below(4);
        if (kind == 1 || kind == 2) {
            folder.makeFolder("new \xC3\xA4/" + number + "/distro");
        } else if (kind == 3) {
            folder.makeFile("new \xC3\xA4/" + number);
        }
        if (kind == 2) {
            host().fileTypes[wide(location)] = std::filesystem::file_type::not_found;
        }
        host().temporaryName = wide(location);
        detail("localDistroLocationPath = " + location);
        detail("localDistroLocationPath exist " + location + " distroLocationExist = " + (kind == 1 ? "1" : "0"));
        if (kind == 1) {
            return location;
        }
        detail("localDistroLocationPath = " + location + " doesn't exist, will attempt to create");
        if (kind == 3) {
            const std::filesystem::path path = wide(location);
            std::error_code code;
            std::filesystem::create_directories(path, code);
            error(std::string("localDistroLocationPath folder wasn't created: ") +
                  std::filesystem::filesystem_error("create_directories", path, code).what());
        } else {
            detail(std::string("localDistroLocationPath wasCreated = ") + (kind == 0 ? "1" : "0"));
        }
        return location;
    }

    // The arguments of the error that must be thrown, none when the import succeeds.
    Arguments missing(const std::string& name, const std::string& tarPath)
    {
        detail("attempt to import distro");
        const std::string archive = tarPath.empty() ? defaultArchive() : tarPath;
        const std::string location = this->location();
        const RunResult result = anyResult();
        story->runs({wsl, "--import", name, location, archive, "--version", "2"}, result);
        if (result.status == 0) {
            return {};
        }
        detail("distro's import unsuccessful status = " + std::to_string(result.status));
        error("distro's import unsuccessful cout = " + result.standardOutput);
        error("distro's import unsuccessful cerr = " + result.standardError);
        return {archive, "cout = \n" + result.standardOutput + "\ncerr = \n" + result.standardError + "\n"};
    }

    // The whole rule.
    Arguments expected(const std::string& tarPath, const std::string& imageName)
    {
        const std::string name = imageName.empty() ? withRelease("kelp_hub") : imageName;
        detail("WSL");
        pathUsed(*story);
        detail("wslPath = " + wsl);
        detail("localDistroName = " + name);
        const bool exists = isListed(false, name);
        detail(std::string("kelp distro exists ") + (exists ? "1" : "0"));
        if (!exists) {
            return missing(name, tarPath);
        }
        present(name);
        return {};
    }

    static Arguments thrown(const std::string& tarPath, const std::string& imageName, bool useRootFsArchive)
    {
        try {
            orb::lvm::importFromTarIfNecessary(tarPath, imageName, useRootFsArchive);
        } catch (const ImportError& error) {
            Arguments found;
            for (const auto& argument : error.message().arguments) {
                found.push_back(argument.text());
            }
            return found;
        }
        return {};
    }

    Story* story = nullptr;
    std::vector<std::string> addresses;
    TestFolder folder;
    int locations = 0;
};

TEST_P(WslImportRule, EachCallGoesByWhatThereIs)
{
    forManyValues(90, [this] {
        chooseMasks();
        Story told;
        story = &told;
        addresses.clear();
        host().fileTypes.clear();
        const std::string tarPath = any.textOrNothing();
        // The listing is made of words, so most names should be one.
        const std::string imageName = any.oneIn(2) ? "" : any.oneIn(5) ? any.text() : any.word();
        const Arguments error = expected(tarPath, imageName);
        host().interfaces = [next = addresses.begin()]() mutable -> Interfaces {
            return {{u"vEthernet (WSL)", u"Virtual", {InetAddress(*next++, 4, false)}}};
        };
        EXPECT_EQ(thrown(tarPath, imageName, any.oneIn(2)), error);
        told.expectTold();
    });
}

INSTANTIATE_TEST_SUITE_P(Seed, WslImportRule, testing::Range(300U, 306U));

} // namespace
