// The source name that reports carry: the file's path under src/ without its
// extension ("MakeConvEToKiv/convcom/ConvApp"), computed from __FILE__ at compile time.
#pragma once

#include <cstddef>

namespace conv_detail {

struct SourceName {
    char text[256] = {};
};

consteval SourceName MakeSourceName(const char* file) {
    std::size_t len = 0;
    while (file[len] != '\0') ++len;
    // Start behind the last "src/" that begins a path component.
    std::size_t start = 0;
    for (std::size_t i = 0; i + 4 <= len; ++i) {
        if (file[i] == 's' && file[i + 1] == 'r' && file[i + 2] == 'c' && file[i + 3] == '/' &&
            (i == 0 || file[i - 1] == '/'))
            start = i + 4;
    }
    // End before the extension of the last component.
    std::size_t end = len;
    for (std::size_t i = len; i > start; --i) {
        if (file[i - 1] == '/') break;
        if (file[i - 1] == '.') {
            end = i - 1;
            break;
        }
    }
    SourceName out{};
    std::size_t n = 0;
    for (std::size_t i = start; i < end && n + 1 < sizeof(out.text); ++i) out.text[n++] = file[i];
    return out;
}

}  // namespace conv_detail

// CONV_SRC: this file's source name; CONV_HERE: source name and line, as ReportError takes them.
#define CONV_SRC                                                                   \
    ([]() -> const char* {                                                         \
        static constexpr ::conv_detail::SourceName name_ =                         \
            ::conv_detail::MakeSourceName(__FILE__);                               \
        return name_.text;                                                         \
    }())
#define CONV_HERE CONV_SRC, __LINE__
