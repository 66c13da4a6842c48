#include "finding.h"

#include "findingrules.h"
#include "printable.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <cstdlib>

namespace {

const QString strConversion = QStringLiteral(" или преобразуйте файл командой convert");

/// Replaces %1 to %9 in one pass, because the details come from the file and may contain such marks themselves.
QString filled(const QString &text, const QStringList &details)
{
    QString result;
    for (int i = 0; i < text.size(); ++i) {
        const int number = text.at(i) == QLatin1Char('%') && i + 1 < text.size() ? text.at(i + 1).digitValue() : 0;
        if (number < 1 || number > details.size()) {
            result += text.at(i);
            continue;
        }
        result += details.at(number - 1);
        ++i;
    }
    return result;
}

Finding findingOf(const FindingRule &rule, const Detection &detection, bool isConvertible)
{
    const bool isCured = rule.conversion == Conversion::Cures && detection.isConvertible && isConvertible;
    QString cure = filled(rule.cure, detection.details);
    if (isCured)
        cure += strConversion;
    if (isCured && detection.isInDegrees)
        cure += QStringLiteral(" с параметром --crs EPSG:номер");
    return {QString::fromLatin1(rule.id),
            rule.severity,
            detection.count,
            printable(detection.place),
            printable(filled(rule.text, detection.details)),
            printable(cure + QLatin1Char('.'))};
}

/// What the findings so far account for.
struct Accounted
{
    void add(const FindingRule &rule, const Detection &detection, const Stop &importStop);

