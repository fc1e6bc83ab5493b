#include "bridge.h"

#include <algorithm>
#include <cctype>
#include <unistd.h>

extern "C" char* CDECL wine_get_unix_file_name(LPCWSTR name);

namespace bridge {
namespace {

std::string utf8(const std::u16string& text)
{
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}

bool isLetter(char16_t c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isAbsolute(const std::u16string& path)
{
    return path.size() >= 3 && isLetter(path[0]) && path[1] == u':' && (path[2] == u'\\' || path[2] == u'/');
}

// Only a path whose folder is there can be turned; of any other the folder is, as far as that goes.
std::string unixPath(const std::u16string& path)
{
    if (char* found = wine_get_unix_file_name(path.c_str())) {
        const std::string result = found;
        HeapFree(GetProcessHeap(), 0, found);
        return result;
    }
    const std::size_t separator = path.find_last_of(u"\\/");
    if (separator == std::u16string::npos || separator <= 2) {
        return "/nonexistent/" + utf8(path.substr(path.size() < 3 ? path.size() : 3));
    }
    return unixPath(path.substr(0, separator)) + "/" + utf8(path.substr(separator + 1));
}

std::vector<std::u16string> windowsArguments()
{
    int count = 0;
    LPWSTR* arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::u16string> result(arguments, arguments + count);
    LocalFree(arguments);
    return result;
}

// "X:\..." and "--option=X:\...".
std::string translated(const std::u16string& argument)
{
    if (isAbsolute(argument)) {
        return unixPath(argument);
    }
    const std::size_t equals = argument.find(u'=');
    if (argument.rfind(u"--", 0) == 0 && equals != std::u16string::npos && isAbsolute(argument.substr(equals + 1))) {
        return utf8(argument.substr(0, equals + 1)) + unixPath(argument.substr(equals + 1));
    }
    return utf8(argument);
}

// One line for each absolute Windows path among the arguments: the path, a tab, and the Unix path.
std::string pathTable()
{
    std::string table;
    for (const std::u16string& argument : windowsArguments()) {
        if (isAbsolute(argument)) {
            table += utf8(argument) + "\t" + unixPath(argument) + "\n";
        }
    }
    return table;
}

// These keep their Unix values.
bool isUnixOwn(const std::string& name)
{
    for (const char* own : {"PATH", "HOME", "TEMP", "TMP", "TMPDIR", "PWD"}) {
        if (lstrcmpiA(own, name.c_str()) == 0) {
            return true;
        }
    }
    return name.rfind("WINE", 0) == 0;
}

std::vector<std::u16string> windowsEnvironment()
{
    std::vector<std::u16string> entries;
    LPWSTR block = GetEnvironmentStringsW();
    for (LPWSTR entry = block; *entry != 0; entry += entries.back().size() + 1) {
        entries.emplace_back(entry);
    }
    FreeEnvironmentStringsW(block);
    return entries;
}

std::string valueWithUnixPath(const std::u16string& value)
{
    return isAbsolute(value) ? unixPath(value) : utf8(value);
}

} // namespace

std::string programName()
{
    std::u16string path(32768, u'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    path.erase(0, path.find_last_of(u"\\/") + 1);
    path.erase(path.find(u'.') == std::u16string::npos ? path.size() : path.find(u'.'));
    std::string name = utf8(path);
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
    return name;
}

std::string backingProgram(const std::string& name)
{
    std::u16string variable = u"WINE_BRIDGE_";
    variable.append(name.begin(), name.end());
    std::u16string value(32768, u'\0');
    value.resize(GetEnvironmentVariableW(variable.c_str(), value.data(), static_cast<DWORD>(value.size())));
    return valueWithUnixPath(value);
}

std::vector<std::string> linuxArguments(const std::string& program)
{
    std::vector<std::string> arguments;
    for (const std::u16string& argument : windowsArguments()) {
        arguments.push_back(arguments.empty() ? program : translated(argument));
    }
    return arguments;
}

std::vector<std::string> linuxEnvironment()
{
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (isUnixOwn(text.substr(0, text.find('=')))) {
            environment.push_back(text);
        }
    }
    for (const std::u16string& entry : windowsEnvironment()) {
        const std::size_t equals = entry.find(u'=');
        const std::string name = utf8(entry.substr(0, equals));
        if (equals == 0 || isUnixOwn(name)) {
            continue;
        }
        const std::u16string value = entry.substr(equals + 1);
        environment.push_back(name + "=" + (name == "WSL_STAND_IN_STATE" ? valueWithUnixPath(value) : utf8(value)));
    }
    environment.push_back("WSL_STAND_IN_COMMAND_LINE=" + utf8(GetCommandLineW()));
    environment.push_back("WSL_STAND_IN_PATHS=" + pathTable());
    return environment;
}

std::string currentFolder()
{
    std::u16string folder(32768, u'\0');
    folder.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder.size()), folder.data()));
    return unixPath(folder);
}

} // namespace bridge
