#include "system_error.h"

#include "host/text.h"

#include <utility>

namespace foundation::core::system {
namespace {

std::string utf8(std::wstring_view text)
{
    return text::cvt_ustring_utf8(std::u16string(text.begin(), text.end()));
}

std::error_code codeOf(DWORD code)
{
    return {static_cast<int>(code), std::system_category()};
}

} // namespace

std::string messageOf(DWORD code)
{
    // The system makes no longer text.
    constexpr DWORD longest = 0x8000;
    std::wstring message(longest, L'\0');
    constexpr DWORD flags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    message.resize(FormatMessageW(flags, nullptr, code, 0, message.data(), longest, nullptr));
    message.erase(message.find_last_not_of(L"\r\n\t ") + 1);
    return message.empty() ? "system error " + std::to_string(code) : utf8(message);
}

bool meansMissing(DWORD code)
{
    return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND || code == ERROR_BAD_NETPATH ||
           code == ERROR_INVALID_NAME;
}

SystemError::SystemError(DWORD code, const std::string& failure)
    : std::system_error(codeOf(code), failure), text_(failure + ": " + messageOf(code))
{
}

FileSystemError::FileSystemError(const char* operation, const std::filesystem::path& path, DWORD code)
    : filesystem_error(operation, path, codeOf(code)),
      text_("filesystem error: " + std::string(operation) + ": " + messageOf(code) +
            (path.empty() ? "" : " [" + utf8(path.native()) + "]"))
{
}

SystemError lastError(const char* failure)
{
    const DWORD code = GetLastError();
    return {code, failure};
}

} // namespace foundation::core::system
