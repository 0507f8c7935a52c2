// Reading one flat-store file: the line forms, the records and nested lists
// they build, record paths by id, and the reports that carry the file's path.
#include "MakeConvSToKiv/convstdcom/ConvStdCom.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "MakeConvLib/cmsbase/CMSioObjApp.h"
#include "MakeConvSToKiv/convstdcom/ConvStdFileIO.h"
#include "base/comEncoding.h"
#include "base/comSource.h"
#include "base/comStr.h"

namespace {

constexpr std::size_t kDetailMax = 8000;  // a formatted report detail, terminator included

struct FreeDeleter {
    void operator()(char* p) const noexcept { std::free(p); }
};
using CText = std::unique_ptr<char, FreeDeleter>;

// The UTF-8 text as EUC-JP, through JIS; empty when memory runs out.
std::string Utf8ToEuc(const char* text) {
    const std::size_t len = std::strlen(text);
    std::vector<char> jis(4 * len + 4);
    const std::size_t jisLen = comUtf8ToJis(text, jis.data());
    std::vector<char> euc(4 * jisLen + 4);
    comJisToEuc(jis.data(), euc.data());
    return euc.data();
}

}  // namespace

ConvStdCom::ConvStdCom(ConvApp* application, const char* filePath) : app(application) {
    SetPathText(filePath);
}

ConvStdCom::~ConvStdCom() = default;

void ConvStdCom::SetPathText(const char* text) {
    path.clear();
    directory.clear();
    if (!text || std::strlen(text) > kPathMax) return;  // an empty path is refused at the read
    path = text;
    const std::size_t cut = path.find_last_of("/:");
    if (cut != std::string::npos) directory = path.substr(0, cut + 1);
}

const ConvRow* ConvStdCom::GetRecord(std::size_t index) const {
    return index < records.size() ? records[index].get() : nullptr;
}

ConvRow* ConvStdCom::GetRecord(std::size_t index) {
    return index < records.size() ? records[index].get() : nullptr;
}

int ConvStdCom::ParseLine(char* line, std::string& /*section*/) {
    try {
        return CheckLine(line);
    } catch (const std::bad_alloc&) {
        ReportFileError(-2, CONV_HERE, 0, "メモリ確保に失敗しました。[%s]", line ? line : "");
        return -2;
    }
}

int ConvStdCom::BadLine(const char* line, std::size_t length) {
    try {
        std::string shown;
        for (std::size_t i = 0; i < length && shown.size() < 512; ++i) {
            if (line[i] == '\0')
                shown += "\\0";
            else
                shown += line[i];
        }
        ReportFileError(-31, CONV_HERE, 0, "値[%s]が不正です。行[%ld]", shown.c_str(), ReadLineNumber());
        if (!CanContinue(-31)) return -31;
        std::string text(line);  // up to the first NUL
        const int ret = CheckLine(text.data());
        lastLineWasField = false;  // the dropped field can't be continued
        return ret == 1 || ret == 0 ? 0 : ret;
    } catch (const std::bad_alloc&) {
        ReportFileError(-2, CONV_HERE, 0, "メモリ確保に失敗しました。[%s]", "");
        return -2;
    }
}

int ConvStdCom::AddValue(const char* name, const char* value, const char* /*section*/) {
    lastLineWasField = true;
    try {
        return SetItem(name, value);
    } catch (const std::bad_alloc&) {
        ReportFileError(-2, CONV_HERE, 0, "メモリ確保に失敗しました。[%s]", name ? name : "");
        return -2;
    }
}

int ConvStdCom::GetItem(int /*index*/, const char** /*outName*/, const char** /*outValue*/,
                        std::string& /*outSection*/) {
    return 0;
}

int ConvStdCom::GetFilePath(std::string& dst) {
    if (path.empty()) return -11;
    dst = path;
    return 0;
}

int ConvStdCom::StripCr(char* line) {
    if (!line) return -1;
    const std::size_t len = std::strlen(line);
    if (len > 0 && line[len - 1] == '\r') line[len - 1] = '\0';
    return 0;
}

