// The host's process, installation, file, text and network services, as the fake host answers them.
#include "fake_host.h"

#include "host/environment.h"
#include "host/files.h"
#include "host/text.h"

#include <cstdlib>

using fake::host;
using fake::narrow;

namespace orb::process::detail {

RunResult run(const std::vector<std::string>& arguments, const Environment& environment, const std::string& workingDir,
              bool detach, const RunOptions& options)
{
    std::string event = workingDir.empty() ? fake::ran(arguments) : fake::ranIn(workingDir, arguments);
    for (const auto& [name, value] : environment) {
        event += " with " + name + "=" + value;
    }
    if (detach) {
        event += " detached";
    }
    if (options.terminationHandler() || options.outputLogger() || options.inputHandler() || options.exitCallback() ||
        options.userObject() != nullptr || options.streamTimeout() != RunOptions().streamTimeout()) {
        event += " with options";
    }
    return host().run(arguments, event);
}

std::vector<std::string> getRunArguments(const std::string& commandLine)
{
    host().record("getRunArguments " + commandLine);
    return host().splitCommandLine ? host().splitCommandLine(commandLine) : std::vector<std::string>{};
}

} // namespace orb::process::detail

const char* svKorvaneRelease()
{
    host().record(fake::askedRelease);
    return host().release ? host().release() : "R9";
}

namespace foundation::core {
namespace env {

std::optional<std::string> variable(const std::string& name)
{
    const char* const value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

} // namespace env

namespace path {
namespace {

std::string described(const Pathname& path)
{
    return narrow(path.text) + "|" + std::to_string(path.form);
}

} // namespace

Pathname get_install_path()
{
    host().record("get_install_path");
    return host().installPath ? host().installPath() : Pathname{u"generic:root", generic_form};
}

Pathname make_native_form(const Pathname& path, int form)
{
    host().record("make_native_form " + described(path) + " " + std::to_string(form));
    return {host().nativeForm, form};
}

Pathname concatenate_pathname(const Pathname& base, std::u16string_view component, int form)
{
    host().record("concatenate_pathname " + described(base) + " " + narrow(component) + " " + std::to_string(form));
    std::u16string text = base.text;
    if (!text.empty()) {
        text += u'/';
    }
    text += component;
    return {text, form};
}

std::u16string temp_directory_name()
{
    host().record("temp_directory_name");
    return host().temporaryDirectory;
}

std::u16string tmpnam(const std::u16string& directory, const std::u16string& prefix, const std::u16string& suffix)
{
    host().record("tmpnam <" + narrow(directory) + "> <" + narrow(prefix) + "> <" + narrow(suffix) + ">");
    return host().temporaryName;
}

namespace {

std::filesystem::file_type typeOf(const char* operation, const std::filesystem::path& path)
{
    if (const auto known = host().fileTypes.find(path.u16string()); known != host().fileTypes.end()) {
        return known->second;
    }
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(path, error).type();
    if (type == std::filesystem::file_type::none) {
        throw std::filesystem::filesystem_error(operation, path, error);
    }
    return type;
}

} // namespace

bool exists(const std::filesystem::path& path)
{
    host().record("exists " + narrow(path.u16string()));
    return typeOf("exists", path) != std::filesystem::file_type::not_found;
}

bool is_link(const std::filesystem::path& path)
{
    host().record("is_link " + narrow(path.u16string()));
    std::error_code error;
    const bool link = host().isLink && host().isLink(path, error);
    if (error) {
        throw std::filesystem::filesystem_error("symlink_status", path, error);
    }
    return link;
}

bool is_regular_file(const std::filesystem::path& path)
{
    host().record("is_regular_file " + narrow(path.u16string()));
    return typeOf("status", path) == std::filesystem::file_type::regular;
}

} // namespace path

namespace text {
namespace {

std::string toUtf8(std::u16string_view text)
{
    const std::u8string converted = std::filesystem::path(text).u8string();
    return {converted.begin(), converted.end()};
}

} // namespace

std::string cvt_ustring_utf8(const char16_t* text, std::size_t length)
{
    const std::u16string_view view(text, length);
    host().record("cvt_ustring_utf8 " + narrow(view));
    return toUtf8(view);
}

std::string cvt_ustring_string(std::u16string_view text)
{
    host().record("cvt_ustring_string " + narrow(text));
    return toUtf8(text);
}

// Ill-formed text is refused by the standard library's conversion, with a std::system_error.
std::u16string cvt_string_ustring(std::string_view text)
{
    host().record("cvt_string_ustring " + std::string(text));
    return std::filesystem::path(std::u8string(text.begin(), text.end())).u16string();
}

} // namespace text

namespace net {

InetAddress::InetAddress(std::string text, std::uint32_t version, bool loopback)
    : text_(std::move(text)), version_(version), loopback_(loopback)
{
}

bool InetAddress::isLoopback() const
{
    host().record("isLoopback " + text_);
    return loopback_;
}

std::uint32_t InetAddress::getVersion() const
{
    host().record("getVersion " + text_);
    return version_;
}

std::string InetAddress::getHostAddress() const
{
    host().record("getHostAddress " + text_);
    return text_;
}

NetworkInterface::NetworkInterface(std::u16string friendlyName, std::u16string description,
                                   std::vector<InetAddress> addresses)
    : friendlyName_(std::move(friendlyName)), description_(std::move(description)), addresses_(std::move(addresses))
{
}

std::vector<NetworkInterface> NetworkInterface::list()
{
    host().record(fake::askedInterfaces);
    return host().interfaces ? host().interfaces() : std::vector<NetworkInterface>{};
}

std::u16string NetworkInterface::getFriendlyName() const
{
    host().record("getFriendlyName " + narrow(friendlyName_));
    return friendlyName_;
}

std::u16string NetworkInterface::getDescription() const
{
    host().record("getDescription " + narrow(friendlyName_));
    return description_;
}

std::vector<InetAddress> NetworkInterface::getInetAddresses() const
{
    host().record("getInetAddresses " + narrow(friendlyName_));
    return addresses_;
}

} // namespace net
} // namespace foundation::core
