// Distributions of other accounts, as Windows' registry has them.
#include "terminal/registrations.h"

#include <gmock/gmock.h>

#include <string>

#include <windows.h>

namespace {

constexpr wchar_t account[] = L"S-1-5-21-1-2-3-4567";
constexpr wchar_t entry[] = L"\\Software\\Microsoft\\Windows\\CurrentVersion\\Lxss\\{others-test}";

void setText(HKEY key, const wchar_t* name, const std::wstring& text)
{
    RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

class OtherAccounts : public testing::Test {
protected:
    OtherAccounts()
    {
        HKEY key = nullptr;
        if (RegCreateKeyExW(HKEY_USERS, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr) ==
            ERROR_SUCCESS) {
            setText(key, L"DistributionName", L"hub_of_others_test");
            setText(key, L"BasePath", L"C:\\Temp\\hub");
            RegCloseKey(key);
        }
    }

    ~OtherAccounts() override { RegDeleteTreeW(HKEY_USERS, account); }

    const std::wstring path = std::wstring(account) + entry;
};

TEST_F(OtherAccounts, AreNamedByTheirIdentifierWhereTheyHaveNoName)
{
    bool found = false;
    for (const kelpctl::OthersRegistration& each : kelpctl::registrationsOfOthers()) {
        found = found || (each.name == "hub_of_others_test" && each.account == "S-1-5-21-1-2-3-4567");
    }
    EXPECT_TRUE(found);
}

} // namespace
