// The properties of the built files, asked as Explorer asks.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

class Properties {
public:
    explicit Properties(const char* file) : data_(GetFileVersionInfoSizeA(file, nullptr))
    {
        if (!data_.empty() && GetFileVersionInfoA(file, 0, static_cast<DWORD>(data_.size()), data_.data()) == FALSE) {
            data_.clear();
        }
    }

    std::string text(const std::string& name) const
    {
        const char* value = nullptr;
        UINT length = 0;
        const std::string path = "\\StringFileInfo\\040904B0\\" + name;
        if (data_.empty() || VerQueryValueA(data_.data(), path.c_str(), slot(&value), &length) == FALSE) {
            return "none";
        }
        return value;
    }

    // The four numbers that Explorer and installers compare.
    std::string numbers() const
    {
        const VS_FIXEDFILEINFO* info = nullptr;
        UINT length = 0;
        if (data_.empty() || VerQueryValueA(data_.data(), "\\", slot(&info), &length) == FALSE) {
            return "none";
        }
        return std::to_string(HIWORD(info->dwFileVersionMS)) + '.' + std::to_string(LOWORD(info->dwFileVersionMS)) +
               '.' + std::to_string(HIWORD(info->dwFileVersionLS)) + '.' +
               std::to_string(LOWORD(info->dwFileVersionLS));
    }

private:
    template <class Value>
    static void** slot(const Value** value)
    {
        return reinterpret_cast<void**>(const_cast<Value**>(value));
    }

    std::vector<char> data_;
};

void expectProperties(const char* file, const std::string& name, const std::string& description)
{
    const Properties properties(file);
    EXPECT_EQ(properties.numbers(), EXPECTED_VERSION);
    EXPECT_EQ(properties.text("FileVersion"), EXPECTED_VERSION);
    EXPECT_EQ(properties.text("ProductVersion"), EXPECTED_VERSION);
    EXPECT_EQ(properties.text("ProductName"), "libzqorb_lvm");
    EXPECT_EQ(properties.text("OriginalFilename"), name);
    EXPECT_EQ(properties.text("FileDescription"), description);
}

TEST(VersionResource, TheLibraryHasOne)
{
    expectProperties(LIBRARY, "libzqorb_lvm.dll", "Linux environment for host applications, through WSL or Docker");
}

TEST(VersionResource, TheHostServicesHaveOne)
{
    expectProperties(HOST_LIBRARY, "libkorvane_host.dll", "Host services for libzqorb_lvm");
}

TEST(VersionResource, TheCommandLineHostHasOne)
{
    expectProperties(KELPCTL, "kelpctl.exe", "Command-line host of libzqorb_lvm");
}

TEST(ProgramManifest, AsksForUtf8LongPathsAndNoRightsBeyondTheUsers)
{
    const HMODULE program = LoadLibraryExA(KELPCTL, nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_NE(program, nullptr);
    const HRSRC found = FindResourceA(program, MAKEINTRESOURCEA(1), MAKEINTRESOURCEA(24));
    ASSERT_NE(found, nullptr);
    const std::string manifest(static_cast<const char*>(LockResource(LoadResource(program, found))),
                               SizeofResource(program, found));
    FreeLibrary(program);
    for (const char* wanted : {">UTF-8</activeCodePage>", ">true</longPathAware>", "level=\"asInvoker\"",
                               "{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}"}) {
        EXPECT_NE(manifest.find(wanted), std::string::npos) << wanted;
    }
}

} // namespace
