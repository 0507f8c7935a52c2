// EucToUtf8 beside glibc's iconv (EUC-JP to UTF-8) on the same few megabytes of
// schedule-like Japanese text, as one document and as short record values.
#include <benchmark/benchmark.h>

#include <iconv.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "base/comEncoding.h"

namespace {

// Lines of the kind the flat store holds: titles, memos, places, names, times.
const char* const kLines[] = {
    "定例会議（第３四半期の予算について）",
    "場所：本社ビル５階 第２会議室",
    "10:00-11:30 営業部ミーティング",
    "出席者：山田太郎、佐藤花子、鈴木一郎、高橋美咲",
    "議事録は来週月曜日までに共有フォルダへ保存してください。",
    "新製品の発表会に向けて、資料の最終確認を行います。",
    "ﾌﾟﾛｼﾞｪｸﾄ進捗確認（ｽｹｼﾞｭｰﾙ調整あり）",
    "来訪者：株式会社サンプル 営業本部 田中様 ２名",
    "プロジェクターとホワイトボードを予約済みです。",
    "※会議室の利用後は、必ず机と椅子を元の位置に戻してください。",
    "Web会議 URL: https://example.invalid/meeting/12345",
    "健康診断のため、午後は不在となります。",
    "大阪支社への出張（新幹線 のぞみ 号、８時発）",
    "年末調整の書類提出締切：１２月１５日（金）",
    "社内研修「情報セキュリティの基礎」受講",
    "顧客訪問　東京都千代田区丸の内１−２−３",
    "懇親会の出欠を金曜日までにご連絡ください。",
    "設備点検のため、エレベーターが一時停止します。",
};

struct Corpus {
    std::string document;             // EUC-JP, about 4 MiB
    std::vector<std::string> values;  // the same text, one value a line
};

std::string ToEucJp(const std::string& utf8) {
    iconv_t cd = iconv_open("EUC-JP", "UTF-8");
    std::string out(utf8.size() * 2 + 16, '\0');
    std::string in = utf8;
    char* inPtr = in.data();
    std::size_t inLeft = in.size();
    char* outPtr = out.data();
    std::size_t outLeft = out.size();
    if (iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) == static_cast<std::size_t>(-1)) std::abort();
    iconv_close(cd);
    out.resize(out.size() - outLeft);
    return out;
}

const Corpus& TheCorpus() {
    static const Corpus corpus = [] {
        Corpus c;
        std::mt19937 random(42);
        std::uniform_int_distribution<std::size_t> pick(0, std::size(kLines) - 1);
        std::string utf8;
        while (utf8.size() < 6 * 1024 * 1024) {
            utf8 += kLines[pick(random)];
            utf8 += '\n';
        }
        c.document = ToEucJp(utf8);
        for (std::size_t start = 0; start < c.document.size();) {
            const std::size_t end = c.document.find('\n', start);
            c.values.push_back(c.document.substr(start, end - start));
            start = end + 1;
        }
        return c;
    }();
    return corpus;
}

std::size_t ValueBytes(const Corpus& corpus) {
    std::size_t total = 0;
    for (const std::string& value : corpus.values) total += value.size();
    return total;
}

// iconv EUC-JP to UTF-8 into a caller's buffer.
class EucJpIconv {
public:
    EucJpIconv() : cd_(iconv_open("UTF-8", "EUC-JP")) {}
    ~EucJpIconv() { iconv_close(cd_); }
    EucJpIconv(const EucJpIconv&) = delete;
    EucJpIconv& operator=(const EucJpIconv&) = delete;

    std::size_t Convert(const std::string& in, std::vector<char>& out) {
        iconv(cd_, nullptr, nullptr, nullptr, nullptr);
        char* inPtr = const_cast<char*>(in.data());
        std::size_t inLeft = in.size();
        char* outPtr = out.data();
        std::size_t outLeft = out.size();
        iconv(cd_, &inPtr, &inLeft, &outPtr, &outLeft);
        return out.size() - outLeft;
    }

private:
    iconv_t cd_;
};

void BM_EucToUtf8_Document(benchmark::State& state) {
    const Corpus& corpus = TheCorpus();
    for (auto _ : state) {
        char* out = EucToUtf8(corpus.document.c_str());
        benchmark::DoNotOptimize(out);
        std::free(out);
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * corpus.document.size()));
}

void BM_Iconv_Document(benchmark::State& state) {
    const Corpus& corpus = TheCorpus();
    EucJpIconv iconv;
    std::vector<char> out(4 * corpus.document.size() + 4);  // iconv at its best: no allocation
    for (auto _ : state) benchmark::DoNotOptimize(iconv.Convert(corpus.document, out));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * corpus.document.size()));
}

void BM_EucToUtf8_Values(benchmark::State& state) {
    const Corpus& corpus = TheCorpus();
    for (auto _ : state) {
        for (const std::string& value : corpus.values) {
            char* out = EucToUtf8(value.c_str());
            benchmark::DoNotOptimize(out);
            std::free(out);
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * ValueBytes(corpus)));
}

void BM_Iconv_Values(benchmark::State& state) {
    const Corpus& corpus = TheCorpus();
    EucJpIconv iconv;
    std::vector<char> out;
    for (auto _ : state) {
        for (const std::string& value : corpus.values) {
            out.resize(4 * value.size() + 4);
            benchmark::DoNotOptimize(iconv.Convert(value, out));
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * ValueBytes(corpus)));
}

BENCHMARK(BM_EucToUtf8_Document)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Iconv_Document)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_EucToUtf8_Values)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Iconv_Values)->Unit(benchmark::kMillisecond);

}  // namespace
