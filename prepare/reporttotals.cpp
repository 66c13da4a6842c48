// The table of totals of several files:
//
//       принят    объектов     в файле      ошибок   замечаний  файл
//           да           1           1           0           0  good.dxf
//
//       файлов     случаев  что найдено
//            1           2  bulges
//
//     Файлов: 1, принято 1, дают объекты 1, загрузятся полностью 1.

#include "report.h"

#include <QMap>

#include <algorithm>

namespace {

/// How often one finding occurs in all files.
struct Total
{
    qint64 files = 0;
    qint64 cases = 0;
};

QString row(const QStringList &cells, const QString &name)
{
    constexpr int width = 12;
    QString text;
    for (const QString &content : cells)
        text += content.rightJustified(width);
    return text + QStringLiteral("  ") + name + QLatin1Char('\n');
}

QString acceptedText(const FileReport &report)
{
    if (report.isUnfinished())
        return QStringLiteral("?");
    return report.isAccepted ? QStringLiteral("да") : QStringLiteral("нет");
}

QString fileRow(const FileReport &report)
{
    const QString objects = report.isUnfinished() ? QStringLiteral("?") : QString::number(report.imported.objects);
    const QString found =
        report.found ? QString::number(report.found->areas + report.found->lines) : QStringLiteral("?");
    return row({acceptedText(report), objects, found, QString::number(report.countOf(Severity::Error)),
                QString::number(report.countOf(Severity::Warning))},
               displayName(report));
}

QMap<QString, Total> totalsOf(const QVector<FileReport> &reports)
{
    QMap<QString, Total> totals;
    for (const FileReport &report : reports) {
        for (const Finding &finding : report.findings) {
            ++totals[finding.id].files;
            totals[finding.id].cases += finding.count;
        }
    }
    return totals;
}

QString findingRows(const QMap<QString, Total> &totals)
{
    QStringList ids = totals.keys();
    std::stable_sort(ids.begin(), ids.end(),
                     [&totals](const QString &a, const QString &b) { return totals[a].files > totals[b].files; });
    QString text = row({QStringLiteral("файлов"), QStringLiteral("случаев")}, QStringLiteral("что найдено"));
    for (const QString &id : qAsConst(ids))
        text += row({QString::number(totals[id].files), QString::number(totals[id].cases)}, id);
    return text;
}

qint64 countIf(const QVector<FileReport> &reports, bool (*test)(const FileReport &))
{
    return std::count_if(reports.begin(), reports.end(), test);
}

} // namespace

QString totalsText(const QVector<FileReport> &reports)
{
    QString text = QStringLiteral("Итого по файлам\n");
    text += row({QStringLiteral("принят"), QStringLiteral("объектов"), QStringLiteral("в файле"),
                 QStringLiteral("ошибок"), QStringLiteral("замечаний")},
                QStringLiteral("файл"));
    for (const FileReport &report : reports)
        text += fileRow(report);
    const QMap<QString, Total> totals = totalsOf(reports);
    if (!totals.isEmpty())
        text += QLatin1Char('\n') + findingRows(totals);
    const qint64 complete = countIf(reports, [](const FileReport &report) { return report.isComplete(); });
    const qint64 accepted = countIf(reports, [](const FileReport &report) { return report.isAccepted; });
    const qint64 withObjects = countIf(reports, [](const FileReport &report) { return report.imported.objects > 0; });
    return text + QStringLiteral("\nФайлов: %1, принято %2, дают объекты %3, загрузятся полностью %4.\n")
                      .arg(reports.size())
                      .arg(accepted)
                      .arg(withObjects)
                      .arg(complete);
}
