#include "where.h"

#include <windows.h>

#include <cstdio>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

namespace where {
namespace {

constexpr wchar_t defaultEndings[] = L".COM;.EXE;.BAT;.CMD";

} // namespace

std::vector<Text> patternsFrom(int, char**)
{
    int count = 0;
    wchar_t** arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    const std::vector<Text> patterns(arguments + 1, arguments + count);
    ::LocalFree(arguments);
    return patterns;
}

Text environment(const char* name)
{
    const Text wideName(name, name + std::char_traits<char>::length(name));
    Text value(32767, L'\0');
    const DWORD length = ::GetEnvironmentVariableW(wideName.c_str(), value.data(), static_cast<DWORD>(value.size()));
    value.resize(length);
    return value;
}

Path callsFile()
{
    // Wine shows the root of the Linux machine as drive Z.
    const Text file = environment("STAND_IN_CALLS");
    return file.empty() ? file : L"Z:" + file;
}

Path::value_type listSeparator()
{
    return L';';
}

std::vector<Text> optionalEndings()
{
    Text list = environment("PATHEXT");
    if (list.empty()) {
        list = defaultEndings;
    }
    std::vector<Text> endings(1);
    for (const wchar_t c : list) {
        if (c == listSeparator()) {
            endings.emplace_back();
        } else {
            endings.back() += static_cast<wchar_t>(::towlower(c));
        }
    }
    std::erase_if(endings, [](const Text& each) { return each.empty(); });
    return endings;
}

void prepareOutput()
{
    ::_setmode(::_fileno(stdout), _O_BINARY);
    ::_setmode(::_fileno(stderr), _O_BINARY);
}

// In the code page of consoles, as the system's own program does.
void printPath(const Path& path)
{
    const Text& text = path.native();
    const int length = static_cast<int>(text.size());
    const int size = ::WideCharToMultiByte(CP_OEMCP, 0, text.c_str(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_OEMCP, 0, text.c_str(), length, bytes.data(), size, nullptr, nullptr);
    std::printf("%s\r\n", bytes.c_str());
}

} // namespace where
