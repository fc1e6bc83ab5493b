// Loggers at the very end of a process.
#include "host/diagnostics.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using foundation::core::diag::basic_diagnostic_logger;

// Uses its logger, and a new one, when it is destroyed.
class LogsAtTheEnd {
public:
    ~LogsAtTheEnd()
    {
        const basic_diagnostic_logger late("test:late");
        if (late.mask() != 0 || (logger_ != nullptr && logger_->mask() != 0)) {
            std::_Exit(1);
        }
    }
    void use(const basic_diagnostic_logger* logger) { logger_ = logger; }

private:
    const basic_diagnostic_logger* logger_ = nullptr;
};

TEST(DiagnosticsExit, LoggersOutliveWhatTheLibraryKeeps)
{
    const auto exitWithLoggers = [] {
        // Made before anything that the library keeps, so destroyed after it.
        static LogsAtTheEnd end;
        end.use(new basic_diagnostic_logger("test:early"));
        std::exit(0);
    };
    EXPECT_EXIT(exitWithLoggers(), testing::ExitedWithCode(0), "");
}

} // namespace
