#include "host/configuration.h"
#include "host/install.h"

#include "environment_variable.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace {

using namespace foundation::core;
using path::Pathname;

void configureRoot(const std::string& root)
{
    config::Configuration configuration;
    configuration.setInstallationRoot(root);
    config::configure(configuration);
}

void configureRelease(const std::string& release)
{
    config::Configuration configuration;
    configuration.setRelease(release);
    config::configure(configuration);
}

const std::u16string separator(1, static_cast<char16_t>(std::filesystem::path::preferred_separator));

TEST(Release, NoneIsNull)
{
    const EnvironmentVariable unset("KORVANE_RELEASE");
    EXPECT_EQ(svKorvaneRelease(), nullptr);
}

TEST(Release, TheEnvironmentServesAsDefault)
{
    const EnvironmentVariable variable("KORVANE_RELEASE", "R2");
    EXPECT_STREQ(svKorvaneRelease(), "R2");
    configureRelease("R1");
    EXPECT_STREQ(svKorvaneRelease(), "R1");
}

TEST(Release, AnEmptyTextCountsAsUnset)
{
    const EnvironmentVariable variable("KORVANE_RELEASE", "");
    configureRelease("");
    EXPECT_EQ(svKorvaneRelease(), nullptr);
}

TEST(Release, ATextGivenOutStaysValid)
{
    configureRelease("R1");
    const char* first = svKorvaneRelease();
    configureRelease("R2");
    EXPECT_STREQ(svKorvaneRelease(), "R2");
    EXPECT_STREQ(first, "R1");
    configureRelease("R1");
    EXPECT_EQ(svKorvaneRelease(), first) << "the same text is kept once";
}

TEST(InstallPath, TheConfiguredRootWinsOverTheEnvironment)
{
    const EnvironmentVariable variable("KORVANE_ROOT", "/from/environment");
    EXPECT_EQ(path::get_install_path().text, u"/from/environment");
    configureRoot("/from/configuration é/");
    EXPECT_EQ(path::get_install_path().text, u"/from/configuration é");
    configureRoot("/");
    EXPECT_EQ(path::get_install_path().text, u"/");
}

TEST(InstallPath, TheDefaultIsTheTreeAroundTheLibrary)
{
    const EnvironmentVariable unset("KORVANE_ROOT");
    const std::u16string root = path::get_install_path().text;
    EXPECT_TRUE(std::filesystem::is_directory(std::filesystem::path(root)));
    EXPECT_FALSE(root.ends_with(u"/lib"));
    EXPECT_FALSE(root.ends_with(u"/bin"));
    EXPECT_EQ(root.find(u'\\'), std::u16string::npos) << "the generic form has forward slashes only";
}

TEST(InstallPath, ARootThatIsNotUtf8IsAnError)
{
    configureRoot("/bad\xff");
    EXPECT_THROW(path::get_install_path(), std::system_error);
}

TEST(Paths, TheNativeFormHasNativeSeparators)
{
    const Pathname native = path::make_native_form({u"a/b", path::generic_form}, path::native_form);
    EXPECT_EQ(native.text, u"a" + separator + u"b");
    EXPECT_EQ(native.form, path::native_form);
    EXPECT_EQ(path::make_native_form(native, path::generic_form).text, u"a/b");
}

TEST(Paths, OneSeparatorStandsBetweenComponents)
{
    EXPECT_EQ(path::concatenate_pathname({u"a", 1}, u"b", 1).text, u"a" + separator + u"b");
    EXPECT_EQ(path::concatenate_pathname({u"a" + separator, 1}, u"b", 1).text, u"a" + separator + u"b");
    EXPECT_EQ(path::concatenate_pathname({u"", 1}, u"b", 1).text, u"b");
    EXPECT_EQ(path::concatenate_pathname({u"a", 0}, u"b", 0).text, u"a/b");
    EXPECT_EQ(path::concatenate_pathname({u"a", 0}, u"b", 0).form, 0);
}

} // namespace
