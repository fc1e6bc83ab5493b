#include "failure/advice.h"

#include <gmock/gmock.h>

#include <set>
#include <string>

namespace {

using kelpctl::Advice;
using kelpctl::adviceFor;
using kelpctl::adviceNextStep;
using kelpctl::adviceText;
using kelpctl::allAdvice;
using kelpctl::Names;
using testing::HasSubstr;

TEST(Advice, EachKeyIsThereOnceAndLeadsToItsRow)
{
    std::set<std::string> keys;
    for (const Advice& advice : allAdvice) {
        EXPECT_TRUE(keys.insert(advice.key).second) << advice.key;
        EXPECT_EQ(&adviceFor(kelpctl::AdviceKey(advice)), &advice) << advice.key;
    }
}

TEST(Advice, EachRowHasANextStep)
{
    for (const Advice& advice : allAdvice) {
        EXPECT_GT(std::string(advice.nextStep).size(), 15U) << advice.key;
        EXPECT_EQ(std::string(advice.nextStep).back(), '.') << advice.key;
    }
}

TEST(Advice, OnlyTheHostsOwnErrorsHaveNoTextHere)
{
    std::set<std::string> keys;
    for (const Advice& advice : allAdvice) {
        if (*advice.text == '\0') {
            keys.insert(advice.key);
        }
    }
    EXPECT_EQ(keys, (std::set<std::string>{"DOCKER_NOT_AVAILABLE", "IMAGE_NOT_EXIST", "TAR_FILE_LOAD_ERROR",
                                           "TAR_FILE_NOT_AVAILABLE", "WSL_CANNOT_IMPORT_TAR_FILE"}));
}

TEST(Advice, UnknownKeyGetsARowAsWell)
{
    EXPECT_EQ(std::string(kelpctl::adviceKey("SOMETHING_NEW").text()), "UNEXPECTED_ERROR");
}

TEST(Advice, NamesAreFilledIn)
{
    const Names names{"kelpctl --docker", "hub_R1", "box", "the subject"};
    EXPECT_EQ(adviceText(adviceFor("CONTAINER_NOT_RUNNING"), names), "The container box does not run.");
    EXPECT_THAT(adviceNextStep(adviceFor("CONTAINER_NOT_RUNNING"), names),
                HasSubstr("\"kelpctl --docker start --container box\""));
    EXPECT_EQ(adviceText(adviceFor("DISTRIBUTION_MISSING"), names), "There is no distribution hub_R1.");
    EXPECT_EQ(adviceText(adviceFor("TOOL_HANGS"), names), "the subject does not answer.");
}

TEST(Advice, EachPlaceholderStandsForAName)
{
    const Names names{"invocation", "image", "container", "subject"};
    for (const Advice& advice : allAdvice) {
        EXPECT_EQ(adviceText(advice, names).find('{'), std::string::npos) << advice.key;
        EXPECT_EQ(adviceNextStep(advice, names).find('{'), std::string::npos) << advice.key;
    }
}

} // namespace
