// Starting and ending a session: the first time in a process, and again.
#include <benchmark/benchmark.h>

#include "zorvex_api/Session.h"

namespace
{

void StartAndStop(benchmark::State& state)
{
    for (auto _ : state)
    {
        if (zorvex_api::Initialise(0, nullptr, nullptr, nullptr) != 0 ||
            zorvex_api::Terminate() != 0)
        {
            state.SkipWithError("the session could not be started and ended");
        }
    }
}

// In this order: the first has the process to itself.
BENCHMARK(StartAndStop)->Name("FirstStartAndStop")->Iterations(1);
BENCHMARK(StartAndStop);

}  // namespace
