#include "host/environment.h"

#include "environment_variable.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace {

using foundation::core::env::variable;

TEST(Environment, AVariableIsWhatTheRuntimeLibraryHas)
{
    const EnvironmentVariable unset("ENVIRONMENT_TEST");
    EXPECT_EQ(variable("ENVIRONMENT_TEST"), std::nullopt);
    for (const char* value : {"value", "", " a=b ", "C:\\J\u00FCrgen/\u6F22\u5B57 \U0001F600"}) {
        const EnvironmentVariable set("ENVIRONMENT_TEST", value);
        EXPECT_EQ(variable("ENVIRONMENT_TEST"), value);
    }
}

} // namespace
