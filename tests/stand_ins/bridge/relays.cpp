#include "bridge.h"

#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace bridge {
namespace {

constexpr DWORD bufferSize = 65536;

volatile LONG programEnded = 0;

struct Relay {
    int descriptor;
    HANDLE handle;
};

bool writeDescriptor(int descriptor, const char* bytes, DWORD count)
{
    while (count > 0) {
        const ssize_t written = write(descriptor, bytes, count);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            bytes += written;
            count -= static_cast<DWORD>(written);
        }
    }
    return true;
}

void writeHandle(HANDLE handle, const char* bytes, DWORD count)
{
    while (count > 0) {
        DWORD written = 0;
        if (!WriteFile(handle, bytes, count, &written, nullptr)) {
            return;
        }
        bytes += written;
        count -= written;
    }
}

// False once the program has ended and left nothing more to read.
bool waitForBytes(int descriptor)
{
    for (;;) {
        const bool ended = InterlockedCompareExchange(&programEnded, 0, 0) != 0;
        pollfd watched = {descriptor, POLLIN, 0};
        const int ready = poll(&watched, 1, ended ? 0 : 20);
        if (ready > 0) {
            return true;
        }
        if (ready == 0 && ended) {
            return false;
        }
    }
}

DWORD WINAPI copyInput(void* argument)
{
    const Relay relay = *static_cast<Relay*>(argument);
    delete static_cast<Relay*>(argument);
    static char buffer[bufferSize];
    DWORD count = 0;
    while (ReadFile(relay.handle, buffer, bufferSize, &count, nullptr) && count > 0) {
        if (!writeDescriptor(relay.descriptor, buffer, count)) {
            break;
        }
    }
    close(relay.descriptor);
    return 0;
}

DWORD WINAPI copyOutput(void* argument)
{
    const Relay relay = *static_cast<Relay*>(argument);
    delete static_cast<Relay*>(argument);
    char* buffer = new char[bufferSize];
    while (waitForBytes(relay.descriptor)) {
        const ssize_t count = read(relay.descriptor, buffer, bufferSize);
        if (count == 0 || (count < 0 && errno != EINTR)) {
            break;
        }
        writeHandle(relay.handle, buffer, count < 0 ? 0 : static_cast<DWORD>(count));
    }
    delete[] buffer;
    return 0;
}

HANDLE startThread(LPTHREAD_START_ROUTINE routine, int descriptor, DWORD standardHandle)
{
    return CreateThread(nullptr, 0, routine, new Relay{descriptor, GetStdHandle(standardHandle)}, 0, nullptr);
}

} // namespace

void relayInput(int descriptor)
{
    CloseHandle(startThread(copyInput, descriptor, STD_INPUT_HANDLE));
}

HANDLE relayOutput(int descriptor, DWORD standardHandle)
{
    return startThread(copyOutput, descriptor, standardHandle);
}

void finishRelay(HANDLE relay)
{
    InterlockedExchange(&programEnded, 1);
    WaitForSingleObject(relay, INFINITE);
    CloseHandle(relay);
}

} // namespace bridge
