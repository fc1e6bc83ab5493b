// For tests of whole rules: what must happen in one call, told in order while the expectation is worked out.
#pragma once

#include "generator.h"
#include "host_fixture.h"

#include <string>
#include <vector>

namespace fake {

class Story {
public:
    // The runs, with what they answer.
    void runs(const Arguments& arguments, const RunResult& result = {}, const std::string& directory = {});
    void fails(const Arguments& arguments, const std::string& directory = {});
    // A message, as far as the masks let it through: on the channel itself while its mask has any of the five bits that
    // count, on "orb:lvm" otherwise, and only when that mask has the level's bit.
    void detail(const std::string& channel, const std::string& text);
    void error(const std::string& channel, const std::string& text);
    // Anything else that is recorded.
    void happens(const std::string& event);

    // Compares it with what happened, and forgets that: the runs, the messages, the waits, the questions for the
    // network's interfaces and for temporary names.
    void expectTold() const;

private:
    void message(const std::string& channel, std::uint32_t level, const std::string& text);

    Events events_;
};

inline const std::string wslChannel = "orb:lvm:wsl";
inline const std::string dockerChannel = "orb:lvm:docker";
inline const std::string commonChannel = "orb:lvm:common";

// One seed per process, since a process keeps the release, the path of wsl.exe and the backend; many calls in it.
class RuleTest : public HostTest, public testing::WithParamInterface<unsigned> {
protected:
    RuleTest();

    // Gives each channel a mask, mostly one that lets everything through.
    void chooseMasks();
    // A status, and texts on both streams.
    RunResult anyResult();

    // Makes getExecutablePath() find a path, before the story begins.
    void findWsl();
    // The message of each use of that path.
    void pathUsed(Story& story) const;

    // `name`, followed by "_" and the host's release if it has one.
    std::string withRelease(const std::string& name) const;

    Generator any;
    std::string wsl;

private:
    std::string release_;
    bool hasRelease_;
};

// Calls `check` many times, until it fails.
template <class Check>
void forManyValues(int times, const Check& check)
{
    for (int i = 0; i < times && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE("value " + std::to_string(i));
        check();
    }
}

// UTF-16 as UTF-8, whatever the characters.
std::string utf8(const std::u16string& text);

} // namespace fake
