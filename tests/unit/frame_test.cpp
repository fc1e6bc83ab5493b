// Switches and channels.
#include "host_fixture.h"

#include "frame.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <iterator>

namespace {

using namespace fake;
using namespace orb::lvm::detail;

class Switches : public HostTest {};

TEST_F(Switches, WslIsTheBackendWhileUseWslIsUnset)
{
    EXPECT_TRUE(useWsl());
}

TEST_F(Switches, AnUnsetUseWslIsAskedForAtEachCall)
{
    EXPECT_TRUE(useWsl());
    EXPECT_TRUE(useWsl());
    setVariable("USE_WSL", "0");
    EXPECT_FALSE(useWsl());
}

TEST_F(Switches, UseWslOnceFoundOffStaysOff)
{
    setVariable("USE_WSL", "0");
    EXPECT_FALSE(useWsl());
    setVariable("USE_WSL", "1");
    EXPECT_FALSE(useWsl());
    setVariable("USE_WSL", std::nullopt);
    EXPECT_FALSE(useWsl());
}

TEST_F(Switches, UseWslOnceFoundOnStaysOn)
{
    setVariable("USE_WSL", "1");
    EXPECT_TRUE(useWsl());
    setVariable("USE_WSL", "0");
    EXPECT_TRUE(useWsl());
}

const char* const offValues[] = {"", "0", "2", "yes", "true", "11", "10", " 1", "1 ", "01", "-1", "1\n", "I"};

class UseWslValue : public HostTest, public testing::WithParamInterface<std::size_t> {};

TEST_P(UseWslValue, OtherThanOneSelectsDocker)
{
    setVariable("USE_WSL", offValues[GetParam()]);
    EXPECT_FALSE(useWsl());
}

INSTANTIATE_TEST_SUITE_P(Off, UseWslValue, testing::Range(std::size_t{0}, std::size(offValues)));

TEST_F(Switches, DockerRepositoryIsOnOnlyWhenExactlyOne)
{
    EXPECT_FALSE(useDockerRepository());
    for (const char* value : offValues) {
        setVariable("USE_DOCKER_REPOSITORY", value);
        EXPECT_FALSE(useDockerRepository()) << value;
    }
    setVariable("USE_DOCKER_REPOSITORY", "1");
    EXPECT_TRUE(useDockerRepository());
    EXPECT_FALSE(additionalLoggingEnabled());
    setVariable("USE_DOCKER_REPOSITORY", std::nullopt);
    EXPECT_FALSE(useDockerRepository());
}

TEST_F(Switches, AdditionalLoggingIsOnOnlyWhenExactlyOne)
{
    EXPECT_FALSE(additionalLoggingEnabled());
    for (const char* value : offValues) {
        setVariable("KELP_ADDITIONAL_LOGGING", value);
        EXPECT_FALSE(additionalLoggingEnabled()) << value;
    }
    setVariable("KELP_ADDITIONAL_LOGGING", "1");
    EXPECT_TRUE(additionalLoggingEnabled());
    EXPECT_FALSE(useDockerRepository());
    setVariable("KELP_ADDITIONAL_LOGGING", std::nullopt);
    EXPECT_FALSE(additionalLoggingEnabled());
}

struct Getter {
    basic_diagnostic_logger& (*get)();
    const char* channel;
};

const Getter getters[] = {
    {commonLogger, "orb:lvm:common"}, {dockerLogger, "orb:lvm:docker"}, {wslLogger, "orb:lvm:wsl"}};

class Channels : public HostTest {};

TEST_F(Channels, EachGetterMakesItsChannelAndAParentOfItsOwnOnce)
{
    for (const Getter& getter : getters) {
        host().loggers.clear();
        getter.get();
        const Events expected = {std::string(getter.channel) + " < orb:lvm", "orb:lvm"};
        EXPECT_EQ(expected, host().loggers);
        getter.get();
        EXPECT_EQ(expected, host().loggers);
    }
}

// The exit status of the test's process, as the rest of it is over then.
void expectLoggersDestroyedInReverseOrder()
{
    Events expected = host().loggers;
    std::reverse(expected.begin(), expected.end());
    if (host().destroyedLoggers != expected) {
        std::cerr << "loggers are not destroyed in the reverse order of their creation\n";
        std::_Exit(1);
    }
}

TEST_F(Channels, LoggersAreDestroyedAtExitInReverseOrder)
{
    // What is registered before the loggers are made is called after they are destroyed.
    ASSERT_EQ(std::atexit(expectLoggersDestroyedInReverseOrder), 0);
    dockerLogger();
    wslLogger();
    commonLogger();
    EXPECT_EQ(host().loggers.size(), 6U);
}

TEST_F(Channels, LoggersAreNotShared)
{
    std::vector<basic_diagnostic_logger*> found;
    for (const Getter& getter : getters) {
        for (const std::uint32_t mask : {detailBit, 0U}) {
            host().mask(getter.channel) = mask;
            basic_diagnostic_logger* const logger = &getter.get();
            EXPECT_EQ(std::count(found.begin(), found.end(), logger), 0);
            EXPECT_EQ(&getter.get(), logger);
            found.push_back(logger);
        }
    }
}

TEST_F(Channels, AChannelWithoutAnyOfFiveBitsWritesThroughTheParent)
{
    host().mask("orb:lvm") = detailBit;
    for (const Getter& getter : getters) {
        for (unsigned bit = 0; bit < 32; ++bit) {
            const std::uint32_t mask = std::uint32_t{1} << bit;
            const bool own = mask == 1 || mask == 4 || mask == 8 || mask == 256 || mask == 512;
            host().mask(getter.channel) = mask;
            host().mask("orb:lvm") = 0;
            basic_diagnostic_logger& logger = getter.get();
            host().mask("orb:lvm") = 0x40;
            EXPECT_EQ(logger.mask(), own ? mask : 0x40) << getter.channel << " " << mask;
        }
    }
}

TEST_F(Channels, TheChannelIsChosenAtEachCall)
{
    for (const Getter& getter : getters) {
        const std::string start = "log " + std::string(getter.channel);
        log(getter.get(), Level::Detail, "one");
        host().mask(getter.channel) = 0;
        log(getter.get(), Level::Error, "two");
        host().mask(getter.channel) = errorBit;
        log(getter.get(), Level::Error, "three");
        expectEvents({start + " 8: one", "log orb:lvm 512: two", start + " 512: three"});
    }
}

TEST_F(Channels, AChannelWithAnotherBitIsNotReplacedByItsParent)
{
    host().mask("orb:lvm:wsl") = 1;
    log(wslLogger(), Level::Detail, "not written");
    host().mask("orb:lvm:wsl") = errorBit;
    log(wslLogger(), Level::Detail, "not written");
    expectEvents({});
}

TEST_F(Channels, LevelsAreBitsOfTheMask)
{
    EXPECT_EQ(static_cast<std::uint32_t>(Level::Detail), 8U);
    EXPECT_EQ(static_cast<std::uint32_t>(Level::Error), 512U);
    basic_diagnostic_logger logger("any");
    for (unsigned bit = 0; bit < 32; ++bit) {
        const std::uint32_t mask = std::uint32_t{1} << bit;
        host().mask("any") = mask;
        EXPECT_EQ(isEnabled(logger, Level::Detail), mask == 8);
        EXPECT_EQ(isEnabled(logger, Level::Error), mask == 512);
        EXPECT_EQ(isEnabled(logger, Level{mask}), bit < 15);
        EXPECT_FALSE(isEnabled(logger, Level{~mask}));
    }
}

struct Counted {
    int* count;
};

std::ostream& operator<<(std::ostream& stream, const Counted& counted)
{
    ++*counted.count;
    return stream << "counted";
}

TEST_F(Channels, NothingIsFormattedWhileTheLevelIsOff)
{
    int count = 0;
    basic_diagnostic_logger logger("any");
    host().mask("any") = errorBit;
    log(logger, Level::Detail, Counted{&count});
    host().mask("any") = detailBit;
    log(logger, Level::Error, Counted{&count});
    EXPECT_EQ(count, 0);
    EXPECT_EQ(host().openedRecords, 0);
    log(logger, Level::Detail, Counted{&count}, "; ", Counted{&count});
    EXPECT_EQ(count, 2);
    EXPECT_EQ(host().openedRecords, 1);
    expectEvents({"log any 8: counted; counted"});
}

TEST_F(Channels, NothingIsFormattedForARecordThatIsRejected)
{
    int count = 0;
    host().acceptsRecords = false;
    basic_diagnostic_logger logger("any");
    log(logger, Level::Error, Counted{&count});
    EXPECT_EQ(count, 0);
    EXPECT_EQ(host().openedRecords, 1);
    EXPECT_EQ(host().streamedRecords, 0);
    expectEvents({});
}

TEST_F(Channels, FlagsAreDigitsAndNumbersDecimal)
{
    basic_diagnostic_logger logger("any");
    log(logger, Level::Error, "a ", true, false, " ", -17, " ", std::string("text"));
    expectEvents({"log any 512: a 10 -17 text"});
}

} // namespace
