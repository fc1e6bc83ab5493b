// Where the host product is installed, and which release it is.
#pragma once

#include "host/export.h"

#include <string>
#include <string_view>

// The release text (UTF-8, zero-terminated), or null when the product has none. The text stays valid until the process
// exits. Any thread.
KORVANE_HOST_API const char* svKorvaneRelease();

namespace foundation::core::path {

// How a path is written: 1 is the operating system's native form, 0 the form with forward slashes.
enum Form : int { generic_form = 0, native_form = 1 };

// A path of the host product: its text (UTF-16) and the form that text is in.
struct Pathname {
    std::u16string text;
    int form = generic_form;

    bool empty() const noexcept { return text.empty(); }
};

// The installation root in generic form, empty when it cannot be told. Any thread.
// Throws std::system_error when the configured root is not UTF-8.
KORVANE_HOST_API Pathname get_install_path();

// The path written in the given form: separators are replaced, nothing else.
KORVANE_HOST_API Pathname make_native_form(const Pathname& path, int form);

// `base`, one separator of the given form (none when `base` is empty or ends in one), and `component`. No separator is
// added at the end.
KORVANE_HOST_API Pathname concatenate_pathname(const Pathname& base, std::u16string_view component, int form);

} // namespace foundation::core::path
