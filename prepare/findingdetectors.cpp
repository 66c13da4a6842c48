// The functions are in the order of an import: file, header, records, objects, numbers, names.

#include "findingdetectors.h"

#include "blockcopies.h"
#include "checknames.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSet>

#include <algorithm>
#include <cstdlib>

namespace {

bool isMif(const Evidence &evidence)
{
    return formatOf(evidence.fileName) == Format::Mif;
}

QString linePlace(qint64 line)
{
    return QStringLiteral("строка %1").arg(line);
}

} // namespace

Detection detectTrait(const Evidence &evidence, Trait trait)
{
    const Tally &tally = evidence.facts.tally(trait);
    return {tally.count, tally.place};
}

Detection detectStop(const Evidence &evidence, Trait trait, Stop::Kind kind)
{
    const Tally &tally = evidence.facts.tally(trait);
    const qint64 behind = evidence.facts.lineCount - tally.line;
    return {tally.count, tally.place, {QString::number(behind)}, {kind, tally.line, false}};
}

// GDAL reads a drawing only up to its blank line.
Detection detectBlankLine(const Evidence &evidence)
{
    Detection detection = detectStop(evidence, Trait::BlankLine, Stop::Line);
    detection.isConvertible = isMif(evidence);
    return detection;
}

Detection detectUnreadable(const Evidence &evidence)
{
    return {evidence.facts.isReadable ? 0 : 1, {}};
}

Detection detectHeader(const Evidence &evidence, Format format, HeaderFault fault)
{
    const FileFacts &facts = evidence.facts;
    if (facts.headerFault != fault || formatOf(evidence.fileName) != format)
        return {};
    const QString shown =
        facts.headerText.isEmpty() ? QStringLiteral("пусто") : QStringLiteral("«%1»").arg(facts.headerText);
    const bool isSection = fault == HeaderFault::OtherSection;
    const qint64 line = std::max(facts.headerLine, qint64{1});
    return {1, linePlace(line), {isSection ? facts.headerText : shown}, {Stop::Header, 0, false}};
}

namespace {

/// The MID file that the import could not open; empty if it could.
QString unopenedMidFile(const Evidence &evidence)
{
    const Stop &stop = evidence.outcome.stop;
    if (!isMif(evidence) || stop.kind != Stop::Opening)
        return {};
    return midFileName(stop.inPointFile ? evidence.options.pointFile : evidence.fileName);
}

/// A file beside \a fileName whose name differs in case only; empty if there is none.
QString otherCase(const QString &fileName)
{
    const QFileInfo info(fileName);
    const QStringList names = info.dir().entryList(QDir::Files);
    for (const QString &name : names) {
        if (name.compare(info.fileName(), Qt::CaseInsensitive) == 0)
            return name;
    }
    return {};
}

Detection detectMidFile(const Evidence &evidence, bool hasOtherCase)
{
    const QString expected = unopenedMidFile(evidence);
    if (expected.isEmpty())
        return {};
    const QString other = otherCase(expected);
    if (other.isEmpty() == hasOtherCase)
        return {};
    const QString name = QFileInfo(expected).fileName();
    const Stop &stop = evidence.outcome.stop;
    return {1, QStringLiteral("файл %1").arg(name), {name, other}, stop, !stop.inPointFile};
}

} // namespace

Detection detectMidMissing(const Evidence &evidence)
{
    return detectMidFile(evidence, false);
}

Detection detectMidNameCase(const Evidence &evidence)
{
    return detectMidFile(evidence, true);
}

Detection detectMidOutOfStep(const Evidence &evidence)
{
    const qint64 records = evidence.facts.recordCount;
    const qint64 objects = evidence.facts.recordsNeeded;
    if (records < 0 || records == objects)
        return {};
    const qint64 line = std::min(records, objects) + 1;
    return {std::abs(records - objects),
            QStringLiteral("MID, запись %1").arg(line),
            {QString::number(records), QString::number(objects)},
            {Stop::MidLine, line, false}};
}

Detection detectTooManyCopies(const Evidence &evidence)
{
    const qint64 line = evidence.found.excessLine;
    return {line > 0 ? 1 : 0, linePlace(line), {QLocale(QLocale::Russian).toString(BlockCopies::maxCount)}};
}

Detection detectTruncated(const Evidence &evidence)
{
    const FileFacts &facts = evidence.facts;
    if (!facts.isTruncated)
        return {};
    return {1, facts.truncatedPlace, {}, {Stop::Line, facts.lineCount, false}};
}

// Without a search the import ignores texts.
Detection detectUnreadTexts(const Evidence &evidence)
{
    const bool readsNames = evidence.options.searchPoints || evidence.options.searchObjects;
    return readsNames && !isMif(evidence) ? detectTrait(evidence, Trait::UnreadText) : Detection();
}

