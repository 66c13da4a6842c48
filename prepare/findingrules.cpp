// The table of findings and the functions that detect them, in the order of an import: file, header, records, objects,
// numbers, names.

#include "findingrules.h"

#include "checknames.h"
#include "findingencoding.h"

#include <QDir>
#include <QFileInfo>

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

/// Cases that the scan has counted; \a details replace the numbers in the texts.
template <Trait trait>
Detection detectTrait(const Evidence &evidence)
{
    const Tally &tally = evidence.facts.tally(trait);
    return {tally.count, tally.place};
}

/// The same for cases that stop the import.
template <Trait trait, Stop::Kind kind>
Detection detectStop(const Evidence &evidence)
{
    const Tally &tally = evidence.facts.tally(trait);
    const qint64 behind = evidence.facts.lineCount - tally.line;
    return {tally.count, tally.place, {QString::number(behind)}, {kind, tally.line, false}};
}

Detection detectUnreadable(const Evidence &evidence)
{
    return {evidence.facts.isReadable ? 0 : 1, {}};
}

template <Format format, HeaderFault fault>
Detection detectHeader(const Evidence &evidence)
{
    const FileFacts &facts = evidence.facts;
    if (facts.headerFault != fault || formatOf(evidence.fileName) != format)
        return {};
    return {1, linePlace(facts.headerLine), {facts.headerText}, {Stop::Header, 0, false}};
}

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
    return {1, QStringLiteral("файл %1").arg(name), {name, other}, evidence.outcome.stop};
}

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

Detection detectTruncated(const Evidence &evidence)
{
    const FileFacts &facts = evidence.facts;
    if (!facts.isTruncated)
        return {};
    return {1, facts.truncatedPlace, {}, {Stop::Line, facts.lineCount, false}};
}

// Nothing can be named by a text when no designations are looked up.
Detection detectUnreadTexts(const Evidence &evidence)
{
    const bool readsNames = evidence.options.searchPoints || evidence.options.searchObjects;
    return readsNames ? detectTrait<Trait::UnreadText>(evidence) : Detection();
}

Detection detectUnreadEntities(const Evidence &evidence)
{
    Detection detection = detectTrait<Trait::UnreadEntity>(evidence);
    QStringList kinds;
    for (auto it = evidence.facts.unreadKinds.begin(); it != evidence.facts.unreadKinds.end(); ++it)
        kinds.append(QStringLiteral("%1 %2").arg(it.key(), QString::number(it.value())));
    detection.details = QStringList{kinds.join(QLatin1String(", "))};
    return detection;
}

Detection detectBulges(const Evidence &evidence)
{
    Detection detection = detectTrait<Trait::Bulge>(evidence);
    detection.details = QStringList{QString::number(evidence.facts.largestDeviation, 'g', 4)};
    return detection;
}

Detection detectDegrees(const Evidence &evidence)
{
    const ImportStatistics &statistics = evidence.statistics;
    const QString &header = evidence.facts.geographicPlace;
    if (header.isEmpty() ? !statistics.looksGeographic : !statistics.fitsDegrees)
        return {};
    const QString first = QStringLiteral("объект «%1»").arg(evidence.outcome.objects.first().def);
    return {statistics.vertices, header.isEmpty() ? first : header};
}

Detection detectMergedNumbers(const Evidence &evidence)
{
    return {evidence.statistics.sharedPositions, evidence.statistics.sharedPlace};
}

Detection detectUnnumbered(const Evidence &evidence)
{
    return {evidence.statistics.unnumbered, evidence.statistics.unnumberedPlace};
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

} // namespace