int ConvStdCom::CheckLine(char* line) {
    lastLineWasField = false;
    const int ret = StripCr(line);
    if (ret != 0) {
        ReportFileError(ret, CONV_HERE, 0, "関数引数エラーです。");
        return ret;
    }
    // Only a blank or the line's end may follow the word; "object\tx" is no object line.
    if (std::strncmp(line, "object", 6) == 0 && (line[6] == '\0' || line[6] == ' ')) {
        if (line[6] != '\0') {
            const char* rest = line + 7;
            if ((depth > 0 ? BeginList(rest) : BeginRecord(rest)) != 0) {
                ReportFileError(-31, CONV_HERE, 0, "値[%s]が不正です。", rest);
                return -31;
            }
        }
        ++depth;
        return 1;
    }
    if (std::strcmp(line, "end") == 0) {
        if (depth > 0) --depth;  // a stray end outside every object changes nothing
        currentList = nullptr;
        return 1;
    }
    return 0;
}

int ConvStdCom::SetItem(const char* name, const char* value) {
    if (!name || !currentRecord) return -1;
    std::string raw = value ? value : "";
    if (!raw.empty() && raw.back() == '\r') raw.pop_back();
    std::string text;
    if (currentList) {
        const int ret = Convert(raw, text);
        if (ret != 0) return ret;
        ResetValue();
        currentList->push_back(std::move(text));
        return 0;
    }
    StartValue(raw, text);
    return AddColumn(name, text.c_str(), kRowTypeText, *currentRecord);
}

void ConvStdCom::StartValue(const std::string& raw, std::string& text) {
    ResetValue();
    valueStream.Feed(raw.data(), raw.size(), text);
    const std::size_t decided = text.size();
    valueStream.Peek(text);
    valueTail = text.size() - decided;
}

void ConvStdCom::ResetValue() {
    valueStream.Reset();
    valueTail = 0;
}

int ConvStdCom::AppendLine(const char* line) {
    if (!line) return -1;
    try {
        // A TAB line (led by LF) continues the last value; a bare piece continues
        // only a line that held a field, so the tail of a long comment is dropped.
        if (line[0] != '\n' && !lastLineWasField) return -7;
        lastLineWasField = true;
        std::size_t length = std::strlen(line);
        if (length > 0 && line[length - 1] == '\r') --length;
        if (currentList) {
            std::string text;
            valueStream.Feed(line, length, text);
            valueStream.Peek(text);
            return AppendListValue(text.c_str());
        }
        // Only a text field continues; the ID and a closed list have nothing to add to.
        if (!currentRecord || currentRecord->empty() || currentRecord->back()->type != kRowTypeText) return -7;
        // Each piece is converted once: the value keeps what is decided, and only
        // the conversion of a character cut at the piece's end is redone.
        ConvRowItem& last = *currentRecord->back();
        std::string text = last.value ? std::move(*last.value) : std::string();
        text.resize(text.size() - std::min(valueTail, text.size()));
        valueStream.Feed(line, length, text);
        const std::size_t decided = text.size();
        valueStream.Peek(text);
        valueTail = text.size() - decided;
        if (text.empty())
            last.value.reset();
        else
            last.value = std::move(text);
        return 0;
    } catch (const std::bad_alloc&) {
        ReportFileError(-2, CONV_HERE, 0, "メモリ確保に失敗しました。[%s]", line);
        return -2;
    }
}

int ConvStdCom::Read() {
    Clear();
    std::string filePath;
    int ret = GetFilePath(filePath);
    if (ret != 0) {
        ReportFileError(ret, CONV_HERE, 0, "ファイルの読み込みに失敗しました。");
        return ret;
    }
    ret = ReadFileNoLock(this);
    if (ret == -16) return 0;  // no file, no records
    if (ret != 0) ReportFileError(ret, CONV_HERE, readErrno, "ファイルの読み込みに失敗しました。");
    return ret;
}

void ConvStdCom::Clear() {
    records.clear();
    depth = 0;
    currentRecord = nullptr;
    currentList = nullptr;
    ResetValue();
    forcedId = 0;
    lastLineWasField = false;
}

int ConvStdCom::AddFileName(const char* name) {
    if (!name) return -1;
    fileName += name;
    return 0;
}

bool ConvStdCom::CanContinue(int code) {
    if (code != -16 && code != -31) return false;
    failed = true;
    if (app && app->StatusWord() == 0) app->SetStatusWord(1);
    return true;
}

int ConvStdCom::BeginRecord(const char* idText) {
    int32_t number = 0;
    // An id beyond 32 bits would name another record once it is stored.
    if (!comIsNumeric(idText) || !comStrToInt32(idText, number)) return -31;
    std::string id;
    if (forcedId != 0) {
        id = std::to_string(forcedId);
    } else {
        id = idText;
        while (!id.empty() && std::strchr(" \t\r\n", id.back())) id.pop_back();
    }
    records.push_back(std::make_unique<ConvRow>());
    currentRecord = records.back().get();
    currentList = nullptr;
    ResetValue();
    return AddColumn("ID", id.c_str(), kRowTypeNumber, *currentRecord);
}

