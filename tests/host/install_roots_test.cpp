// The text of an installation root that is configured.
#include "host/configuration.h"
#include "host/install.h"

#include "environment_variable.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

using namespace foundation::core;

TEST(InstallRoots, HaveNoSeparatorsAtTheEndHoweverManyThereWere)
{
    const std::pair<const char*, const char16_t*> cases[] = {
        {"/a", u"/a"},    {"/a/", u"/a"},       {"/a//", u"/a"},    {"/a/b///////", u"/a/b"},
        {"/", u"/"},      {"//", u"/"},         {"///", u"/"},      {"a/", u"a"},
        {"/a /", u"/a "}, {"/a//b/", u"/a//b"}, {"/lib/", u"/lib"}, {"/x/bin", u"/x/bin"}};
    const EnvironmentVariable unset("KORVANE_ROOT");
    for (const auto& [given, root] : cases) {
        config::Configuration configuration;
        configuration.setInstallationRoot(given);
        config::configure(configuration);
        EXPECT_EQ(path::get_install_path().text, root) << given;
        config::configure({});
        const EnvironmentVariable variable("KORVANE_ROOT", given);
        EXPECT_EQ(path::get_install_path().text, root) << given;
    }
}

} // namespace
