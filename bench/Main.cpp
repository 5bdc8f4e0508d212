// SPDX-License-Identifier: Apache-2.0
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/Failure.h"
#include "bench/InputFile.h"
#include "bench/OwnJob.h"

// ppd_bench [benchmark flags] FILE... [--own FILE...]: measures this reader and libcups on the same
// PPDs, and on the files behind --own this reader alone. A case is named case/side/file.

namespace {

using State = benchmark::State;
using Case = void (*)(State&, InputFile&);

// Menus, evenly spread over the file, that stand for all of them: where the readers' answers are
// compared, and where one menu is greyed an iteration.
constexpr std::size_t kComparedMenus = 150;
constexpr std::size_t kSingleMenus = 30;
// A dialog with more menus would take libcups minutes: so many of them are greyed, and a counter
// tells how many it were.
constexpr std::size_t kWholeDialog = 150;
constexpr std::size_t kDialogSample = 40;
constexpr std::size_t kDialogSampleByMarking = 10;

using GreyByCups = long (CupsPPD::*)(ppd_option_t const& menu, std::vector<bool>* byItem);

void ParseOwn(State& state, InputFile& file) {
    file.Close();
    CFRef<CFURLRef> const url = OwnPPD::URL(file.Path());
    for (auto _ : state) {
        OwnPPD::Parse(url);
    }
}

void ParseCups(State& state, InputFile& file) {
    file.Close();
    for (auto _ : state) {
        CupsPPD::Parse(file.Path());
    }
}

double HeapInUse() {
    auto const heap = mallinfo2();
    return static_cast<double>(heap.uordblks) + static_cast<double>(heap.hblkhd);
}

// Counts the bytes of the heap that a PPD takes once its first question is answered, with what the
// allocator adds to each block.
template <typename Open>
void Heap(State& state, InputFile& file, Open open) {
    file.Close();
    double const before = HeapInUse();
    for (auto _ : state) {
        open();
    }
    state.counters["bytes"] = HeapInUse() - before;
}

void HeapOwn(State& state, InputFile& file) {
    Heap(state, file, [&file] { benchmark::DoNotOptimize(file.Own().GreyMenu(0)); });
}

void HeapCups(State& state, InputFile& file) {
    Heap(state, file, [&file] { benchmark::DoNotOptimize(&file.Cups()); });
}

void MenuOwn(State& state, InputFile& file) {
    OwnPPD& ppd = file.Own();
    std::vector<std::size_t> const menus = file.Sample(kSingleMenus);
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(ppd.GreyMenu(menus[next]));
        next = (next + 1) % menus.size();
    }
}

template <GreyByCups kGrey>
void MenuCups(State& state, InputFile& file) {
    CupsPPD& ppd = file.Cups();
    std::vector<ppd_option_t*> const& options = file.CupsMenus();
    std::vector<std::size_t> const menus = file.Sample(kSingleMenus);
    std::size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize((ppd.*kGrey)(*options[menus[next]], nullptr));
        next = (next + 1) % menus.size();
    }
}

void EndDialog(State& state, InputFile const& file, std::size_t menus, long greyed) {
    if (greyed <= 0) {
        Fail(file.Path() + ": a dialog without a greyed item");
    }
    state.counters["menus"] = static_cast<double>(menus);
}

void DialogOwn(State& state, InputFile& file) {
    OwnPPD& ppd = file.Own();
    long greyed = 0;
    for (auto _ : state) {
        for (std::size_t menu = 0; menu < ppd.MenuCount(); ++menu) {
            greyed += ppd.GreyMenu(menu);
        }
    }
    EndDialog(state, file, ppd.MenuCount(), greyed);
}

template <GreyByCups kGrey, std::size_t kSample>
void DialogCups(State& state, InputFile& file) {
    CupsPPD& ppd = file.Cups();
    std::vector<ppd_option_t*> const& options = file.CupsMenus();
    std::vector<std::size_t> const menus =
        file.Sample(options.size() <= kWholeDialog ? options.size() : kSample);
    long greyed = 0;
    for (auto _ : state) {
        for (std::size_t const menu : menus) {
            greyed += (ppd.*kGrey)(*options[menu], nullptr);
        }
    }
    EndDialog(state, file, menus.size(), greyed);
}

