// A host in one function: makes the Linux environment exist and runs a program in it: "first_host [ARCHIVE]".
#include <host/exceptions.h>
#include <host/process.h>
#include <orb/lvm.h>

#include <filesystem>
#include <iostream>
#include <system_error>

namespace errors = orb::container_support;
template <class ID>
using Error = foundation::core::except::Exception<ID, std::exception, void>;

int main(int argc, char* argv[])
{
    try {
        orb::lvm::importFromTarIfNecessary(argc > 1 ? argv[1] : "", "", false);

        std::vector<std::string> command = orb::lvm::getContainerArgumentsPrefix("");
        std::map<std::string, std::string> environment = {{"GREETING", "hello"}};
        orb::lvm::applySharedEnvironment(command, environment);
        command.insert(command.end(), {"/bin/sh", "-c", "echo $GREETING from $(uname)"});
        return orb::process::detail::runAttached(command, environment);
    } catch (const Error<errors::DOCKER_NOT_AVAILABLE>& error) {
        std::cerr << error.userText() << "\nInstall Docker, or unset USE_WSL.\n";
    } catch (const Error<errors::WSL_CANNOT_IMPORT_TAR_FILE>& error) {
        std::cerr << error.userText() << "\nDoes the archive exist, and does \"wsl.exe --status\" work?\n";
    } catch (const Error<errors::TAR_FILE_NOT_AVAILABLE>& error) {
        std::cerr << error.userText() << "\nInstall " << error.message().arguments[0].text() << ".\n";
    } catch (const foundation::core::except::IMsgIDException& error) {
        std::cerr << error.userText() << " (" << error.message().identifier << ")\n"; // the others of the catalogue
    } catch (const std::filesystem::filesystem_error& error) {
        std::cerr << "A file cannot be looked at: " << error.what() << '\n';
    } catch (const std::system_error& error) {
        std::cerr << "A program cannot be started: " << error.what() << '\n';
    }
    return 1;
}
