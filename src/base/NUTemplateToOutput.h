// Template engine: fills '$name$' placeholders of a file or a given text with
// parameters, optionally cut to a range, and prints or collects the result.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/NUOutput.h"

class NUNVList;

// Return codes of the template engine (-2 is the memory failure of collecting).
enum : int {
    kTplBadArgument = -50,
    kTplNoMemory = -51,
    kTplNoPath = -52,
    kTplOpenFailed = -53,
    kTplReadFailed = -54,
    kTplTooLarge = -55,
    kTplStartMarkMissing = -56,
    kTplEndMarkMissing = -57,
};

class NUTemplateToOutput : public NUOutput {
public:
    static constexpr std::size_t kPathSize = 1024;       // path, terminator included
    static constexpr std::size_t kMarkSize = 128;        // each range mark, terminator included
    static constexpr std::size_t kNameMax = 8191;        // longest placeholder name
    static constexpr int64_t kMaxTemplateBytes = 0x7FFFFFFF;

    // capacity: initial slots of the parameter list, 128 when 0 or below.
    explicit NUTemplateToOutput(int capacity = 0);

    // Adds a parameter; -50 for a null or empty name, -51 when memory runs out.
    // A null value counts as empty. mode 1 escapes HTML markup characters, mode 2 and
    // above also turns line breaks and runs of blanks into markup. A repeated
    // name adds a second entry; only the first is used.
    int AddParam(const char* name, const char* value, int mode) override;
    // Loads (when needed), cuts, fills and prints or collects the text: 0, a
    // code of the enum above, -2 when collecting fails, -1 when printing fails.
    // Parameters stay for another run; collected text is appended to.
    int ExpandTemplate() override;
    ~NUTemplateToOutput() override;
    // Writes text to standard output; the non-buffered end of ExpandTemplate.
    virtual int Print(std::string_view text);
    // Deletes every parameter of that name; the count, or -50 for no name.
    virtual int DeleteParam(const char* name);
    // Takes the template file path (at most 1023 bytes, else -50 and no path)
    // and drops any text loaded or given before. toBuffer collects the output
    // and keeps tag names as they are.
    virtual int SetTemplate(const char* path, bool toBuffer);
    // Takes a text in place of a file, without copying: it must outlive the
    // runs. Null counts as empty.
    virtual int SetTemplateText(const char* text, bool toBuffer);
    // Line range, 1-based and inclusive; lastLine 0 means to the end.
    virtual void SetFirstLine(int line);
    virtual void SetLastLine(int line);
    // Mark range: the lines between the first line beginning with the start
    // mark and the next one beginning with the end mark, both excluded. Null or
    // empty unsets a mark; more than 127 bytes gives -50 and keeps the old one.
    virtual int SetStartMark(const char* mark);
    virtual int SetEndMark(const char* mark);
    // Texts for '$LL...$' placeholders; not owned, null for none.
    virtual void SetLangList(const NUNVList* list);
    // Adds "YYYY-MM-DD" from an eight-digit date; -50 when it isn't one. An
    // empty date adds an empty value.
    virtual int AddDateParam(const char* name, const char* date);

    const char* GetPath() const { return path.c_str(); }

    // The two escapes, also usable on their own; mode 0 and below copies.
    static int EscapeText(std::string_view value, int mode, std::string& out);

private:
    int LoadFile();
    int CutRange(std::string_view all, std::string_view& out) const;
    int ReplacePlaceholders(std::string_view in, std::string& out) const;
    static void FoldTagCase(std::string& text);

    std::string path;          // template file, empty when none
    int firstLine = 1;
    int lastLine = 0;
    std::string startMark;
    std::string endMark;
    std::string loadedText;    // text read from path
    bool textLoaded = false;   // loadedText holds the file's contents
    const char* givenText = nullptr;  // borrowed, not freed
    std::size_t givenLen = 0;
    std::unique_ptr<NUNVList> params;
    const NUNVList* langList = nullptr;
    uint8_t noCaseFold = 0;
};