int ConvStdCom::BeginList(const char* name) {
    if (!currentRecord) return -1;
    const int ret = AddColumn(name ? name : "", nullptr, kRowTypeList, *currentRecord);
    if (ret != 0) return ret;
    currentList = &currentRecord->back()->list;
    ResetValue();
    return 0;
}

int ConvStdCom::SetLastValue(const char* value) {
    // Only a text field continues; the ID and a closed list have nothing to add to.
    if (!currentRecord || currentRecord->empty() || currentRecord->back()->type != kRowTypeText) return -7;
    ConvRowItem& last = *currentRecord->back();
    if (value && *value)
        last.value = value;
    else
        last.value.reset();
    return 0;
}

int ConvStdCom::AppendListValue(const char* /*value*/) { return -31; }

int ConvStdCom::MakeRecordPath(int id) {
    std::string group;
    if (hashedDirectory) {
        const int unit = GetDirUnit();
        if (unit > 0) group = std::to_string(id / unit + 1) + "//";
    }
    char buf[kPathMax + 1];
    int n;
    if (idIsFileName)
        n = snprintf(buf, sizeof buf, "%s/%s%d", directory.c_str(), group.c_str(), id);
    else if (fileName.empty())
        n = snprintf(buf, sizeof buf, "%s/%s%d/info", directory.c_str(), group.c_str(), id);
    else
        n = snprintf(buf, sizeof buf, "%s/%s%d/%s", directory.c_str(), group.c_str(), id, fileName.c_str());
    if (n < 0 || static_cast<std::size_t>(n) > kPathMax) return -1;
    path = buf;
    return 0;
}

int ConvStdCom::ReadById(int id) {
    depth = 0;
    currentRecord = nullptr;
    currentList = nullptr;
    ResetValue();
    lastLineWasField = false;
    readErrno = 0;  // a failed path below must not carry the errno of an earlier read
    const int ret = MakeRecordPath(id);
    if (ret != 0) return ret;
    forcedId = id;
    return ReadFileNoLock(this);
}

int ConvStdCom::ReadFileNoLock(NUioObj* object) {
    ConvStdFileIO io;
    io.SetNoLock(true);
    io.SetSeparator(separator);
    errno = 0;
    const int ret = io.ReadFile(object, false);
    readErrno = (ret == -10 || ret == -16) ? errno : 0;
    return ret;
}

int ConvStdCom::Convert(const std::string& raw, std::string& out) {
    CText text(EucToUtf8(raw.c_str()));
    if (!text) {
        ReportFileError(-2, CONV_HERE, 0, "メモリ確保に失敗しました。[%s]", raw.c_str());
        return -2;
    }
    out = text.get();
    return 0;
}

bool ConvStdCom::WantsFileError(int /*code*/) { return true; }

void ConvStdCom::ReportFileError(int code, const char* source, int line, int errnum, const char* format,
                                 ...) {
    const int reported = CanContinue(code) ? 1 : code;
    if (!app) return;
    std::string detail;
    try {
        if (format && WantsFileError(code)) {
            // Formatted in the file's own encoding, so raw flat-store arguments stay valid.
            const std::string eucFormat = Utf8ToEuc(format);
            std::vector<char> buf(kDetailMax);
            va_list args;
            va_start(args, format);
            vsnprintf(buf.data(), buf.size(), eucFormat.c_str(), args);
            va_end(args);
            CText text(EucToUtf8(buf.data()));
            if (text) detail = text.get();
        }
    } catch (const std::bad_alloc&) {
        detail.clear();  // the report goes out without its detail
    }
    if (errnum != 0) {
        const char* system = strerrordesc_np(errnum);
        char fallback[32];
        snprintf(fallback, sizeof fallback, "errno=%d", errnum);
        app->ReportError(reported, source, line, true, nullptr, "%sファイル[%s]errno[%d]エラー詳細[%s]",
                         detail.c_str(), path.c_str(), errnum, system ? system : fallback);
    } else {
        app->ReportError(reported, source, line, true, nullptr, "%sファイル[%s]", detail.c_str(),
                         path.c_str());
    }
}