// The texts of a MIF file are decoration unless an object has no designation in its record.
Detection detectMifTexts(const Evidence &evidence)
{
    const Tally &texts = evidence.facts.tally(Trait::UnreadText);
    const qint64 unnamed = evidence.outcome.generatedNames;
    if (!isMif(evidence) || !evidence.options.searchObjects || texts.count == 0 || unnamed == 0)
        return {};
    return {texts.count, texts.place, {QString::number(unnamed)}};
}

namespace {

/// Entities that import does not read but conversion does.
bool isConvertible(const QString &keyword)
{
    static const QSet<QString> keywords{
        QStringLiteral("3DFACE"), QStringLiteral("DIMENSION"),  QStringLiteral("HATCH"),
        QStringLiteral("LEADER"), QStringLiteral("MLEADER"),    QStringLiteral("MULTILEADER"),
        QStringLiteral("RECT"),   QStringLiteral("MULTIPOINT"), QStringLiteral("ROUNDRECT"),
        QStringLiteral("SOLID"),  QStringLiteral("TRACE"),
    };
    return keywords.contains(keyword);
}

} // namespace

Detection detectUnreadEntities(const Evidence &evidence)
{
    Detection detection = detectTrait(evidence, Trait::UnreadEntity);
    const QMap<QString, qint64> &kinds = evidence.facts.unreadKinds;
    QStringList all;
    QStringList others;
    for (auto it = kinds.begin(); it != kinds.end(); ++it) {
        all.append(QStringLiteral("%1 %2").arg(it.key(), QString::number(it.value())));
        if (!isConvertible(it.key()))
            others.append(it.key());
    }
    const QString separator = QStringLiteral(", ");
    detection.isConvertible = others.size() < kinds.size();
    const bool isMixed = detection.isConvertible && !others.isEmpty();
    const QString onlyWay = QStringLiteral(" (%1 — только так)").arg(others.join(separator));
    detection.details = QStringList{all.join(separator), isMixed ? onlyWay : QString()};
    return detection;
}

Detection detectBulges(const Evidence &evidence)
{
    Detection detection = detectTrait(evidence, Trait::Bulge);
    detection.details = QStringList{QString::number(evidence.facts.largestDeviation, 'g', 4)};
    return detection;
}

// Conversion takes coordinates without a system for degrees only if all content fits.
Detection detectDegrees(const Evidence &evidence)
{
    const ImportStatistics &statistics = evidence.statistics;
    const QString &header = evidence.facts.geographicPlace;
    if (header.isEmpty() ? !statistics.looksGeographic : !statistics.fitsDegrees)
        return {};
    const QString first = QStringLiteral("объект «%1»").arg(evidence.outcome.objects.first().def);
    const bool isConvertible = !header.isEmpty() || evidence.found.fitsDegrees;
    return {statistics.vertices, header.isEmpty() ? first : header, {}, {}, isConvertible, isConvertible};
}

Detection detectMergedNumbers(const Evidence &evidence)
{
    return {evidence.statistics.sharedPositions, evidence.statistics.sharedPlace};
}

Detection detectUnnumbered(const Evidence &evidence)
{
    return {evidence.statistics.unnumbered, evidence.statistics.unnumberedPlace};
}

Detection detectNotFinite(const Evidence &evidence)
{
    return {evidence.statistics.notFinite, evidence.statistics.notFinitePlace};
}

Detection detectTransform(const Evidence &evidence)
{
    const QString &place = evidence.facts.transformPlace;
    return {place.isEmpty() ? 0 : 1, place};
}

// Only the texts of drawings have such codes by convention, so conversion leaves the records of MIF files as they are.
Detection detectEscapedNames(const Evidence &evidence)
{
    const ImportStatistics &statistics = evidence.statistics;
    return {statistics.escapedNames, statistics.escapedNamePlace, {}, {}, !isMif(evidence)};
}

Detection detectHeights(const Evidence &evidence)
{
    return {evidence.statistics.decimalNames, evidence.statistics.decimalNamePlace};
}

Detection detectMisplacedNames(const Evidence &evidence)
{
    const MisplacedNames names = findMisplacedNames(evidence.outcome, evidence.facts.unsortedTexts);
    return {names.count, QStringLiteral("объект «%1»").arg(names.firstName)};
}

Detection detectSharedNames(const Evidence &evidence)
{
    return {evidence.statistics.sharedNames, evidence.statistics.sharedNamePlace};
}

Detection detectNothing(const Evidence & /*evidence*/)
{
    return {};
}
