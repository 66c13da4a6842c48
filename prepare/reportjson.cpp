// A report as a line of JSON, and back.

#include "report.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <array>

namespace {

const std::array<QString, 3> severities{QStringLiteral("error"), QStringLiteral("warning"), QStringLiteral("note")};

QString formatName(Format format)
{
    return format == Format::Dxf ? QStringLiteral("DXF") : QStringLiteral("MIF");
}

QJsonObject toObject(const FileReport::Imported &imported)
{
    return {{QStringLiteral("objects"), imported.objects},
            {QStringLiteral("contours"), imported.contours},
            {QStringLiteral("vertices"), imported.vertices},
            {QStringLiteral("numbers"), imported.numbers},
            {QStringLiteral("knownPoints"), imported.knownPoints}};
}

QJsonValue toValue(const std::optional<FileReport::Found> &found)
{
    if (!found)
        return QJsonValue::Null;
    return QJsonObject{{QStringLiteral("areas"), found->areas},
                       {QStringLiteral("lines"), found->lines},
                       {QStringLiteral("points"), found->points},
                       {QStringLiteral("texts"), found->texts}};
}

QJsonArray toArray(const QVector<Finding> &findings)
{
    QJsonArray array;
    for (const Finding &finding : findings) {
        array.append(QJsonObject{{QStringLiteral("id"), finding.id},
                                 {QStringLiteral("severity"), severities[static_cast<std::size_t>(finding.severity)]},
                                 {QStringLiteral("count"), finding.count},
                                 {QStringLiteral("place"), finding.place},
                                 {QStringLiteral("text"), finding.text},
                                 {QStringLiteral("cure"), finding.cure}});
    }
    return array;
}

qint64 numberIn(const QJsonObject &object, const QString &key)
{
    return static_cast<qint64>(object.value(key).toDouble());
}

QStringList textsIn(const QJsonArray &array)
{
    QStringList texts;
    for (const QJsonValue &value : array)
        texts.append(value.toString());
    return texts;
}

FileReport::Imported importedFrom(const QJsonObject &object)
{
    return {numberIn(object, QStringLiteral("objects")), numberIn(object, QStringLiteral("contours")),
            numberIn(object, QStringLiteral("vertices")), numberIn(object, QStringLiteral("numbers")),
            numberIn(object, QStringLiteral("knownPoints"))};
}

std::optional<FileReport::Found> foundFrom(const QJsonValue &value)
{
    if (!value.isObject())
        return std::nullopt;
    const QJsonObject object = value.toObject();
    return FileReport::Found{numberIn(object, QStringLiteral("areas")), numberIn(object, QStringLiteral("lines")),
                             numberIn(object, QStringLiteral("points")), numberIn(object, QStringLiteral("texts"))};
}

QVector<Finding> findingsFrom(const QJsonArray &array)
{
    QVector<Finding> findings;
    for (const QJsonValue &value : array) {
        const QJsonObject object = value.toObject();
        const auto *const severity =
            std::find(severities.begin(), severities.end(), object.value(QStringLiteral("severity")).toString());
        findings.append(
            {object.value(QStringLiteral("id")).toString(),
             severity == severities.end() ? Severity::Note : static_cast<Severity>(severity - severities.begin()),
             numberIn(object, QStringLiteral("count")), object.value(QStringLiteral("place")).toString(),
             object.value(QStringLiteral("text")).toString(), object.value(QStringLiteral("cure")).toString()});
    }
    return findings;
}

} // namespace

QByteArray toJson(const FileReport &report)
{
    const QJsonObject options{{QStringLiteral("searchPoints"), report.searchesPoints},
                              {QStringLiteral("searchObjects"), report.searchesObjects},
                              {QStringLiteral("encoding"), report.encoding}};
    const QJsonObject object{
        {QStringLiteral("file"), report.fileName},
        {QStringLiteral("format"), formatName(report.format)},
        {QStringLiteral("accepted"), report.isUnfinished() ? QJsonValue() : report.isAccepted},
        {QStringLiteral("messages"), QJsonArray::fromStringList(report.messages)},
        {QStringLiteral("options"), options},
        {QStringLiteral("import"), report.isUnfinished() ? QJsonValue() : toObject(report.imported)},
        {QStringLiteral("found"), toValue(report.found)},
        {QStringLiteral("findings"), toArray(report.findings)}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<FileReport> reportFromJson(const QByteArray &line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (!object.value(QStringLiteral("file")).isString() || !object.value(QStringLiteral("findings")).isArray())
        return std::nullopt;
    const QJsonObject options = object.value(QStringLiteral("options")).toObject();
    FileReport report;
    report.fileName = object.value(QStringLiteral("file")).toString();
    report.format =
        object.value(QStringLiteral("format")).toString() == QLatin1String("DXF") ? Format::Dxf : Format::Mif;
    report.isAccepted = object.value(QStringLiteral("accepted")).toBool();
    report.messages = textsIn(object.value(QStringLiteral("messages")).toArray());
    report.searchesPoints = options.value(QStringLiteral("searchPoints")).toBool();
    report.searchesObjects = options.value(QStringLiteral("searchObjects")).toBool();
    report.encoding = options.value(QStringLiteral("encoding")).toString();
    report.imported = importedFrom(object.value(QStringLiteral("import")).toObject());
    report.found = foundFrom(object.value(QStringLiteral("found")));
    report.findings = findingsFrom(object.value(QStringLiteral("findings")).toArray());
    return report;
}
