#include "recorder.h"

#include "bare_process.h"

#include <cstring>
#include <stdexcept>
#include <string_view>

#include <windows.h>

namespace benchmarks {

namespace {

class Recorded final : public RecordedProcess {
public:
    explicit Recorded(BareProcess process) : process_(std::move(process)) {}
    Captured run() const override { return runBare(process_); }

private:
    BareProcess process_;
};

using Recording = std::vector<std::unique_ptr<RecordedProcess>>;
thread_local Recording* current = nullptr;

using StartFunction = decltype(&CreateProcessW);

// Up to the empty text that ends it.
std::wstring environmentBlock(const wchar_t* block)
{
    const wchar_t* end = block;
    while (*end != L'\0') {
        end += std::wcslen(end) + 1;
    }
    return {block, static_cast<std::size_t>(end - block) + 1};
}

BOOL WINAPI createAndRecord(LPCWSTR program, LPWSTR commandLine, LPSECURITY_ATTRIBUTES process,
                            LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment, LPCWSTR folder,
                            LPSTARTUPINFOW startup, LPPROCESS_INFORMATION information)
{
    // The system may write to the command line.
    BareProcess started{program, commandLine, environmentBlock(static_cast<const wchar_t*>(environment)),
                        folder != nullptr ? folder : L""};
    const BOOL success = CreateProcessW(program, commandLine, process, thread, inherit, flags, environment, folder,
                                        startup, information);
    if (success != FALSE && current != nullptr) {
        current->push_back(std::make_unique<Recorded>(std::move(started)));
    }
    return success;
}

template <class Type>
Type* at(HMODULE module, std::size_t offset)
{
    return reinterpret_cast<Type*>(reinterpret_cast<char*>(module) + offset);
}

// Where the module keeps the address of CreateProcessW: in its table of imported functions.
StartFunction* importOfCreateProcess(HMODULE module)
{
    const auto* header =
        at<IMAGE_NT_HEADERS>(module, static_cast<std::size_t>(at<IMAGE_DOS_HEADER>(module, 0)->e_lfanew));
    const auto table = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    for (auto* library = at<IMAGE_IMPORT_DESCRIPTOR>(module, table); library->Name != 0; ++library) {
        auto* name = at<IMAGE_THUNK_DATA>(module, library->OriginalFirstThunk);
        auto* address = at<IMAGE_THUNK_DATA>(module, library->FirstThunk);
        for (; name->u1.AddressOfData != 0; ++name, ++address) {
            const bool byNumber = IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal);
            if (!byNumber &&
                std::strcmp(at<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData)->Name, "CreateProcessW") == 0) {
                return reinterpret_cast<StartFunction*>(&address->u1.Function);
            }
        }
    }
    throw std::runtime_error("the host-services library does not import CreateProcessW");
}

// Puts ours between the host-services library and the system while it lives.
class Interception {
public:
    Interception() : import_(importOfCreateProcess(GetModuleHandleW(L"libkorvane_host.dll"))), original_(*import_)
    {
        replace(createAndRecord);
    }
    ~Interception() { replace(original_); }
    Interception(const Interception&) = delete;
    Interception& operator=(const Interception&) = delete;

private:
    void replace(StartFunction function)
    {
        DWORD protection = 0;
        VirtualProtect(import_, sizeof *import_, PAGE_READWRITE, &protection);
        *import_ = function;
        VirtualProtect(import_, sizeof *import_, protection, &protection);
    }

    StartFunction* import_;
    StartFunction original_;
};

} // namespace

std::vector<std::unique_ptr<RecordedProcess>> processesStartedBy(const std::function<void()>& work)
{
    const Interception interception;
    Recording recording;
    current = &recording;
    work();
    current = nullptr;
    return recording;
}

} // namespace benchmarks
