// Index files (value and key form) with the records they point to, and the
// item and word lists whose lines are list entries.
#include "MakeConvSToKiv/convstdcom/ConvStdComIndex.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "MakeConvEToKiv/convcom/ConvApp.h"
#include "base/comEncoding.h"
#include "base/comSource.h"
#include "base/comStr.h"

namespace {

const char kLastId[] = "_lastid";

// Bytes of a line for a report: each NUL shown as "\0".
std::string Printable(const char* line, std::size_t length) {
    std::string text;
    for (std::size_t i = 0; i < length && text.size() < 512; ++i) {
        if (line[i] == '\0')
            text += "\\0";
        else
            text += line[i];
    }
    return text;
}

std::string WithoutCr(const char* value) {
    std::string text = value ? value : "";
    if (!text.empty() && text.back() == '\r') text.pop_back();
    return text;
}

std::string WithoutTrailingBlanks(std::string text) {
    while (!text.empty() && std::strchr(" \t\r\n", text.back())) text.pop_back();
    return text;
}

}  // namespace

ConvStdComIndexIoObj::ConvStdComIndexIoObj(ConvApp* application, std::string path)
    : app(application), indexPath(std::move(path)) {}

ConvStdComIndexIoObj::~ConvStdComIndexIoObj() = default;

int ConvStdComIndexIoObj::NUioObjGetPath(std::string& outPath) {
    if (indexPath.empty()) return -11;
    outPath = indexPath;
    return 0;
}

int ConvStdComIndexIoObj::ParseLine(char* line, std::string& /*section*/) { return CheckLine(line); }

int ConvStdComIndexIoObj::AddValue(const char* name, const char* value, const char* /*section*/) {
    try {
        return SetItem(name, value);
    } catch (const std::bad_alloc&) {
        if (app)
            app->ReportError(-2, CONV_HERE, false, indexPath.c_str(), "メモリ確保に失敗しました。[%s]",
                             name ? name : "");
        return -2;
    }
}

int ConvStdComIndexIoObj::GetItem(int /*index*/, const char** /*outName*/, const char** /*outValue*/,
                                  std::string& /*outSection*/) {
    return -20;
}

int ConvStdComIndexIoObj::CheckLine(char* line) {
    if (!line) return 0;
    if (std::strncmp(line, "object", 6) == 0 && (line[6] == '\0' || line[6] == ' ' || line[6] == '\t'))
        return 1;
    if (std::strcmp(line, "end") == 0 || std::strcmp(line, "end\r") == 0) return 1;
    return 0;
}

int ConvStdComIndexIoObj::BadLine(const char* line, std::size_t length) {
    ReportLine(CONV_HERE, Printable(line, length).c_str());
    return 0;
}

void ConvStdComIndexIoObj::ReportLine(const char* source, int line, const char* text) {
    if (!app) return;
    // The line is raw flat-store text.
    std::unique_ptr<char, void (*)(void*)> utf8(EucToUtf8(text), std::free);
    app->ReportError(1, source, line, true, nullptr, "値[%s]が不正です。行[%ld]ファイル[%s]",
                     utf8 ? utf8.get() : "", ReadLineNumber(), indexPath.c_str());
}

bool ConvStdComIndexIoObj::TakeLastId(const char* name, const char* value, int& result) {
    if (!name || std::strcmp(name, kLastId) != 0) return false;
    int32_t id = 0;
    if (!comIsNumeric(value) || !comStrToInt32(value, id)) {
        if (app)
            app->ReportError(-31, CONV_HERE, true, indexPath.c_str(),
                             "ファイルのレコード取得に失敗しました。");
        result = -31;
        return true;
    }
    lastId = id;
    result = 0;
    return true;
}

void ConvStdComIndexIoObj::AddId(const char* text) {
    int32_t id = 0;
    if (!comStrToInt32(text, id)) {
        ReportLine(CONV_HERE, text);
        return;
    }
    ids.push_back(id);
}

int ConvStdComIndexIoObj::SetItem(const char* name, const char* value) {
    int result = 0;
    if (TakeLastId(name, value, result)) return result;
    AddId(value);
    return 0;
}

bool ConvStdComIndexIoObj::Next(int32_t& id) {
    if (cursor >= ids.size()) return false;
    id = ids[cursor++];
    return true;
}

int ConvStdComIDIndexIoObj::SetItem(const char* name, const char* value) {
    int result = 0;
    if (TakeLastId(name, value, result)) return result;
    AddId(name);
    return 0;
}

ConvStdComIndex::ConvStdComIndex(ConvApp* application, const char* path, bool all)
    : ConvStdCom(application, path), indexPath(GetPath()), loadAll(all) {}

ConvStdComIndex::~ConvStdComIndex() = default;

