// The host program decides through Boost.Log itself what it wants to see.
#include "host/configuration.h"
#include "host/diagnostics.h"

#include <gtest/gtest.h>

#include <boost/log/core.hpp>

namespace {

using namespace foundation::core;

TEST(Diagnostics, ARecordThatTheCoreRejectsIsFalse)
{
    config::Configuration configuration;
    configuration.setChannelMasks({{"test", 8}});
    config::configure(configuration);
    diag::basic_diagnostic_logger logger("test");
    boost::log::core::get()->set_logging_enabled(false);
    EXPECT_FALSE(diag::record(logger, 8));
    boost::log::core::get()->set_logging_enabled(true);
    EXPECT_TRUE(diag::record(logger, 8));
}

} // namespace
