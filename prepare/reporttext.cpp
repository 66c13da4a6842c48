// The report of a file for a person.

#include "printable.h"
#include "report.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

QString findingText(const Finding &finding)
{
    QString text = QStringLiteral("\n%1: %2 [%3]\n").arg(severityName(finding.severity), finding.text, finding.id);
    text += QStringLiteral("  Случаев: %1").arg(finding.count);
    if (!finding.place.isEmpty())
        text += QStringLiteral(", первый: %1").arg(finding.place);
    return text + QStringLiteral(".\n  Что делать: %1\n").arg(finding.cure);
}

/// \a name as one word for a shell, which the program does not take for an option.
QString quoted(const QString &name)
{
    if (name.startsWith(QLatin1Char('-')))
        return quoted(QStringLiteral("./") + name);
    const bool isPlain = std::all_of(name.begin(), name.end(), [](QChar c) {
        return c.isLetterOrNumber() || QStringLiteral("_-./+=:").contains(c);
    });
    if (isPlain && !name.isEmpty())
        return name;
    return QLatin1Char('\'') + QString(name).replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
}

/// True if the folder has a file of the other format with the same base name.
bool hasNamesake(const QFileInfo &file)
{
    const QString suffix = formatOf(file.fileName()) == Format::Dxf ? QStringLiteral("mif") : QStringLiteral("dxf");
    const QString base = file.path() + QLatin1Char('/') + file.completeBaseName() + QLatin1Char('.');
    return QFileInfo::exists(base + suffix) || QFileInfo::exists(base + suffix.toUpper());
}

/// The output of the conversion, in the folder of the file.
QString outputName(const QString &fileName)
{
    const QFileInfo file(fileName);
    QString base = file.completeBaseName();
    if (hasNamesake(file))
        base += QLatin1Char('-') + file.suffix().toLower();
    return QDir::cleanPath(file.path() + QLatin1Char('/') + base) + QStringLiteral("-import.mif");
}

} // namespace

QString displayName(const FileReport &report)
{
    return printable(QDir::toNativeSeparators(report.fileName));
}

QString verdictText(const FileReport &report)
{
    if (report.isUnreadable())
        return QStringLiteral("Файл не читается.");
    if (report.isUnfinished())
        return QStringLiteral("Проверка не закончена, что загрузится — неизвестно.");
    if (report.findings.isEmpty() || report.isComplete())
        return QStringLiteral("Загрузится всё.");
    if (!report.isAccepted)
        return QStringLiteral("Файл не будет принят, не загрузится ничего.");
    if (report.imported.objects == 0)
        return QStringLiteral("Не загрузится ничего.");
    return QStringLiteral("Загрузится не всё или с ошибками.");
}

QString numbersText(const FileReport &report)
{
    if (report.isUnreadable() || report.isUnfinished())
        return {};
    const FileReport::Imported &imported = report.imported;
    QString text = QStringLiteral("Загрузится: объектов %1, контуров %2, вершин %3, номеров %4, известных точек %5.\n")
                       .arg(imported.objects)
                       .arg(imported.contours)
                       .arg(imported.vertices)
                       .arg(imported.numbers)
                       .arg(imported.knownPoints);
    if (!report.found)
        return text + QStringLiteral("Другая программа чтения (GDAL) файл не открыла.\n");
    return text + QStringLiteral("В файле (по чтению GDAL): площадей %1, линий %2, точек %3, надписей %4.\n")
                      .arg(report.found->areas)
                      .arg(report.found->lines)
                      .arg(report.found->points)
                      .arg(report.found->texts);
}

QString optionsText(const FileReport &report)
{
    if (report.isUnreadable())
        return {};
    const auto yesNo = [](bool yes) { return yes ? QStringLiteral("да") : QStringLiteral("нет"); };
    return QStringLiteral("Кодировка %1, искать номера точек: %2, искать обозначения объектов: %3.\n")
        .arg(report.encoding, yesNo(report.searchesPoints), yesNo(report.searchesObjects));
}

QString severityName(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return QStringLiteral("ОШИБКА");
    case Severity::Warning:
        return QStringLiteral("ВНИМАНИЕ");
    default:
        return QStringLiteral("К СВЕДЕНИЮ");
    }
}

QString convertCommand(const FileReport &report)
{
    const QVector<Finding> &findings = report.findings;
    if (printable(report.fileName) != report.fileName)
        return {}; // cannot be copied from the report
    if (std::none_of(findings.begin(), findings.end(), conversionCures))
        return {};
    const bool transforms = std::any_of(findings.begin(), findings.end(), needsCoordinateSystem);
    const QString options = transforms ? QStringLiteral(" --crs EPSG:номер") : QString();
    return QStringLiteral("importprepare convert %1 %2")
               .arg(quoted(report.fileName), quoted(outputName(report.fileName))) +
           options;
}

QString reportText(const FileReport &report)
{
    QString text = displayName(report) + QLatin1Char('\n') + verdictText(report) + QLatin1Char('\n');
    text += numbersText(report) + optionsText(report);
    for (const Finding &finding : report.findings)
        text += findingText(finding);
    if (!report.messages.isEmpty())
        text += QStringLiteral("\nСообщения импорта:\n");
    for (const QString &message : report.messages)
        text += QStringLiteral("  ") + printable(message) + QLatin1Char('\n');
    const QString command = convertCommand(report);
    if (!command.isEmpty())
        text += QStringLiteral("\nПодготовить файл к импорту:\n  %1\n").arg(command);
    return text;
}
