// The main program of test programs that may hang.
#include "watchdog.h"

#include <gmock/gmock.h>

namespace {

class StartOfTests : public testing::EmptyTestEventListener {
public:
    explicit StartOfTests(Watchdog& watchdog) : watchdog_(watchdog) {}

    void OnTestStart(const testing::TestInfo& test) override
    {
        watchdog_.testStarted(std::string(test.test_suite_name()) + '.' + test.name());
    }

private:
    Watchdog& watchdog_;
};

} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    Watchdog watchdog(std::chrono::minutes{10});
    StartOfTests listener(watchdog);
    testing::UnitTest::GetInstance()->listeners().Append(&listener);
    const int failed = RUN_ALL_TESTS();
    testing::UnitTest::GetInstance()->listeners().Release(&listener);
    return failed;
}
