#include "finding.h"

#include "findingrules.h"

#include <algorithm>
#include <cstdlib>

namespace {

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

/// Texts of the file may contain control characters, with which they could command a terminal.
QString printable(QString text)
{
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control)
            c = QChar(QChar::ReplacementCharacter);
    }
    return text;
}

Finding findingOf(const FindingRule &rule, const Detection &detection)
{
    return {QString::fromLatin1(rule.id),
            rule.severity,
            detection.count,
            printable(detection.place),
            printable(filled(rule.text, detection.details)),
            printable(filled(rule.cure, detection.details))};
}

/// What the findings so far account for.
struct Accounted
{
    void add(const FindingRule &rule, const Detection &detection, const Stop &stop);

    bool loss = false;
    bool stop = false;
};

// The scan and the import may disagree about the line by one, at the end of the file.
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

Detection detectStopsEarly(const Evidence &evidence, const Accounted &accounted)
{
    const Stop &stop = evidence.outcome.stop;
    if (stop.kind == Stop::Nowhere || accounted.stop)
        return {};
    const bool countsLines = stop.kind == Stop::Line && !stop.inPointFile;
    const qint64 behind = countsLines ? std::max(evidence.facts.lineCount - stop.line, qint64{0}) : 0;
    return {1, stopPlace(stop), {evidence.outcome.messages.first(), QString::number(behind)}};
}

Detection detectNothingImported(const Evidence &evidence, const Accounted & /*accounted*/)
{
    const bool isSilent = evidence.outcome.messages.isEmpty() && evidence.outcome.objects.isEmpty();
    if (!isSilent || !evidence.facts.isReadable)
        return {};
    return {1, {}, {QString::number(evidence.found.areas), QString::number(evidence.found.lines)}};
}

Detection detectFewerObjects(const Evidence &evidence, const Accounted &accounted)
{
    const qint64 missing = evidence.found.outlined() - evidence.outcome.objects.size();
    if (missing <= 0 || accounted.loss)
        return {};
    return {
        missing, {}, {QString::number(evidence.outcome.objects.size()), QString::number(evidence.found.outlined())}};
}

/// A rule that applies when the others do not account for what the import gives.
struct GeneralRule
{
    FindingRule rule; ///< without a function
    Detection (*detect)(const Evidence &evidence, const Accounted &accounted);
};

const QVector<GeneralRule> &generalRules()
{
    static const QVector<GeneralRule> rules{
        {{"stops-early", Severity::Error, Accounts::Loss, true, nullptr,
          QStringLiteral("Чтение остановится раньше конца файла, за этим местом ещё строк: %2. Сообщение импорта: %1"),
          QStringLiteral("Исправьте это место файла или преобразуйте файл командой convert.")},
         detectStopsEarly},
        {{"nothing-imported", Severity::Error, Accounts::Loss, true, nullptr,
          QStringLiteral("Файл будет принят, но не даст ни одного объекта, и сообщения об этом не будет. Площадей в "
                         "файле %1, линий %2."),
          QStringLiteral("Объекты дают только LINE, POLYLINE и LWPOLYLINE чертежа и LINE, PLINE и REGION файла MIF. "
                         "Преобразуйте файл командой convert, если в нём есть площади или линии.")},
         detectNothingImported},
        {{"fewer-objects", Severity::Warning, Accounts::Loss, true, nullptr,
          QStringLiteral("Объектов загрузится %1, а площадей и линий в файле %2."),
          QStringLiteral("Сравните загруженное с чертежом или преобразуйте файл командой convert.")},
         detectFewerObjects},
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

/// Adds the finding, if there is one.
void add(QVector<Finding> &findings, Accounted &accounted, const FindingRule &rule, const Detection &detection,
         const Stop &stop)
{
    if (detection.count == 0)
        return;
    findings.append(findingOf(rule, detection));
    accounted.add(rule, detection, stop);
}

} // namespace

QVector<Finding> findProblems(const Evidence &evidence)
{
    QVector<Finding> findings;
    Accounted accounted;
    const Stop &stop = evidence.outcome.stop;
    for (const FindingRule &rule : findingRules())
        add(findings, accounted, rule, rule.detect(evidence), stop);
    for (const GeneralRule &general : generalRules())
        add(findings, accounted, general.rule, general.detect(evidence, accounted), stop);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding &a, const Finding &b) { return a.severity < b.severity; });
    return findings;
}

bool conversionCures(const QString &id)
{
    const FindingRule *const rule = ruleOf(id);
    return rule != nullptr && rule->conversionHelps;
}

Finding findingWithoutEvidence(const QString &id)
{
    const FindingRule *const rule = ruleOf(id);
    return rule != nullptr ? findingOf(*rule, {1, {}}) : Finding();
}