    bool loss = false;
    bool stop = false;
};

// At the end of the file the line numbers of the scan and of the import may differ by one.
void Accounted::add(const FindingRule &rule, const Detection &detection, const Stop &importStop)
{
    loss = loss || rule.accounts != Accounts::Nothing;
    const Stop &own = detection.stop;
    const bool isSame = own.kind == importStop.kind && std::abs(own.line - importStop.line) <= 1;
    stop = stop || rule.accounts == Accounts::Rejection || (isSame && !importStop.inPointFile);
}

QString stopPlace(const Stop &stop)
{
    if (stop.kind == Stop::Nowhere || stop.kind == Stop::Opening || stop.kind == Stop::Memory)
        return {};
    if (stop.kind == Stop::Header)
        return QStringLiteral("файл точек");
    const QString place = stop.kind == Stop::MidLine ? QStringLiteral("MID, запись %1") : QStringLiteral("строка %1");
    return place.arg(stop.line) + (stop.inPointFile ? QStringLiteral(" файла точек") : QString());
}

bool givesFewerObjects(const Evidence &evidence)
{
    return evidence.found.outlined() > evidence.outcome.objects.size();
}

/// What is wrong with the file of points, without which the import does not begin.
Detection stopInPointFile(const Evidence &evidence)
{
    const QString text =
        QStringLiteral("Файл точек %1 не прочтётся, поэтому не загрузится ничего. Сообщение импорта: %2")
            .arg(QFileInfo(evidence.options.pointFile).fileName(), evidence.outcome.messages.first());
    return {1, stopPlace(evidence.outcome.stop), {text, QStringLiteral("Исправьте файл точек")}, {}, false};
}

Detection detectStopsEarly(const Evidence &evidence, const Accounted &accounted)
{
    const Stop &stop = evidence.outcome.stop;
    if (stop.kind == Stop::Nowhere || accounted.stop)
        return {};
    if (stop.inPointFile)
        return stopInPointFile(evidence);
    const bool countsLines = stop.kind == Stop::Line;
    const qint64 behind = countsLines ? std::max(evidence.facts.lineCount - stop.line, qint64{0}) : 0;
    const QString text = QStringLiteral("Чтение остановится раньше конца файла, за этим местом ещё строк: %1. "
                                        "Сообщение импорта: %2")
                             .arg(QString::number(behind), evidence.outcome.messages.first());
    // The object at which the import stops counts, too.
    const qint64 outlined = evidence.found.outlined();
    const bool isConvertible = countsLines && outlined > 0 && outlined >= evidence.outcome.objects.size();
    return {1, stopPlace(stop), {text, QStringLiteral("Исправьте это место файла")}, {}, isConvertible};
}

QStringList nothingImportedDetails(const Evidence &evidence)
{
    const FoundContent &found = evidence.found;
    const int points = evidence.outcome.knownPoints.size();
    if (points > 0 && found.outlined() == 0)
        return {QStringLiteral("В файле только точки (их %1), объектов он не даст.").arg(points),
                QStringLiteral("Если это файл точек, укажите его при импорте как файл точек (--points)")};
    return {QStringLiteral("Файл будет принят, но не даст ни одного объекта, и сообщения об этом не будет. Площадей в "
                           "файле %1, линий %2.")
                .arg(found.areas)
                .arg(found.lines),
            QStringLiteral("Начертите контуры тем, что даёт объекты: LINE, POLYLINE и LWPOLYLINE в чертеже, LINE, "
                           "PLINE и REGION в файле MIF")};
}

Detection detectNothingImported(const Evidence &evidence, const Accounted & /*accounted*/)
{
    const ImportOutcome &outcome = evidence.outcome;
    if (!outcome.messages.isEmpty() || !outcome.objects.isEmpty() || !evidence.facts.isReadable)
        return {};
    return {1, {}, nothingImportedDetails(evidence), {}, givesFewerObjects(evidence)};
}

Detection detectFewerObjects(const Evidence &evidence, const Accounted &accounted)
{
    if (!givesFewerObjects(evidence) || accounted.loss)
        return {};
    const qint64 objects = evidence.outcome.objects.size();
    const qint64 outlined = evidence.found.outlined();
    return {outlined - objects, {}, {QString::number(objects), QString::number(outlined)}};
}

// Only the import reads them, so no converted file has them. An object at which the import stops is incomplete.
Detection detectMoreObjects(const Evidence &evidence, const Accounted & /*accounted*/)
{
    const qint64 objects = evidence.outcome.objects.size();
    const qint64 outlined = evidence.found.outlined();
    const bool isWhole = evidence.found.isReadToEnd && evidence.outcome.stop.kind == Stop::Nowhere;
    if (!isWhole || objects <= outlined + evidence.facts.tally(Trait::Mesh).count)
        return {};
    return {objects - outlined, {}, {QString::number(objects), QString::number(outlined)}};
}

// After an error GDAL may pass over entities, so neither the comparison nor the converted file would be whole.
Detection detectReadError(const Evidence &evidence, const Accounted & /*accounted*/)
{
    static const QRegularExpression line(QStringLiteral(" line (\\d+) of .*$"));
    QString error = evidence.found.readError;
    if (error.isEmpty() || evidence.outcome.stop.kind != Stop::Nowhere || evidence.facts.isTruncated)
        return {};
    const QString number = line.match(error).captured(1);
    const QString place = number.isEmpty() ? QString() : QStringLiteral("строка %1").arg(number);
    return {1, place, {error.replace(line, QStringLiteral(" line \\1"))}};
}

/// A rule that applies when the others do not account for what the import gives.
struct GeneralRule
{
    FindingRule rule; ///< without a function
    Detection (*detect)(const Evidence &evidence, const Accounted &accounted);
};

const QVector<GeneralRule> &generalRules()
{
    constexpr Conversion cures = Conversion::Cures;
    static const QVector<GeneralRule> rules{
        {{"stops-early", Severity::Error, Accounts::Loss, cures, nullptr, QStringLiteral("%1"), QStringLiteral("%2")},
         detectStopsEarly},
        {{"nothing-imported", Severity::Error, Accounts::Loss, cures, nullptr, QStringLiteral("%1"),
          QStringLiteral("%2")},
         detectNothingImported},
        {{"fewer-objects", Severity::Warning, Accounts::Loss, cures, nullptr,
          QStringLiteral("Объектов загрузится %1, а площадей и линий в файле %2."),
          QStringLiteral("Сравните загруженное с чертежом")},
         detectFewerObjects},
        {{"read-error", Severity::Warning, Accounts::Nothing, Conversion::Useless, nullptr,
          QStringLiteral(
              "Сравнить импорт с содержимым файла не удалось: GDAL прочла его с ошибкой, и convert может его "
              "не взять. Её сообщение: %1"),
          QStringLiteral("Исправьте это место или сохраните файл заново")},
         detectReadError},
        {{"more-objects", Severity::Note, Accounts::Nothing, Conversion::Useless, nullptr,
          QStringLiteral("Объектов загрузится %1, а площадей и линий в файле %2: часть их другая программа чтения "
                         "(GDAL) не видит, и в преобразованном файле их не будет."),
          QStringLiteral("Сравните загруженное с чертежом")},
         detectMoreObjects},
    };
    return rules;
}

/// The row of \a id in both tables; null if there is none.
const FindingRule *ruleOf(const QString &id)
{
    for (const FindingRule &rule : findingRules()) {
        if (id == QLatin1String(rule.id))
            return &rule;
    }
    for (const GeneralRule &general : generalRules()) {
        if (id == QLatin1String(general.rule.id))
            return &general.rule;
    }
    return nullptr;
}

/// True if GDAL reads the whole file.
bool canConvert(const Evidence &evidence)
{
    const bool isRead = evidence.found.isOpened && evidence.found.isReadToEnd;
    return evidence.facts.headerFault == HeaderFault::Binary || isRead;
}

/// Adds the finding, if there is one.
void add(QVector<Finding> &findings, Accounted &accounted, const FindingRule &rule, const Detection &detection,
         const Evidence &evidence)
{
    if (detection.count == 0)
        return;
    findings.append(findingOf(rule, detection, canConvert(evidence)));
    accounted.add(rule, detection, evidence.outcome.stop);
}

} // namespace

QVector<Finding> findProblems(const Evidence &evidence)
{
    QVector<Finding> findings;
    Accounted accounted;
    for (const FindingRule &rule : findingRules())
        add(findings, accounted, rule, rule.detect(evidence), evidence);
    for (const GeneralRule &general : generalRules())
        add(findings, accounted, general.rule, general.detect(evidence, accounted), evidence);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding &a, const Finding &b) { return a.severity < b.severity; });
    return findings;
}

bool conversionCures(const Finding &finding)
{
    return finding.cure.contains(strConversion);
}

bool needsCoordinateSystem(const Finding &finding)
{
    return finding.cure.contains(QLatin1String("--crs"));
}

QStringList findingIds()
{
    QStringList ids;
    for (const FindingRule &rule : findingRules())
        ids.append(QString::fromLatin1(rule.id));
    for (const GeneralRule &general : generalRules())
        ids.append(QString::fromLatin1(general.rule.id));
    return ids;
}

Finding findingWithoutEvidence(const QString &id)
{
    const FindingRule *const rule = ruleOf(id);
    return rule != nullptr ? findingOf(*rule, {1, {}}, false) : Finding();
}
