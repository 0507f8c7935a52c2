// Base of the page output objects: the output is either printed to standard
// output or collected into a result text that the caller takes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Formatted text to standard output; returns the bytes written or a negative value.
int comOutPrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));
// Raw bytes to standard output (NUL bytes included); 0 or -1.
int comOutWrite(const char* text, std::size_t len);

class NUOutput {
public:
    NUOutput() = default;
    NUOutput(const NUOutput&) = delete;
    NUOutput& operator=(const NUOutput&) = delete;

    // Filled by the derived class: adding a parameter and running the output.
    virtual int AddParam(const char* name, const char* value, int mode) = 0;
    virtual int ExpandTemplate() = 0;
    virtual ~NUOutput() = default;

    bool IsBuffered() const { return buffered != 0; }
    // The collected text; never null, empty when nothing was collected.
    const char* GetResult() const { return result.c_str(); }
    std::size_t GetResultLen() const { return result.size(); }
    // Hands the collected text over as a heap block (the caller frees it with
    // free) and empties it; null when memory runs out.
    char* TakeResult();
    void ClearResult() { result.clear(); }

protected:
    // Appends to the collected text: 0, or -2 when memory runs out.
    int AppendResult(std::string_view text);

    uint32_t buffered = 0;  // non-zero: output is collected, not printed
    std::string result;     // the collected output
};
