// Each row of the table of causes, met by a run: wsl.exe prints a path that the row decides, and kelpctl tells the cause.
#include "machine.h"

#include "failure/wsl_causes.h"

#include <gtest/gtest.h>

#include <boost/json/parse.hpp>

#include <cctype>
#include <string>
#include <vector>

namespace {

namespace json = boost::json;
using kelpctl::Reach;
using kelpctl::WslCause;
using kelpctl::WslWork;
using orb::process::detail::RunResult;

std::string firstWord(std::string_view words)
{
    return std::string(words.substr(0, words.find(' ')));
}

bool imports(const WslCause& row)
{
    return row.reach != Reach::any;
}

WslWork workOf(const WslCause& row)
{
    return imports(row) ? WslWork::import : WslWork::other;
}

// A path that is the row's own: the service's, unless a row before it takes that away.
std::string pathOf(const WslCause& row)
{
    const std::string code = "/" + (row.codes.empty() ? std::string("E_FAIL") : firstWord(row.codes));
    const bool hasContext = !row.contexts.empty() && row.contexts != "Service";
    const std::string path = "Wsl/Service" + (hasContext ? "/" + firstWord(row.contexts) : std::string()) + code;
    const bool own = row.reach != Reach::archive && kelpctl::causeOfWslPath(path, workOf(row)) == row.cause;
    return own ? path : "Wsl" + code;
}

std::string rowName(const testing::TestParamInfo<WslCause>& info)
{
    std::string name = std::to_string(info.index);
    for (const char c : pathOf(info.param)) {
        name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    }
    return name;
}

class WslRow : public testing::TestWithParam<WslCause> {
protected:
    ~WslRow() override { wsl.clear(); }

    json::value errorOf(const std::vector<std::string>& arguments) const
    {
        std::vector<std::string> line = {KELPCTL_PROGRAM, "--json", "--wsl",          "--release",
                                         "R2027a",        "--root", utf8(tree.root())};
        line.insert(line.end(), arguments.begin(), arguments.end());
        return json::parse(orb::process::detail::run(line).standardOutput).at("error");
    }

    InstallTree tree;
    Wsl wsl;
    EnvironmentVariable encoding{"WSL_UTF8", "0"};
    TemporaryDirectory temporary;
};

TEST_P(WslRow, IsMetByARun)
{
    const WslCause& row = GetParam();
    const std::string path = pathOf(row);
    ASSERT_EQ(kelpctl::causeOfWslPath(path, workOf(row)), row.cause);
    imports(row) ? tree.install() : wsl.import("kelp_hub_R2027a");
    const EnvironmentVariable mode("WSL_STAND_IN_MODE", "code=" + path + (imports(row) ? "@import" : "@exec"));
    const json::value error = imports(row) ? errorOf({"setup"}) : errorOf({"exec", "--", "uname"});
    EXPECT_EQ(error.at("evidence").at("code"), json::value(path));
    EXPECT_FALSE(error.at("next").as_string().empty());
    if (row.cause.empty()) {
        EXPECT_EQ(error.at("cause"), nullptr);
        return;
    }
    // kelpctl knows which distribution it is that is not there.
    const std::string cause = row.cause.text();
    EXPECT_EQ(error.at("cause").at("identifier"),
              json::value(cause == "WSL_DISTRIBUTION_UNKNOWN" ? "DISTRIBUTION_MISSING" : cause));
}

INSTANTIATE_TEST_SUITE_P(Table, WslRow, testing::ValuesIn(kelpctl::wslCauses().begin(), kelpctl::wslCauses().end()),
                         rowName);

} // namespace
