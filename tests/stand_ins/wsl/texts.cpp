#include "texts.h"

#include <array>
#include <utility>

namespace stand_in {
namespace {

using Translation = std::pair<std::string_view, std::string_view>;

constexpr std::array translations = {
    Translation{"Error code: {}", "Fehlercode: {}"},
    Translation{"The operation completed successfully. ", "Der Vorgang wurde erfolgreich beendet. "},
    Translation{"The parameter is incorrect. ", "Falscher Parameter. "},
    Translation{"Access is denied. ", "Zugriff verweigert. "},
    Translation{"The system cannot find the path specified. ", "Das System kann den angegebenen Pfad nicht finden. "},
    Translation{"The system cannot find the file specified. ", "Das System kann die angegebene Datei nicht finden. "},
    Translation{"There is no distribution with the supplied name.",
                "Es gibt keine Verteilung mit dem angegebenen Namen."},
    Translation{"There are no running distributions.", "Es werden keine Verteilungen ausgeführt."},
    Translation{"Windows Subsystem for Linux Distributions:", "Windows-Subsystem für Linux-Distributionen:"},
    Translation{"{} (Default)", "{} (Standard)"},
    Translation{
        "A distribution with the supplied name already exists. Use --name to choose a different name.",
        "Eine Verteilung mit dem angegebenen Namen ist bereits vorhanden. Wählen Sie mit --name einen anderen."},
    Translation{"An install, uninstall, or conversion is in progress for this distribution.",
                "Für diese Verteilung läuft eine Installation, Deinstallation oder Konvertierung."},
    Translation{"The supplied install location is already in use.",
                "Der angegebene Installationsort wird bereits verwendet."},
    Translation{"Failed to create disk '{}': The file exists. ",
                "Fehler beim Erstellen des Datenträgers „{}“: Die Datei ist vorhanden. "},
    Translation{"This looks like a VHD file. Use --vhd to import a VHD instead of a tar.",
                "Das sieht wie eine VHD-Datei aus. Importieren Sie sie mit --vhd."},
    Translation{"Importing the distribution failed.", "Fehler beim Importieren der Verteilung."},
    Translation{"The imported file is not a valid Linux distribution.",
                "Die importierte Datei ist keine gültige Linux-Verteilung."},
    Translation{"Invalid distribution name: \"{}\".", "Ungültiger Verteilungsname: \"{}\"."},
    Translation{"Invalid command line argument: {}\nPlease use 'wsl.exe --help' to get a list of supported arguments.",
                "Ungültiges Befehlszeilenargument: {}\n\"wsl.exe --help\" listet die unterstützten Argumente auf."},
    Translation{"Argument {} is missing a required parameter.", "Dem Argument {} fehlt ein erforderlicher Parameter."},
    Translation{"The distribution name has already been set.", "Der Verteilungsname wurde bereits festgelegt."},
    Translation{"User not found.", "Der Benutzer wurde nicht gefunden."},
    Translation{"Default Distribution: {}", "Standardverteilung: {}"},
    Translation{"Default Version: {}", "Standardversion: {}"},
    Translation{"WSL version: {}", "WSL-Version: {}"},
    Translation{"Kernel version: {}", "Kernelversion: {}"},
    Translation{"WSLg version: {}", "WSLg-Version: {}"},
    Translation{"MSRDC version: {}", "MSRDC-Version: {}"},
    Translation{"Direct3D version: {}", "Direct3D-Version: {}"},
    Translation{"DXCore version: {}", "DXCore-Version: {}"},
    Translation{"Windows version: {}", "Windows-Version: {}"},
    Translation{"Windows Subsystem for Linux has no installed distributions.\n"
                "You can resolve this by installing a distribution with the instructions below:\n"
                "\n"
                "Use 'wsl.exe --list --online' to list available distributions\n"
                "and 'wsl.exe --install <Distro>' to install.",
                "Für das Windows-Subsystem für Linux sind keine Verteilungen installiert.\n"
                "Sie können dies beheben, indem Sie eine Verteilung wie folgt installieren:\n"
                "\n"
                "\"wsl.exe --list --online\" listet die verfügbaren Verteilungen auf,\n"
                "\"wsl.exe --install <Distro>\" installiert eine."},
    Translation{"WSL2 is unable to start since virtualization is not enabled on this machine.",
                "WSL2 kann nicht gestartet werden, da die Virtualisierung auf diesem Computer nicht aktiviert ist."},
    Translation{"The Windows Subsystem for Linux is not installed. You can install by running 'wsl.exe --install'.",
                "Das Windows-Subsystem für Linux ist nicht installiert. Führen Sie \"wsl.exe --install\" aus."},
};

} // namespace

std::string_view german(std::string_view english)
{
    for (const Translation& translation : translations) {
        if (translation.first == english) {
            return translation.second;
        }
    }
    return english;
}

std::string_view usageText()
{
    return "Copyright (c) Microsoft Corporation. All rights reserved.\n"
           "For privacy information about this product please visit https://aka.ms/privacy.\n"
           "\n"
           "Usage: wsl.exe [Argument] [Options...] [CommandLine]\n"
           "\n"
           "Arguments for running Linux binaries:\n"
           "\n"
           "    --exec, -e <CommandLine>\n"
           "    --shell-type <standard|login|none>\n"
           "    --\n"
           "\n"
           "Options:\n"
           "    --cd <Directory>\n"
           "    --distribution, -d <DistroName>\n"
           "    --user, -u <UserName>\n"
           "\n"
           "Arguments for managing Windows Subsystem for Linux:\n"
           "\n"
           "    --help\n"
           "    --import <Distro> <InstallLocation> <FileName> [Options]\n"
           "    --list, -l [Options]\n"
           "    --set-default, -s <Distro>\n"
           "    --shutdown\n"
           "    --status\n"
           "    --terminate, -t <Distro>\n"
           "    --unregister <Distro>\n"
           "    --version, -v";
}

std::string_view inboxUsageText()
{
    return "Copyright (c) Microsoft Corporation. All rights reserved.\n"
           "\n"
           "Usage: wsl.exe [Argument] [Options...] [CommandLine]\n"
           "\n"
           "Arguments for running Linux binaries:\n"
           "\n"
           "    --exec, -e <CommandLine>\n"
           "    --\n"
           "\n"
           "Arguments for managing Windows Subsystem for Linux:\n"
           "\n"
           "    --import <Distro> <InstallLocation> <FileName> [Options]\n"
           "    --list, -l [Options]\n"
           "    --set-default, -s <Distro>\n"
           "    --terminate, -t <Distro>\n"
           "    --unregister <Distro>";
}

} // namespace stand_in
