#include "actiontable.h"

#include "formatbounds.h"
#include "machine.h"

#include <cstdio>

namespace {

// Name of the counter that holds the measured value.
const char *const measured = "measured";

QString textOf(double median, const Bound &bound)
{
    return bound.max > 0 ? atMost(median, bound.max) : russianNumber(median, 2);
}

} // namespace

void ActionTable::ReportRuns(const std::vector<Run> &runs)
{
    for (const Run &run : runs) {
        const auto value = run.counters.find(measured);
        if (run.aggregate_name == "median" && value != run.counters.end())
            m_medians[run.run_name.function_name] = value->second.value;
    }
}

void ActionTable::Finalize()
{
    std::puts("| Действие | Медиана |\n|---|---:|");
    for (const Bound &bound : qAsConst(m_bounds)) {
        const auto median = m_medians.find(bound.name);
        if (median != m_medians.end())
            std::printf("| %s | %s |\n", bound.title, qPrintable(textOf(median->second, bound)));
    }
}

void addAction(const char *name, const std::function<double()> &measure, int repetitions)
{
    benchmark::RegisterBenchmark(name,
                                 [measure](benchmark::State &state) {
                                     for (const auto _ : state)
                                         state.counters[measured] = measure();
                                 })
        ->Iterations(1)
        ->Repetitions(repetitions)
        ->ReportAggregatesOnly(true);
}

double timeOf(const std::function<void()> &action)
{
    const double begin = processorSeconds();
    action();
    return (processorSeconds() - begin) * 1000;
}
