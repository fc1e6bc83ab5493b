#include "terminal/counters.h"

#include <memory>
#include <type_traits>

#include <windows.h>

namespace kelpctl {
namespace {

struct Close {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, Close>;

} // namespace

std::optional<std::uint64_t> sizeOfOpened(const std::filesystem::path& file)
{
    constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE opened = CreateFileW(file.c_str(), FILE_READ_ATTRIBUTES, shareAll, nullptr, OPEN_EXISTING, 0, nullptr);
    const Handle handle(opened == INVALID_HANDLE_VALUE ? nullptr : opened);
    LARGE_INTEGER size{};
    if (!handle || GetFileSizeEx(handle.get(), &size) == FALSE) {
        return std::nullopt;
    }
    return static_cast<std::uint64_t>(size.QuadPart);
}

std::optional<std::uint64_t> bytesReadBy(std::uint32_t processId, const std::filesystem::path& /*file*/)
{
    // What a program reads of its own settings stays below; one that has another one do the work reads no more than that.
    constexpr std::uint64_t ownFiles = std::uint64_t{1} << 20;
    const Handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    IO_COUNTERS counters{};
    if (!process || GetProcessIoCounters(process.get(), &counters) == FALSE || counters.ReadTransferCount < ownFiles) {
        return std::nullopt;
    }
    return counters.ReadTransferCount;
}

} // namespace kelpctl
