#include "failure/pull_causes.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string cause(const std::string& said)
{
    return causeOfPull(kelpctl::runOf({"docker", "pull", "-q", "x"}, {1, {}, said})).text();
}

// As Docker and podman were seen to say it.
TEST(PullCauses, AreToldByWordsThatAreTheSameEverywhere)
{
    EXPECT_EQ(
        cause("error getting credentials - err: exec: \"docker-credential-desktop\": executable file not found in "
              "$PATH, out: ``"),
        "PULL_CREDENTIALS");
    EXPECT_EQ(cause("Error response from daemon: toomanyrequests: You have reached your pull rate limit."),
              "PULL_LIMIT");
    EXPECT_EQ(cause("Error response from daemon: Get https://registry-1.docker.io/v2/: x509: certificate signed by "
                    "unknown authority"),
              "PULL_CERTIFICATE");
    EXPECT_EQ(cause("Error response from daemon: pull access denied for x, repository does not exist or may require "
                    "'docker login': denied: requested access to the resource is denied"),
              "PULL_DENIED");
    EXPECT_EQ(cause("Error response from daemon: unauthorized: authentication required"), "PULL_DENIED");
    EXPECT_EQ(cause("no matching manifest for linux/arm64/v8 in the manifest list entries"), "PULL_PROCESSOR");
    EXPECT_EQ(cause("Error response from daemon: manifest for x:y not found: manifest unknown: manifest unknown"),
              "PULL_MISSING");
    EXPECT_EQ(cause("Error response from daemon: Get \"https://registry-1.docker.io/v2/\": dial tcp: lookup "
                    "registry-1.docker.io: no such host"),
              "PULL_NETWORK");
    EXPECT_EQ(cause("Error response from daemon: Get \"https://registry-1.docker.io/v2/\": net/http: request canceled "
                    "while waiting for connection (Client.Timeout exceeded while awaiting headers)"),
              "PULL_NETWORK");
}

// A client that cannot ask its helper goes on without a password, and is refused.
TEST(PullCauses, MissingHelperForPasswordsIsTheCauseOfARefusal)
{
    EXPECT_EQ(cause("Error response from daemon: pull access denied for x: denied: requested access to the resource is "
                    "denied\nerror getting credentials - err: exec: \"docker-credential-desktop\": executable file not "
                    "found in $PATH"),
              "PULL_CREDENTIALS");
}

TEST(PullCauses, NothingIsGuessed)
{
    EXPECT_EQ(cause(""), "");
    EXPECT_EQ(cause("Error response from daemon: something new"), "");
    EXPECT_EQ(cause("\xff\xfe\x00"), "");
}

} // namespace
