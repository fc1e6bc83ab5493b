// A small host, to be tested on machines that have neither WSL nor Docker.
#include <host/exceptions.h>
#include <host/process.h>
#include <orb/lvm.h>

#include <iostream>

int main()
{
    try {
        orb::lvm::importFromTarIfNecessary("", "", false);
        std::vector<std::string> command = orb::lvm::getContainerArgumentsPrefix("");
        command.insert(command.end(), {"/bin/sh", "-c", "echo hello from $(uname)"});
        const orb::process::detail::RunResult result = orb::process::detail::run(command);
        std::cout << "ready: " << result.standardOutput;
        return result.status;
    } catch (const foundation::core::except::IMsgIDException& error) {
        std::cout << error.message().identifier << ": " << error.userText() << '\n';
        return 1;
    }
}
