#include "texts.h"

#include "answers.h"

#include <array>
#include <utility>

namespace stand_in {
namespace {

constexpr std::string_view inboxUsage = "Copyright (c) Microsoft Corporation. All rights reserved.\n"
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

using Translation = std::pair<std::string_view, std::string_view>;

constexpr std::array translations = {
    Translation{errorCode, "Fehlercode: {}"},
    Translation{succeeded, "Der Vorgang wurde erfolgreich beendet. "},
    Translation{failures::badParameter.text, "Falscher Parameter. "},
    Translation{failures::accessDenied.text, "Zugriff verweigert. "},
    Translation{failures::folderMissing.text, "Das System kann den angegebenen Pfad nicht finden. "},
    Translation{failures::fileMissing.text, "Das System kann die angegebene Datei nicht finden. "},
    Translation{failures::unknownDistribution.text, "Es gibt keine Verteilung mit dem angegebenen Namen."},
    Translation{failures::noneRunning.text, "Es werden keine Verteilungen ausgeführt."},
    Translation{"Windows Subsystem for Linux Distributions:", "Windows-Subsystem für Linux-Distributionen:"},
    Translation{"{} (Default)", "{} (Standard)"},
    Translation{
        failures::nameTaken.text,
        "Eine Verteilung mit dem angegebenen Namen ist bereits vorhanden. Wählen Sie mit --name einen anderen."},
    Translation{failures::distributionBusy.text,
                "Für diese Verteilung läuft eine Installation, Deinstallation oder Konvertierung."},
    Translation{failures::folderTaken.text, "Der angegebene Installationsort wird bereits verwendet."},
    Translation{failures::diskExists.text, "Fehler beim Erstellen des Datenträgers „{}“: Die Datei ist vorhanden. "},
    Translation{
        failures::diskGone.text,
        "Fehler beim Anfügen des Datenträgers „{}“ an WSL2: Das System kann die angegebene Datei nicht finden. "},
    Translation{
        failures::diskGoneWithItsFolder.text,
        "Fehler beim Anfügen des Datenträgers „{}“ an WSL2: Das System kann den angegebenen Pfad nicht finden. "},
    Translation{failures::virtualDiskFile.text, "Das sieht wie eine VHD-Datei aus. Importieren Sie sie mit --vhd."},
    Translation{failures::importFailed.text, "Fehler beim Importieren der Verteilung."},
    Translation{failures::notLinux.text, "Die importierte Datei ist keine gültige Linux-Verteilung."},
    Translation{failures::nameInvalid.text, "Ungültiger Verteilungsname: \"{}\"."},
    Translation{"Invalid command line argument: {}\nPlease use 'wsl.exe --help' to get a list of supported arguments.",
                "Ungültiges Befehlszeilenargument: {}\n\"wsl.exe --help\" listet die unterstützten Argumente auf."},
    Translation{"Argument {} is missing a required parameter.", "Dem Argument {} fehlt ein erforderlicher Parameter."},
    Translation{"The distribution name has already been set.", "Der Verteilungsname wurde bereits festgelegt."},
    Translation{failures::userUnknown.text, "Der Benutzer wurde nicht gefunden."},
    Translation{"Default Distribution: {}", "Standardverteilung: {}"},
    Translation{"Default Version: {}", "Standardversion: {}"},
    Translation{"WSL version: {}", "WSL-Version: {}"},
    Translation{"Kernel version: {}", "Kernelversion: {}"},
    Translation{"WSLg version: {}", "WSLg-Version: {}"},
    Translation{"MSRDC version: {}", "MSRDC-Version: {}"},
    Translation{"Direct3D version: {}", "Direct3D-Version: {}"},
    Translation{"DXCore version: {}", "DXCore-Version: {}"},
    Translation{"Windows version: {}", "Windows-Version: {}"},
    Translation{failures::noneInstalled.text,
                "Für das Windows-Subsystem für Linux sind keine Verteilungen installiert.\n"
                "Sie können dies beheben, indem Sie eine Verteilung wie folgt installieren:\n"
                "\n"
                "\"wsl.exe --list --online\" listet die verfügbaren Verteilungen auf,\n"
                "\"wsl.exe --install <Distro>\" installiert eine."},
    Translation{failures::virtualisationOff.text,
                "WSL2 kann nicht gestartet werden, da die Virtualisierung auf diesem Computer nicht aktiviert ist.\n"
                "Aktivieren Sie die optionale Komponente \"VM-Plattform\" und die Virtualisierung im BIOS.\n"
                "Aktivieren Sie \"VM-Plattform\" mit: wsl.exe --install --no-distribution\n"
                "Weitere Informationen finden Sie unter https://aka.ms/enablevirtualization"},
    Translation{"The Windows Subsystem for Linux is not installed. You can install by running 'wsl.exe --install'.\n"
                "For more information please visit https://aka.ms/wslinstall",
                "Das Windows-Subsystem für Linux ist nicht installiert. Führen Sie \"wsl.exe --install\" aus.\n"
                "Weitere Informationen finden Sie unter https://aka.ms/wslinstall"},
    Translation{failures::unknownToInbox.text, "Ungültige Befehlszeilenoption: {}"},
    Translation{inboxUsage, "Copyright (c) Microsoft Corporation. Alle Rechte vorbehalten.\n"
                            "\n"
                            "Syntax: wsl.exe [Argument] [Optionen...] [Befehlszeile]"},
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
    return inboxUsage;
}

} // namespace stand_in