template <typename PPD>
void Emit(State& state, InputFile const& file, PPD& ppd) {
    long bytes = 0;
    for (auto _ : state) {
        bytes += ppd.EmitAll();
    }
    if (bytes <= 0) {
        Fail(file.Path() + ": nothing was emitted");
    }
}

void EmitOwn(State& state, InputFile& file) {
    Emit(state, file, file.Own());
}

void EmitCups(State& state, InputFile& file) {
    Emit(state, file, file.Cups());
}

void CommitOwn(State& state, InputFile& file) {
    OwnJob job(file.Own().Get(), file.Path());
    for (auto _ : state) {
        benchmark::DoNotOptimize(job.Commit());
    }
}

// Each time a PPD that was only parsed: what a save makes of it on demand stays in it.
void SaveOwn(State& state, InputFile& file) {
    for (auto _ : state) {
        state.PauseTiming();
        file.Close();
        OwnPPD& ppd = file.Own();
        state.ResumeTiming();
        if (!ppd.Archive()) {
            Fail(file.Path() + ": no archive");
        }
    }
}

void RebuildOwn(State& state, InputFile& file) {
    CFRef<CFURLRef> const url = OwnPPD::URL(file.Path());
    // As a ticket has it: data that nobody changes.
    CFRef<CFDataRef> const archive(CFDataCreateCopy(nullptr, file.Own().Archive()));
    file.Close();
    for (auto _ : state) {
        if (!OwnPPD::Rebuild(archive, url)) {
            Fail(file.Path() + ": not rebuilt");
        }
    }
}

struct Row {
    char const* name;
    Case run;
    bool own;
};
constexpr Row kCases[] = {
    {"parse/own/", ParseOwn, true},
    {"parse/cups/", ParseCups, false},
    {"heap/own/", HeapOwn, true},
    {"heap/cups/", HeapCups, false},
    {"menu/own/", MenuOwn, true},
    {"menu/cups/", MenuCups<&CupsPPD::GreyMenu>, false},
    {"menu/cups_marking/", MenuCups<&CupsPPD::GreyMenuByMarking>, false},
    {"dialog/own/", DialogOwn, true},
    {"dialog/cups/", DialogCups<&CupsPPD::GreyMenu, kDialogSample>, false},
    {"dialog/cups_marking/", DialogCups<&CupsPPD::GreyMenuByMarking, kDialogSampleByMarking>,
     false},
    {"emit/own/", EmitOwn, true},
    {"emit/cups/", EmitCups, false},
    {"save/own/", SaveOwn, true},
    {"rebuild/own/", RebuildOwn, true},
    {"commit/own/", CommitOwn, true},
    {"commit/cups/", EmitCups, false},
};

double Fastest(std::vector<double> const& repetitions) {
    return *std::min_element(repetitions.begin(), repetitions.end());
}

void Register(std::string const& path, bool ownOnly) {
    auto const file = std::make_shared<InputFile>(path);
    if (ownOnly) {
        file->Own();  // ends the program if it can't be read
        file->Close();
    } else {
        file->Check(kComparedMenus);
    }
    for (Row const& row : kCases) {
        if (row.own || !ownOnly) {
            benchmark::RegisterBenchmark((row.name + file->Name()).c_str(), [file,
                                                                             &row](State& state) {
                row.run(state, *file);
            })->ComputeStatistics("min", Fastest);
        }
    }
}

// The first touch of a page can cost more than all the work on it, and would fall to whichever case
// comes first. So what one case gives back stays in the process for the next, of either reader.
void KeepFreedMemory() {
    constexpr int kLargestBlock = 32 << 20;  // the most that the C library takes
    constexpr int kMostFree = 1 << 30;
    mallopt(M_MMAP_THRESHOLD, kLargestBlock);
    mallopt(M_TRIM_THRESHOLD, kMostFree);
}

}  // namespace

int main(int count, char** arguments) {
    KeepFreedMemory();
    benchmark::Initialize(&count, arguments);
    bool ownOnly = false;
    for (int i = 1; i < count; ++i) {
        std::string const argument = arguments[i];
        if (argument == "--own") {
            ownOnly = true;
        } else {
            Register(argument, ownOnly);
        }
    }
    return benchmark::RunSpecifiedBenchmarks() > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
