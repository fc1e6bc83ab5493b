#include "fake_lvm.h"
#include "session.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>

namespace {

using testing::HasSubstr;

constexpr char engineQuery[] = "/usr/bin/docker version --format {{json .}}";
constexpr char listing[] = "/windows/wsl.exe --list -q";

std::ptrdiff_t timesAsked(const Session& session, const std::string& line)
{
    return std::count(session.asked.begin(), session.asked.end(), line);
}

TEST(Wait, EndsWhenTheBackendAnswers)
{
    for (const char* query : {engineQuery, listing}) {
        Session session;
        session.answers[query] = {0, "{}", {}};
        session.late[query] = 2;
        const char* backend = query == engineQuery ? "--docker" : "--wsl";
        EXPECT_EQ(session.run({backend, "setup", "--wait", "60"}), 0);
        EXPECT_EQ(timesAsked(session, query), 3);
        EXPECT_THAT(fakeLvm().calls, testing::Contains("gateway setup"));
    }
}

// The command itself tells why.
TEST(Wait, GoesOnWhenTheTimeIsOver)
{
    Session session;
    EXPECT_EQ(session.run({"--docker", "setup", "--wait", "1"}), 0);
    EXPECT_GE(timesAsked(session, engineQuery), 1);
    EXPECT_THAT(fakeLvm().calls, testing::Contains("gateway setup"));
}

TEST(Wait, NobodyIsAskedWithoutIt)
{
    Session session;
    session.answers[engineQuery] = {0, "{}", {}};
    EXPECT_EQ(session.run({"--docker", "setup"}), 0);
    EXPECT_EQ(timesAsked(session, engineQuery), 0);
}

TEST(Wait, StandsBeforeStartAndExecAsWell)
{
    Session session;
    session.answers[engineQuery] = {0, "{}", {}};
    session.late[engineQuery] = 1;
    EXPECT_EQ(session.run({"--docker", "exec", "--wait", "60", "--", "ls"}), 0);
    EXPECT_EQ(timesAsked(session, engineQuery), 2);
    EXPECT_THAT(session.startedArguments, testing::Contains("ls"));
    session.late[engineQuery] = 1;
    EXPECT_EQ(session.run({"--docker", "start", "--wait", "60"}), 0);
    // Once more for what stands behind the name.
    EXPECT_EQ(timesAsked(session, engineQuery), 5);
}

TEST(Wait, WithoutAClientThereIsNothingToWaitFor)
{
    Session session;
    fakeLvm().dockerPath = "";
    EXPECT_EQ(session.run({"--docker", "start", "--wait", "600"}), 1);
    EXPECT_THAT(session.error, HasSubstr("error: DOCKER_NOT_AVAILABLE\n"));
}

TEST(Wait, TakesSecondsOnly)
{
    for (const char* text : {"0", "-1", "601", "soon", ""}) {
        Session session;
        EXPECT_EQ(session.run({"setup", "--wait", text}), 2) << text;
    }
}

} // namespace
