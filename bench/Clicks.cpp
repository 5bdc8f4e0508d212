// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>

#include <benchmark/benchmark.h>

#include "bench/Failure.h"
#include "platform/Events.h"
#include "platform/HeadlessFace.h"
#include "platform/UserInput.h"

// click_bench [benchmark flags]: a whole press on a check box, with the handlers that hear it and
// all that is drawn of it, in windows of so many controls. It should cost the same in all of them.

namespace {

constexpr Rect kBounds = {0, 0, 20, 80};

OSStatus Count(EventHandlerCallRef, EventRef, void* count) {
    ++*static_cast<long*>(count);
    return eventNotHandledErr;
}

// Half of the controls beside the check box in its pane, half in the window around it.
ControlRef Fill(WindowRef window, long controls) {
    ControlRef pane = nullptr;
    CreateUserPaneControl(window, &kBounds, 0, &pane);
    ControlRef box = nullptr;
    for (long made = 2; made < controls; ++made) {
        ControlRef button = nullptr;
        CreatePushButtonControl(window, &kBounds, nullptr, &button);
        if (made % 2 == 0) {
            EmbedControl(button, pane);
        }
    }
    CreateCheckBoxControl(window, &kBounds, nullptr, 0, true, &box);
    EmbedControl(box, pane);
    return box;
}

void Click(benchmark::State& state) {
    HeadlessFace face;
    InstallFace(&face, &face);
    WindowRef const window = CreateHostWindow({0, 0, 500, 500}, nullptr);
    ControlRef const box = Fill(window, state.range(0));
    long heard = 0;
    constexpr EventTypeSpec kTypes[] = {{kEventClassControl, kEventControlClick},
                                        {kEventClassControl, kEventControlValueFieldChanged},
                                        {kEventClassControl, kEventControlHit},
                                        {kEventClassControl, kEventControlDraw}};
    InstallEventHandler(GetWindowEventTarget(window), Count, std::size(kTypes), kTypes, &heard,
                        nullptr);
    ShowWindow(window);
    face.Settle();
    heard = 0;
    for (auto _ : state) {
        UserPressed(box, 0, true);
        face.Settle();
    }
    if (heard != 4 * static_cast<long>(state.iterations())) {
        Fail("a press made " + std::to_string(heard) + " events in all");
    }
    DisposeWindow(window);
    face.Settle();
    InstallFace(nullptr, nullptr);
}
BENCHMARK(Click)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

}  // namespace

BENCHMARK_MAIN();
