// Making a Docker image exist, for any name, archive, install tree, registry and answers of the client.
#include "story.h"

#include "docker.h"

#include "host/exceptions.h"
#include "orb/lvm.h"

#include <algorithm>
#include <iostream>
#include <sstream>

namespace {

using namespace fake;
using foundation::core::except::IMsgIDException;
using std::filesystem::file_type;

// What is written to standard output while it lives.
class CapturedOutput {
public:
    CapturedOutput() : before_(std::cout.rdbuf(buffer_.rdbuf())) {}
    ~CapturedOutput() { std::cout.rdbuf(before_); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    std::string text() const { return buffer_.str(); }

private:
    std::ostringstream buffer_;
    std::streambuf* before_;
};

class ImageRule : public RuleTest {
protected:
    ImageRule() { host().nativeForm = wide(any.textOrNothing()); }

    void lookUp() { story->runs({"where", "docker.exe"}, {client.empty() ? 1 : 0, client + "\r\n", ""}, "c:"); }

    void runsClient(Arguments command, const RunResult& result)
    {
        command.insert(command.begin(), client);
        story->runs(command, result);
    }

    // The listing of images: whether it has the name, or only names like it.
    bool isListed(const std::string& name)
    {
        std::string listed;
        const std::size_t count = any.below(4);
        for (std::size_t i = 0; i < count; ++i) {
            listed += any.oneIn(3) ? "zq.example:5000/team/" : "";
            listed += any.nearly(name) + "\n";
        }
        const RunResult result = {any.oneIn(5) ? any.status() : 0, listed, any.text()};
        lookUp();
        runsClient({"images", "--format", "{{.Repository}}"}, result);
        const std::vector<std::string> words = wordsOf(result.status == 0 ? listed : "");
        return std::any_of(words.begin(), words.end(), [&name](const std::string& word) {
            const std::size_t slash = word.rfind('/');
            return (slash == std::string::npos ? word : word.substr(slash + 1)) == name;
        });
    }

    file_type fileOrNothing()
    {
        return any.oneOf(std::vector<file_type>{file_type::regular, file_type::directory, file_type::not_found});
    }

    // The archive that is used, there or not.
    std::string archive(const std::string& tarPath, bool useRootFsArchive)
    {
        auto& types = host().fileTypes;
        if (!tarPath.empty()) {
            types[wide(tarPath)] = fileOrNothing();
            return tarPath;
        }
        const std::u16string& folder = orb::lvm::getContainerTarsDirectory();
        for (const char16_t* name : {u"/kelp_hub_distro.tar.gz", u"/kelp_hub_distro.tar", u"/kelp_hub_docker.tar.gz",
                                     u"/kelp_hub_docker.tar"}) {
            types[folder + name] = fileOrNothing();
        }
        const std::u16string packed =
            folder + (useRootFsArchive ? u"/kelp_hub_distro.tar.gz" : u"/kelp_hub_docker.tar.gz");
        return utf8(types.at(packed) == file_type::not_found ? folder + u"/kelp_hub_docker.tar" : packed);
    }

    // Whether the registry counts as having given the image; what is to be printed otherwise.
    bool pulled()
    {
        const char* const enabled = std::getenv("USE_DOCKER_REPOSITORY");
        if (enabled == nullptr || std::string(enabled) != "1") {
            return false;
        }
        const std::string name = "kelp_hub" + withRelease("kelp_hub");
        const std::string reference = "zqkelp/" + name + ":" + name;
        lookUp();
        RunResult result = anyResult();
        runsClient({"pull", "-q", reference}, result);
        if (result.status == 0) {
            result = anyResult();
            runsClient({"tag", reference, withRelease("kelp_hub")}, result);
        }
        if (result.status == 0 || result.standardError.empty()) {
            return true;
        }
        printed = "ERROR in pullImageFromRegistry: " + result.standardError + "\n";
        return false;
    }

    // The whole rule: the identifier and the arguments of the error that must be thrown, none when there is none.
    Arguments expected(const std::string& tarPath, const std::string& imageName, bool useRootFsArchive)
    {
        story->detail(dockerChannel, "importFromTarIfNecessary: docker");
        lookUp();
        story->detail(dockerChannel, "importFromTarIfNecessary: dockerPath = " + client);
        if (client.empty() || host().fileTypes.at(wide(client)) == file_type::not_found) {
            story->error(dockerChannel, "importFromTarIfNecessary: dockerPath doesn't exist");
            return {"DOCKER_NOT_AVAILABLE"};
        }
        const std::string name = imageName.empty() ? withRelease("kelp_hub") : imageName;
        if (isListed(name)) {
            return {};
        }
        const std::string archive = this->archive(tarPath, useRootFsArchive);
        if (host().fileTypes.at(wide(archive)) == file_type::not_found) {
            return {"TAR_FILE_NOT_AVAILABLE", archive};
        }
        if (!pulled()) {
            const RunResult result = anyResult();
            runsClient(useRootFsArchive ? Arguments{"import", archive, imageName} : Arguments{"load", "-i", archive},
                       result);
            if (result.status != 0 && !result.standardError.empty()) {
                return {"TAR_FILE_LOAD_ERROR", archive, name, result.standardError};
            }
        }
        return isListed(name) ? Arguments{} : Arguments{"IMAGE_NOT_EXIST", name};
    }

    static Arguments thrown(const std::string& tarPath, const std::string& imageName, bool useRootFsArchive)
    {
        try {
            orb::lvm::importFromTarIfNecessary(tarPath, imageName, useRootFsArchive);
        } catch (const IMsgIDException& error) {
            Arguments found = {error.message().identifier};
            for (const auto& argument : error.message().arguments) {
                found.push_back(argument.text());
            }
            return found;
        }
        return {};
    }

    Story* story = nullptr;
    std::string client;
    std::string printed;
};

TEST_P(ImageRule, EachCallGoesByWhatThereIs)
{
    setVariable("USE_WSL", any.oneOf(std::vector<std::string>{"", "0", "wsl", "01"}));
    forManyValues(200, [this] {
        chooseMasks();
        Story told;
        story = &told;
        printed.clear();
        host().fileTypes.clear();
        client = any.oneIn(8) ? "" : "D:\\docker " + std::to_string(any.below(10)) + ".exe";
        host().fileTypes[wide(client)] = any.oneIn(8) || client.empty() ? file_type::not_found : file_type::regular;
        const std::string value = any.oneOf(std::vector<std::string>{"1", "1", "0", "", "true", "1 "});
        setVariable("USE_DOCKER_REPOSITORY", any.oneIn(3) ? std::nullopt : std::optional(value));
        const std::string tarPath = any.textOrNothing();
        const std::string imageName = any.oneIn(2) ? "" : any.oneIn(5) ? any.text() : any.word();
        const bool useRootFsArchive = any.oneIn(2);
        const Arguments error = expected(tarPath, imageName, useRootFsArchive);
        CapturedOutput captured;
        EXPECT_EQ(thrown(tarPath, imageName, useRootFsArchive), error);
        EXPECT_EQ(captured.text(), printed);
        told.expectTold();
    });
}

INSTANTIATE_TEST_SUITE_P(Seed, ImageRule, testing::Range(420U, 426U));

} // namespace