const std::vector<int32_t>& ConvStdComIndex::Ids() const {
    static const std::vector<int32_t> kNone;
    return ioObj ? ioObj->Ids() : kNone;
}

int ConvStdComIndex::CheckLine(char* line) {
    if (objectDone) {
        lastLineWasField = false;
        return 1;
    }
    const int before = depth;
    const int ret = ConvStdCom::CheckLine(line);
    if (ret == 1 && before > 0 && depth == 0) objectDone = true;
    return ret;
}

void ConvStdComIndex::Clear() {
    ConvStdCom::Clear();
    DeleteIoObj();
    objectDone = false;
    path = indexPath;  // reading records moved the path to their files
}

void ConvStdComIndex::ClearRecords() {
    records.clear();
    currentRecord = nullptr;
    currentList = nullptr;
    ResetValue();
}

std::unique_ptr<ConvStdComIndexIoObj> ConvStdComIndex::NewIoObj() {
    return std::unique_ptr<ConvStdComIndexIoObj>(new (std::nothrow) ConvStdComIndexIoObj(app, indexPath));
}

void ConvStdComIndex::DeleteIoObj() { ioObj.reset(); }

int ConvStdComIndex::ReadIndex() {
    Clear();
    ioObj = NewIoObj();
    if (!ioObj) {
        ReportFileError(-2, CONV_HERE, 0, "メモリ確保に失敗しました。[%s]", indexPath.c_str());
        return -2;
    }
    const int ret = ReadFileNoLock(ioObj.get());
    if (ret == -16) return -16;  // no index: an empty list
    if (ret != 0) {
        DeleteIoObj();
        ReportFileError(ret, CONV_HERE, readErrno, "ファイルの読み込みに失敗しました。");
        return ret;
    }
    ioObj->Rewind();
    // A negative last id would read as a failure; no index of the store has one.
    return ioObj->LastId() < 0 ? 0 : ioObj->LastId();
}

int ConvStdComIndex::ReadNext(ConvRow** record) {
    if (record) *record = nullptr;
    if (!ioObj) {
        if (app) app->ReportError(-1, CONV_HERE, false, nullptr, "関数引数エラーです。");
        return -1;
    }
    int32_t id = 0;
    if (!ioObj->Next(id)) return 0;
    objectDone = false;
    const std::size_t before = records.size();
    const int ret = ReadById(id);
    if (ret != 0) {
        // What the broken file gave so far is no record.
        records.erase(records.begin() + static_cast<std::ptrdiff_t>(before), records.end());
        currentRecord = nullptr;
        currentList = nullptr;
        ReportFileError(ret, CONV_HERE, readErrno, "ファイルの読み込みに失敗しました。");
        return ret;
    }
    if (record && records.size() > before) *record = records[before].get();
    return 1;
}

int ConvStdComIndex::Read() {
    int ret = ReadIndex();
    if (ret == -16)
        ret = 0;
    else if (ret < 0)
        return ret;
    const int last = ret;
    if (!loadAll) return last;
    for (;;) {
        ret = ReadNext(nullptr);
        if (ret == 0) break;
        if (ret != 1 && !CanContinue(ret)) return ret;
    }
    return last;
}

std::unique_ptr<ConvStdComIndexIoObj> ConvStdComIDIndex::NewIoObj() {
    return std::unique_ptr<ConvStdComIndexIoObj>(new (std::nothrow) ConvStdComIDIndexIoObj(app, indexPath));
}

int ConvStdComItemIndex::SetItem(const char* /*name*/, const char* value) {
    const std::string text = WithoutCr(value);
    int32_t id = 0;
    if (!text.empty() && (!comIsNumeric(text.c_str()) || !comStrToInt32(text.c_str(), id))) {
        ReportFileError(-31, CONV_HERE, 0, "値[%s]が不正です。", text.c_str());
        return CanContinue(-31) ? 0 : -31;
    }
    records.push_back(std::make_unique<ConvRow>());
    currentRecord = records.back().get();
    currentList = nullptr;
    ResetValue();
    return AddColumn("ID", WithoutTrailingBlanks(text).c_str(), kRowTypeNumber, *currentRecord);
}

int ConvStdComItemIndex::BeginRecord(const char* /*idText*/) { return 0; }

int ConvStdComStrIndex::SetItem(const char* /*name*/, const char* value) {
    const std::string raw = WithoutCr(value);
    records.push_back(std::make_unique<ConvRow>());
    currentRecord = records.back().get();
    currentList = nullptr;
    std::string text;
    StartValue(raw, text);
    return AddColumn("ITEM", text.c_str(), kRowTypeText, *currentRecord);
}

int ConvStdComStrIndex::BeginRecord(const char* /*idText*/) { return 0; }
