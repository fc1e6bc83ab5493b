// Finding docker.exe and asking for images and containers, for whatever programs print and the system has.
#include "story.h"

#include "docker.h"

#include <algorithm>

namespace {

using namespace fake;
using namespace orb::lvm::detail;
using std::filesystem::file_type;

class DockerSearchRule : public RuleTest {
protected:
    DockerSearchRule()
    {
        host().isLink = [this](const std::filesystem::path& path, std::error_code&) {
            return std::count(links.begin(), links.end(), path.u16string()) != 0;
        };
    }

    std::string line()
    {
        std::string line = any.text();
        if (any.oneIn(5)) {
            line += any.oneOf(
                std::vector<std::string>{"bin\\win64", "bin/win64", "BIN\\win64", "bin\\win6", "bin\\\\win64"});
            line += any.textOrNothing();
        }
        std::erase(line, '\n');
        return line;
    }

    void choose(const std::string& path)
    {
        const std::vector<file_type> types = {file_type::regular,   file_type::regular, file_type::not_found,
                                              file_type::directory, file_type::fifo,    file_type::character};
        host().fileTypes[wide(path)] = any.oneOf(types);
        if (any.oneIn(4)) {
            links.push_back(wide(path));
        }
    }

    bool isClient(const std::string& path) const
    {
        return path.find("bin\\win64") == std::string::npos && host().fileTypes.at(wide(path)) == file_type::regular &&
               std::count(links.begin(), links.end(), wide(path)) == 0;
    }

    std::vector<std::u16string> links;
};

TEST_P(DockerSearchRule, TheFirstLineThatIsAFileOutsideTheProductIsTheClient)
{
    forManyValues(400, [this] {
        chooseMasks();
        host().fileTypes.clear();
        links.clear();
        std::string printed;
        std::string found;
        const std::size_t count = any.count();
        std::string printedPath = line();
        for (std::size_t i = 0; i < count; ++i) {
            // Often the same again.
            printedPath = any.oneIn(3) ? printedPath : line();
            printed += printedPath + (any.oneIn(2) ? "\r\n" : "\n") + (any.oneIn(4) ? any.blanks() : "");
        }
        printed = any.oneIn(4) ? trimmedText(printed) : printed;
        const std::string all = trimmedText(printed);
        for (std::size_t begin = 0; begin < all.size();) {
            const std::size_t end = std::min(all.find('\n', begin), all.size());
            const std::string path = trimmedText(all.substr(begin, end - begin));
            begin = end + 1;
            if (!path.empty() && host().fileTypes.count(wide(path)) == 0) {
                choose(path);
            }
            if (!path.empty() && found.empty() && isClient(path)) {
                found = path;
            }
        }
        const std::int32_t status = any.oneIn(4) ? any.status() : 0;
        Story story;
        story.runs({"where", "docker.exe"}, {status, printed, any.output()}, "c:");
        EXPECT_EQ(getDockerExecutablePath(), status != 0 ? "" : found.empty() ? all : found);
        story.expectTold();
    });
}

INSTANTIATE_TEST_SUITE_P(Seed, DockerSearchRule, testing::Range(400U, 403U));

class DockerQueryRule : public RuleTest {
protected:
    DockerQueryRule() { host().fileTypes = {{u"D:\\docker.exe", file_type::regular}}; }

    // An answer to a query: names as the client prints them, some of them again, or anything else.
    RunResult anyNames()
    {
        RunResult result = anyResult();
        if (!any.oneIn(3)) {
            result.standardOutput.clear();
            std::string name = any.word();
            const std::size_t count = any.count();
            for (std::size_t i = 0; i < count; ++i) {
                name = any.oneIn(3) ? name : any.word() + (any.oneIn(3) ? "/" + any.word() : "");
                result.standardOutput += name + (any.oneIn(4) ? any.blanks() : "\n");
            }
        }
        return result;
    }

    // One query: the client is looked for, and answers.
    static std::string answered(Story& story, Arguments command, const RunResult& result)
    {
        story.runs({"where", "docker.exe"}, {0, "D:\\docker.exe\r\n", ""}, "c:");
        command.insert(command.begin(), "D:\\docker.exe");
        story.runs(command, result);
        return result.status == 0 ? result.standardOutput : "";
    }
};

TEST_P(DockerQueryRule, RepositoriesAreTheWordsWithoutWhatIsInFrontOfTheLastSlash)
{
    forManyValues(400, [this] {
        Story story;
        std::vector<std::string> expected =
            wordsOf(answered(story, {"images", "--format", "{{.Repository}}"}, anyNames()));
        for (std::string& name : expected) {
            const std::size_t slash = name.rfind('/');
            name = slash == std::string::npos ? name : name.substr(slash + 1);
        }
        EXPECT_EQ(getImageRepositories(), expected);
        story.expectTold();
    });
}

TEST_P(DockerQueryRule, ContainersAreTheWords)
{
    forManyValues(400, [this] {
        Story story;
        const std::string image = any.textOrNothing();
        const std::string filter = "ancestor=" + (image.empty() ? withRelease("kelp_hub") : image);
        const Arguments query = {"container", "ls", "-f", filter, "--format", "{{.Names}}"};
        const std::vector<std::string> expected = wordsOf(answered(story, query, anyNames()));
        EXPECT_EQ(getContainersByAncestor(image), expected);
        story.expectTold();
    });
}

INSTANTIATE_TEST_SUITE_P(Seed, DockerQueryRule, testing::Range(410U, 412U));

} // namespace
