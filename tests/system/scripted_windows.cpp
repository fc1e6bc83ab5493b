#include "scripted.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>

void makeStreamsBinary()
{
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

std::filesystem::path ownPath()
{
    std::wstring name(32768, L'\0');
    name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
    return name;
}
