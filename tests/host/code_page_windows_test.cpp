// Text that Windows has in one of its code pages, or in the user's language. The tests run in several.
#include "host/environment.h"
#include "host/files.h"
#include "host/install.h"
#include "host/process.h"
#include "host/text.h"

#include "environment_variable.h"
#include "files_system.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include <windows.h>

namespace {

using namespace foundation::core;

std::string utf8(std::wstring_view text)
{
    return text::cvt_ustring_utf8(std::u16string(text.begin(), text.end()));
}

constexpr UINT japanese = 932;

// A name that the code page of consoles has. One of the Japanese letters ends in the byte of a backslash.
std::u16string nameInCodePage()
{
    return GetOEMCP() == japanese ? u"\u30BD\u30FC\u30B9" : u"J\u00FCrgen";
}

std::string inConsoleCodePage(const std::u16string& text)
{
    std::string bytes(4 * text.size(), '\0');
    const std::wstring units(text.begin(), text.end());
    BOOL lost = FALSE;
    bytes.resize(
        static_cast<std::size_t>(WideCharToMultiByte(CP_OEMCP, 0, units.data(), static_cast<int>(units.size()),
                                                     bytes.data(), static_cast<int>(bytes.size()), nullptr, &lost)));
    EXPECT_EQ(lost, FALSE);
    return bytes;
}

// What the system itself says of a code.
std::wstring systemText(DWORD code)
{
    std::wstring text(1000, L'\0');
    text.resize(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                               text.data(), static_cast<DWORD>(text.size()), nullptr));
    return text.substr(0, text.find_first_of(L"\r\n"));
}

TEST(CodePageText, OfConsolesIsUnderstoodAsAPath)
{
    const std::u16string name = u"C:\\" + nameInCodePage() + u"\\docker.exe";
    const std::string printed = inConsoleCodePage(name);
    EXPECT_THROW(text::cvt_utf8_ustring(printed), std::system_error);
    EXPECT_EQ(text::cvt_string_ustring(printed), name);
    EXPECT_EQ(text::cvt_string_ustring(text::cvt_ustring_utf8(name)), name) << "UTF-8 comes first";
}

TEST(CodePageText, ThatEndsInTheMiddleOfALetterIsAnError)
{
    if (GetOEMCP() != japanese) {
        EXPECT_EQ(text::cvt_string_ustring("C:\\\x83").size(), 4U) << "each byte is a letter";
        return;
    }
    EXPECT_THROW(text::cvt_string_ustring("C:\\\x83"), std::system_error);
    EXPECT_THROW(orb::process::detail::run({"C:\\\x83"}), std::invalid_argument);
}

TEST(CodePageVariables, AreWholeWhateverTheCodePageIs)
{
    for (const wchar_t* value : {L"C:\\J\u00FCrgen", L"\u30BD\u30FC\u30B9", L"\u0905 \u00FC", L""}) {
        const EnvironmentVariable set("KORVANE_RELEASE", utf8(value));
        EXPECT_EQ(env::variable("KORVANE_RELEASE"), utf8(value));
    }
    const EnvironmentVariable root("KORVANE_ROOT", utf8(L"C:\\J\u00FCrgen \u0905"));
    EXPECT_EQ(path::get_install_path().text, u"C:/J\u00FCrgen \u0905");
    const EnvironmentVariable release("KORVANE_RELEASE", utf8(L"R \u0905"));
    EXPECT_EQ(svKorvaneRelease(), utf8(L"R \u0905"));
}

// On Windows the runtime library has its variables in the code page, and other letters are lost in it.
TEST(CodePageVariables, KeepLettersThatTheRuntimeLibraryHasLost)
{
    const EnvironmentVariable kept("CODE_PAGE_TEST", "C:\\? b");
    SetEnvironmentVariableW(L"CODE_PAGE_TEST", L"C:\\\u0905 b");
    EXPECT_EQ(env::variable("CODE_PAGE_TEST"), utf8(L"C:\\\u0905 b"));
}

TEST(CodePageVariables, AreThoseOfTheRuntimeLibraryWhenTheSystemHasOthers)
{
    const EnvironmentVariable kept("CODE_PAGE_TEST", utf8(L"kept"));
    SetEnvironmentVariableW(L"CODE_PAGE_TEST", L"changed since");
    EXPECT_EQ(env::variable("CODE_PAGE_TEST"), "kept");
    SetEnvironmentVariableW(L"CODE_PAGE_TEST", nullptr);
    EXPECT_EQ(env::variable("CODE_PAGE_TEST"), "kept");
    const EnvironmentVariable unset("CODE_PAGE_TEST");
    SetEnvironmentVariableW(L"CODE_PAGE_TEST", L"unseen");
    EXPECT_EQ(env::variable("CODE_PAGE_TEST"), std::nullopt);
}

TEST(CodePageErrors, OfProgramsAreTheSystemsOwnTextInUtf8)
{
    const TemporaryFolder folder;
    const std::string program = folder.path().string();
    try {
        orb::process::detail::run({program});
        ADD_FAILURE() << "no error";
    } catch (const std::system_error& error) {
        const std::wstring said = systemText(static_cast<DWORD>(error.code().value()));
        EXPECT_EQ(error.what(), "cannot start '" + program + "': " + utf8(said));
        EXPECT_EQ(error.code().category(), std::system_category());
    }
}

TEST(CodePageErrors, OfFilesAreTheSystemsOwnTextInUtf8)
{
    const TemporaryFolder folder;
    const Link loop("loop", folder.path() / "loop");
    try {
        path::exists(loop.path());
        ADD_FAILURE() << "no error";
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.what(), "filesystem error: exists: " + utf8(systemText(ERROR_CANT_RESOLVE_FILENAME)) + " [" +
                                    loop.path().string() + "]");
        EXPECT_EQ(error.code(), std::error_code(ERROR_CANT_RESOLVE_FILENAME, std::system_category()));
    }
}

} // namespace
