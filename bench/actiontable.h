#pragma once

#include <QVector>

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <string>

/// An upper bound of a measured value.
struct Bound
{
    const char *name;
    const char *title; ///< in the table
    double max;        ///< 0 if unbounded
};

/// Collects the medians of measured values and prints them with their bounds as a Markdown table.
class ActionTable : public benchmark::BenchmarkReporter
{
public:
    /// \a bounds are in the order of the table.
    explicit ActionTable(const QVector<Bound> &bounds) : m_bounds(bounds) {}

    bool ReportContext(const Context & /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

private:
    QVector<Bound> m_bounds;
    std::map<std::string, double> m_medians;
};

/// Registers a benchmark that calls \a measure \a repetitions times. The title in the table names the unit of the
/// value.
void addAction(const char *name, const std::function<double()> &measure, int repetitions = 9);

/// Processor time of \a action in milliseconds. Unlike wall-clock time it does not depend on other processes, and no
/// action waits.
double timeOf(const std::function<void()> &action);
