// Output base: the collected result and the writers to standard output.
#include "base/NUOutput.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

int comOutPrintf(const char* format, ...) {
    if (format == nullptr) return 0;
    va_list args;
    va_start(args, format);
    const int written = std::vprintf(format, args);
    va_end(args);
    std::fflush(stdout);
    return written;
}

int comOutWrite(const char* text, std::size_t len) {
    if (text == nullptr || len == 0) return 0;
    const std::size_t written = std::fwrite(text, 1, len, stdout);
    std::fflush(stdout);
    return written == len ? 0 : -1;
}

char* NUOutput::TakeResult() {
    char* block = static_cast<char*>(std::malloc(result.size() + 1));
    if (block == nullptr) return nullptr;
    std::memcpy(block, result.data(), result.size());
    block[result.size()] = '\0';
    result.clear();
    result.shrink_to_fit();
    return block;
}

int NUOutput::AppendResult(std::string_view text) {
    try {
        result.append(text);
    } catch (const std::bad_alloc&) {
        return -2;
    } catch (const std::length_error&) {
        return -2;
    }
    return 0;
}
