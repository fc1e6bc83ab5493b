#include "host/install.h"

#include "install_location.h"
#include "kept_release.h"

#include "host/configuration.h"
#include "host/environment.h"
#include "host/text.h"

#include <algorithm>
#include <optional>

namespace {

std::optional<std::string> nonEmpty(std::optional<std::string> text)
{
    return text && !text->empty() ? std::move(text) : std::nullopt;
}

} // namespace

const char* svKorvaneRelease()
{
    using namespace foundation::core::config;
    std::optional<std::string> release = nonEmpty(configuration().release());
    if (!release) {
        release = nonEmpty(foundation::core::env::variable("KORVANE_RELEASE"));
    }
    return release ? keepRelease(*release) : nullptr;
}

namespace foundation::core::path {
namespace {

constexpr char16_t backslash = u'\\';
constexpr char16_t slash = u'/';

std::u16string withSeparators(std::u16string text, char16_t separator)
{
    // Outside Windows a backslash is an ordinary character of a name.
    if (nativeSeparator == backslash) { // uncovered: on Windows only
        std::replace(text.begin(), text.end(), separator == slash ? backslash : slash, separator);
    }
    return text;
}

char16_t separatorOf(int form)
{
    return form == native_form ? nativeSeparator : slash;
}

std::u16string withoutSeparatorAtEnd(std::u16string text)
{
    while (text.size() > 1 && text.back() == slash) {
        text.pop_back();
    }
    return text;
}

bool endsWith(std::u16string_view folder, std::u16string_view end)
{
    return folder.size() >= end.size() && std::equal(end.rbegin(), end.rend(), folder.rbegin(), sameInFileNames);
}

// "ROOT/bin/win64", "ROOT/bin" or "ROOT/lib": the folders of the installed tree that hold programs and libraries.
std::u16string rootOfTree(std::u16string folder)
{
    // uncovered: a library that is in none of these folders
    for (const std::u16string_view end : {u"/bin/win64", u"/bin", u"/lib"}) {
        if (endsWith(folder, end)) {
            folder.erase(folder.size() - end.size());
            break;
        }
    }
    return folder;
}

} // namespace

Pathname get_install_path()
{
    std::optional<std::string> root = nonEmpty(config::configuration().installationRoot());
    if (!root) {
        root = nonEmpty(env::variable("KORVANE_ROOT"));
    }
    if (root) {
        return {withoutSeparatorAtEnd(withSeparators(text::cvt_utf8_ustring(*root), slash)), generic_form};
    }
    return {rootOfTree(withSeparators(libraryFolder(), slash)), generic_form};
}

Pathname make_native_form(const Pathname& path, int form)
{
    return {withSeparators(path.text, separatorOf(form)), form};
}

Pathname concatenate_pathname(const Pathname& base, std::u16string_view component, int form)
{
    const char16_t separator = separatorOf(form);
    std::u16string text = base.text;
    if (!text.empty() && text.back() != separator) {
        text += separator;
    }
    text += component;
    return {std::move(text), form};
}

} // namespace foundation::core::path
