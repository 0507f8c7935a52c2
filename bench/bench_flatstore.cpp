// Reading one long value from a flat-store record file: a single physical line of
// a quarter and of the whole size (arriving in 2,047-byte pieces), and a value
// of a quarter and of all its TAB continuation lines. The cost should grow
// with the size, four times for four times the text.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <cstdio>
#include <string>

#include "MakeConvSToKiv/convstdcom/ConvStdCom.h"

namespace {

// EUC-JP "あいう" and ASCII, so that pieces end inside characters too.
const std::string kText = "\xa4\xa2\xa4\xa4\xa4\xa6 memo 12:00 ";

std::string WriteStore(const std::string& content) {
    char path[] = "/tmp/convbench-XXXXXX";
    const int fd = mkstemp(path);
    if (fd >= 0) {
        if (write(fd, content.data(), content.size()) < 0) std::perror("write");
        close(fd);
    }
    return path;
}

void ReadValue(benchmark::State& state, const std::string& content) {
    const std::string path = WriteStore(content);
    ConvStdCom com(nullptr, path.c_str());
    for (auto _ : state) {
        if (com.Read() != 0 || com.RecordCount() != 1) state.SkipWithError("read failed");
        benchmark::DoNotOptimize(com.GetRecord(0));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(content.size()));
    unlink(path.c_str());
}

void BM_OneLineValue(benchmark::State& state) {
    std::string value;
    while (value.size() < static_cast<std::size_t>(state.range(0))) value += kText;
    ReadValue(state, "object 1\nmemo=" + value + "\nend\n");
}

void BM_ContinuationLines(benchmark::State& state) {
    std::string content = "object 1\nmemo=first";
    for (int64_t i = 0; i < state.range(0); ++i) content += "\n\t" + kText + kText;
    ReadValue(state, content + "\nend\n");
}

}  // namespace

BENCHMARK(BM_OneLineValue)->Arg(1 << 20)->Arg(4 << 20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ContinuationLines)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond);