const QVector<FindingRule> &findingRules()
{
    constexpr Severity error = Severity::Error;
    constexpr Severity warning = Severity::Warning;
    static const QVector<FindingRule> rules{
        {"unreadable", error, Accounts::Rejection, false, detectUnreadable,
         QStringLiteral("Файл не читается: его нет, это не обычный файл или на него нет прав."),
         QStringLiteral("Проверьте имя файла и права на чтение.")},
        {"crash", error, Accounts::Rejection, false, detectNothing,
         QStringLiteral("Проверка этого файла аварийно завершилась."),
         QStringLiteral("Откройте файл в программе, которая его создала, и сохраните заново.")},
        {"timeout", error, Accounts::Rejection, false, detectNothing,
         QStringLiteral("Проверка этого файла не уложилась в отведённое время."),
         QStringLiteral("Повторите проверку этого файла с бо́льшим временем: --timeout.")},
        {"binary-dxf", error, Accounts::Rejection, true, detectHeader<Format::Dxf, HeaderFault::Binary>,
         QStringLiteral("Это двоичный DXF, импорт читает только текстовый."),
         QStringLiteral("Сохраните чертёж как текстовый DXF (ASCII) или преобразуйте файл командой convert.")},
        {"leading-comment", error, Accounts::Rejection, true, detectHeader<Format::Dxf, HeaderFault::Comment>,
         QStringLiteral("Файл начинается с примечания (группа 999), импорт такой чертёж не принимает."),
         QStringLiteral("Удалите строки до первой пары 0/SECTION или преобразуйте файл командой convert.")},
        {"first-section", error, Accounts::Rejection, true, detectHeader<Format::Dxf, HeaderFault::OtherSection>,
         QStringLiteral("Первый раздел чертежа — %1, а импорт ждёт HEADER и такой чертёж не принимает."),
         QStringLiteral("Сохраните чертёж с разделом HEADER или преобразуйте файл командой convert.")},
        {"not-dxf", error, Accounts::Rejection, false, detectHeader<Format::Dxf, HeaderFault::Foreign>,
         QStringLiteral("Это не DXF: файл должен начинаться с пар 0/SECTION и 2/HEADER, а в нём «%1»."),
         QStringLiteral("Сохраните чертёж заново в формате DXF.")},
        {"not-mif", error, Accounts::Rejection, true, detectHeader<Format::Mif, HeaderFault::Foreign>,
         QStringLiteral(
             "Заголовок не принимается: первые три строки — Version, Charset и Delimiter, в каждой ровно два "
             "слова. Здесь вместо этого «%1»."),
         QStringLiteral(
             "Исправьте первые три строки, например: Version 300, Charset \"WindowsCyrillic\", "
             "Delimiter \",\". Если разделитель записей MID — табуляция, преобразуйте файл командой convert.")},
        {"mid-missing", error, Accounts::Rejection, true, detectMidMissing,
         QStringLiteral("Рядом нет файла %1 с обозначениями, поэтому не загрузится ничего."),
         QStringLiteral("Положите файл MID рядом с MIF или отключите поиск номеров точек и обозначений объектов.")},
        {"mid-name-case", error, Accounts::Rejection, true, detectMidNameCase,
         QStringLiteral("Импорт ищет файл %1, а рядом лежит %2: имена различаются прописными буквами."),
         QStringLiteral("Переименуйте %2 в %1.")},
        {"mid-empty-line", error, Accounts::Loss, true, detectStop<Trait::MidEmptyLine, Stop::MidLine>,
         QStringLiteral("В файле MID пустая строка вместо записи: на ней чтение остановится."),
         QStringLiteral(
             "Запишите в пустую строку пустое поле в кавычках (\"\") или преобразуйте файл командой convert.")},
        {"mid-out-of-step", error, Accounts::Loss, false, detectMidOutOfStep,
         QStringLiteral("Записей в MID %1, а объектов в MIF %2: обозначения могут достаться не тем объектам, а если "
                        "записей не хватит, чтение остановится."),
         QStringLiteral("Выгрузите пару MIF/MID заново: каждому объекту нужна ровно одна строка.")},
        {"pline-count", error, Accounts::Loss, true, detectStop<Trait::PlineCount, Stop::Line>,
         QStringLiteral("У PLINE число вершин не в той же строке, или в PLINE MULTIPLE меньше двух частей: на первой "
                        "такой линии чтение остановится, за ней ещё строк: %1."),
         QStringLiteral("Перенесите число в строку PLINE (PLINE 4), одну часть запишите без MULTIPLE или преобразуйте "
                        "файл командой convert.")},
        {"blank-line", error, Accounts::Loss, true, detectStop<Trait::BlankLine, Stop::Line>,
         QStringLiteral("Пустая строка там, где её быть не должно: на ней чтение остановится с ошибкой, за ней ещё "
                        "строк: %1."),
         QStringLiteral("Удалите пустую строку.")},
        {"collection", error, Accounts::Loss, true, detectStop<Trait::Collection, Stop::Line>,
         QStringLiteral("Коллекции не поддерживаются: на первой из них чтение закончится, за ней ещё строк: %1."),
         QStringLiteral("Разберите коллекции на отдельные объекты или преобразуйте файл командой convert.")},
        {"truncated", error, Accounts::Loss, false, detectTruncated,
         QStringLiteral("Файл обрывается: его конца нет, последние объекты потеряны или неполны."),
         QStringLiteral("Получите файл заново: он скопирован или сохранён не до конца.")},
        {"degrees", error, Accounts::Nothing, true, detectDegrees,
         QStringLiteral("Координаты, судя по всему, в градусах: точки ближе 0,01 градуса считаются одной, и у разных "
                        "вершин будет один "
                        "номер."),
         QStringLiteral("Пересчитайте в систему координат в метрах: convert с параметром --crs EPSG:номер.")},
        {"blocks", warning, Accounts::Loss, true, detectTrait<Trait::BlockReference>,
         QStringLiteral("Содержимое блоков не читается: вставка блока даёт самое большее точку."),
         QStringLiteral("Разбейте блоки на объекты в чертеже или преобразуйте файл командой convert.")},
        {"curves", warning, Accounts::Loss, true, detectTrait<Trait::Curve>,
         QStringLiteral("Дуги, окружности, эллипсы и сплайны контуров не дают; окружность и эллипс DXF дают "
                        "самое большее точку в центре."),
         QStringLiteral("Замените их ломаными в чертеже или преобразуйте файл командой convert.")},
        {"entities-not-read", warning, Accounts::Loss, true, detectUnreadEntities,
         QStringLiteral("Импорт не читает: %1."),
         QStringLiteral("Разбейте их на линии и полилинии в чертеже или преобразуйте файл командой convert.")},
        {"texts-not-read", warning, Accounts::Nothing, true, detectUnreadTexts,
         QStringLiteral("Эти надписи не читаются (в DXF — MTEXT и ATTRIB, в MIF — TEXT) и обозначений не дадут."),
         QStringLiteral("Замените их однострочным текстом TEXT или преобразуйте файл командой convert.")},
        {"polyline-kind", warning, Accounts::Nothing, true, detectTrait<Trait::PolylineKind>,
         QStringLiteral("Сети и сглаженные полилинии читаются просто как список вершин: контур будет неверным."),
         QStringLiteral("Замените их обычными полилиниями в чертеже или преобразуйте файл командой convert.")},
        {"polyline-flag", warning, Accounts::Nothing, true, detectTrait<Trait::PolylineFlag>,
         QStringLiteral("Замкнутые полилинии загрузятся незамкнутыми: признак замкнутости читается, только если "
                        "группа 70 равна ровно 1."),
         QStringLiteral("Замените значение группы 70 на 1 или преобразуйте файл командой convert.")},
        {"bulges", warning, Accounts::Nothing, true, detectBulges,
         QStringLiteral("Дуги полилиний станут хордами, наибольшее отклонение — %1 в единицах файла."),
         QStringLiteral("Преобразуйте файл командой convert: дуги станут ломаными с точностью --deviation.")},
        {"mirrored", warning, Accounts::Nothing, true, detectTrait<Trait::OtherPlane>,
         QStringLiteral("Объекты построены в своей плоскости (группы 210–230), чаще всего зеркально, а импорт этого не "
                        "учитывает: они загрузятся не на своём месте."),
         QStringLiteral("Преобразуйте файл командой convert.")},
        {"open-rings", warning, Accounts::Nothing, true, detectTrait<Trait::OpenRing>,
         QStringLiteral("Контур области не замкнут: его последняя вершина не совпадает с первой, но получит её номер."),
         QStringLiteral("Повторите первую вершину в конце контура или преобразуйте файл командой convert.")},
        {"merged-numbers", warning, Accounts::Nothing, false, detectMergedNumbers,
         QStringLiteral("Разные положения вершин получат один и тот же номер: точки ближе 0,01 считаются одной, либо "
                        "одна надпись досталась нескольким точкам."),
         QStringLiteral("Если координаты в градусах, пересчитайте их в метры; иначе проверьте номера этих точек или "
                        "отключите поиск номеров точек.")},
        {"empty-numbers", warning, Accounts::Nothing, false, detectUnnumbered,
         QStringLiteral("Вершины останутся без номера: в их месте стоит точка, у которой номера нет."),
         QStringLiteral("Подпишите точки или отключите поиск номеров точек.")},
        {"heights-as-names", warning, Accounts::Nothing, false, detectHeights,
         QStringLiteral("Обозначения или номера похожи на отметки высот или размеры (число с дробной частью)."),
         QStringLiteral("Уберите из чертежа надписи высот или отключите поиск номеров и обозначений; в MIF поставьте "
                        "обозначение в первое поле.")},
        {"misplaced-names", warning, Accounts::Nothing, true, detectMisplacedNames,
         QStringLiteral(
             "Объекты получат обозначение не от ближайшей надписи: в чертеже нет точек, и при поиске номеров "
             "точек надписи остаются неупорядоченными."),
         QStringLiteral("Отключите поиск номеров точек (--no-search-points) или преобразуйте файл командой convert.")},
        {"shared-names", warning, Accounts::Nothing, false, detectSharedNames,
         QStringLiteral("Несколько объектов получат одно и то же обозначение."),
         QStringLiteral("Исправьте обозначения в файле или после импорта либо отключите поиск обозначений объектов.")},
        {"paper-space", Severity::Note, Accounts::Nothing, false, detectTrait<Trait::PaperSpace>,
         QStringLiteral("Линии листов (пространства листа) загрузятся вместе с чертежом: рамки, штампы."),
         QStringLiteral("Удалите листы из чертежа или лишние объекты после импорта.")},
        {"encoding", warning, Accounts::Nothing, false, detectEncoding,
         QStringLiteral("Названия прочтутся неверно: кодировка в заголовке — %1, по байтам — %2, а выбрана %3."),
         QStringLiteral("Выберите при импорте кодировку %2 (--encoding).")},
    };
    return rules;
}
