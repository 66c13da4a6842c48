#include "report.h"

#include "console.h"

#include <algorithm>

bool FileReport::isComplete() const
{
    return countOf(Severity::Error) == 0 && countOf(Severity::Warning) == 0;
}

bool FileReport::has(const QString &id) const
{
    return std::any_of(findings.begin(), findings.end(), [&id](const Finding &finding) { return finding.id == id; });
}

int FileReport::countOf(Severity severity) const
{
    return static_cast<int>(std::count_if(findings.begin(), findings.end(),
                                          [severity](const Finding &finding) { return finding.severity == severity; }));
}

int exitStatus(const QVector<FileReport> &reports)
{
    const auto isUnreadable = [](const FileReport &report) { return report.isUnreadable(); };
    const auto isComplete = [](const FileReport &report) { return report.isComplete(); };
    if (std::any_of(reports.begin(), reports.end(), isUnreadable))
        return Unreadable;
    return std::all_of(reports.begin(), reports.end(), isComplete) ? Complete : Incomplete;
}
