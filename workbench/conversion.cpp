#include "conversion.h"

#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace {

constexpr int maxKinds = 200;     // a drawing may contain entities of any number of names
constexpr int maxNameLength = 60; // of an entity

Conversion::Counts readCounts(const QJsonValue &value)
{
    Conversion::Counts counts;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &item : array) {
        const QJsonObject object = item.toObject();
        counts.append({object.value(QLatin1String("kind")).toString(),
                       static_cast<qint64>(object.value(QLatin1String("count")).toDouble())});
    }
    return counts;
}

const QHash<QString, QString> &kindTexts()
{
    static const QHash<QString, QString> texts{
        // Left out.
        {QStringLiteral("empty-insert"), QStringLiteral("вставки блоков, которых нет или которые пусты")},
        {QStringLiteral("merged-point"), QStringLiteral("точки ближе 0,01 к другой точке")},
        {QStringLiteral("mesh"), QStringLiteral("сети многоугольников")},
        {QStringLiteral("no-geometry"), QStringLiteral("записи без геометрии")},
        {QStringLiteral("not-finite"), QStringLiteral("контуры и точки, координаты которых не числа")},
        {QStringLiteral("not-transformed"), QStringLiteral("записи за пределами системы координат")},
        {QStringLiteral("point-without-number"), QStringLiteral("точки без номера")},
        {QStringLiteral("raster"), QStringLiteral("растры")},
        {QStringLiteral("short-area"), QStringLiteral("контуры площадей, в которых меньше трёх углов")},
        {QStringLiteral("short-line"), QStringLiteral("линии, в которых меньше двух вершин")},
        {QStringLiteral("unused-text"), QStringLiteral("надписи, которые не стали ни обозначением, ни номером точки")},
        // Notes.
        {QStringLiteral("coarse-curve"), QStringLiteral("дуги так велики, что заданная точность хорд не выдержана")},
        {QStringLiteral("degrees"), QStringLiteral("координаты в градусах, а импорту нужны метры")},
        {QStringLiteral("gdal-warning"), QStringLiteral("предупреждения при чтении исходного файла")},
        {QStringLiteral("height"), QStringLiteral("записи с высотами, которых импорт не принимает")},
        {QStringLiteral("long-text"), QStringLiteral("тексты, обрезанные до 254 байт")},
        {QStringLiteral("missing-record"), QStringLiteral("объекты без записи в файле MID")},
        {QStringLiteral("no-end"), QStringLiteral("в чертеже нет отметки конца: возможно, файл обрезан")},
        {QStringLiteral("replaced-character"),
         QStringLiteral("знаки, которых нет в кодировке результата и которые заменены")},
        {QStringLiteral("uncontrolled-curve"), QStringLiteral("кривые, разбитые без заданной точности")},
    };
    return texts;
}

// A newer companion may report kinds that are not known here.
QString kindText(const QString &kind)
{
    const QString entity = QStringLiteral("entity ");
    if (kind.startsWith(entity))
        return QStringLiteral("примитивы %1").arg(kind.mid(entity.size(), maxNameLength));
    return kindTexts().value(kind, kind);
}

// Remarks on the whole file have no meaningful count.
bool isCounted(const QString &kind)
{
    static const QStringList uncounted{QStringLiteral("degrees"), QStringLiteral("no-end")};
    return !uncounted.contains(kind);
}

QString countsText(const Conversion::Counts &counts, int maxKinds)
{
    QStringList lines;
    for (const auto &[kind, count] : counts.mid(0, maxKinds))
        lines.append(isCounted(kind) ? QStringLiteral("  %1: %2").arg(kindText(kind)).arg(count)
                                     : QStringLiteral("  %1").arg(kindText(kind)));
    if (counts.size() > maxKinds)
        lines.append(QStringLiteral("  и другое (видов: %1)").arg(counts.size() - maxKinds));
    return lines.join(QLatin1Char('\n'));
}

QString encodingsText(const Conversion &conversion)
{
    QStringList texts{QStringLiteral("Кодировка результата: %1").arg(conversion.encoding)};
    if (!conversion.sourceEncoding.isEmpty())
        texts.append(QStringLiteral("исходного файла: %1").arg(conversion.sourceEncoding));
    return texts.join(QLatin1String("; "));
}

} // namespace

bool readConversion(const QByteArray &json, Conversion &conversion)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const auto text = [&object](const char *name) { return object.value(QLatin1String(name)).toString(); };
    const auto number = [&object](const char *name) {
        return static_cast<qint64>(object.value(QLatin1String(name)).toDouble());
    };
    conversion.output = text("output");
    conversion.encoding = text("encoding");
    conversion.sourceEncoding = text("sourceEncoding");
    conversion.objects = number("objects");
    conversion.contours = number("contours");
    conversion.vertices = number("vertices");
    conversion.points = number("points");
    conversion.leftOut = readCounts(object.value(QLatin1String("leftOut")));
    conversion.notes = readCounts(object.value(QLatin1String("notes")));
    conversion.warning = text("warning");
    return !conversion.output.isEmpty() && !conversion.encoding.isEmpty();
}

QString lossText(const Conversion &conversion, int maxKinds)
{
    static const QStringList losses{QStringLiteral("degrees"), QStringLiteral("long-text"), QStringLiteral("no-end"),
                                    QStringLiteral("replaced-character")};
    Conversion::Counts counts = conversion.leftOut;
    for (const auto &note : conversion.notes) {
        if (losses.contains(note.first))
            counts.append(note);
    }
    return countsText(counts, maxKinds);
}

QString conversionText(const Conversion &conversion)
{
    QStringList parts{QDir::toNativeSeparators(conversion.output)};
    parts.append(QStringLiteral("Записано: объектов %1, контуров %2, вершин %3, точек %4.")
                     .arg(conversion.objects)
                     .arg(conversion.contours)
                     .arg(conversion.vertices)
                     .arg(conversion.points));
    parts.append(encodingsText(conversion) + QLatin1Char('.'));
    if (conversion.isComplete())
        parts.append(QStringLiteral("\nПеренесено всё."));
    else
        parts.append(QStringLiteral("\nНе перенесено:\n%1").arg(countsText(conversion.leftOut, maxKinds)));
    if (!conversion.notes.isEmpty())
        parts.append(QStringLiteral("\nК сведению:\n%1").arg(countsText(conversion.notes, maxKinds)));
    if (!conversion.warning.isEmpty())
        parts.append(QStringLiteral("\nПервое предупреждение: %1").arg(conversion.warning));
    return parts.join(QLatin1Char('\n'));
}
