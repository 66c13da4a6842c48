#include "findingrules.h"

#include "findingdetectors.h"
#include "findingencoding.h"

namespace {

constexpr Severity error = Severity::Error;
constexpr Severity warning = Severity::Warning;
constexpr Conversion useless = Conversion::Useless;
constexpr Conversion cures = Conversion::Cures;

const QVector<FindingRule> rules{
    {"unreadable", error, Accounts::Rejection, useless, detectUnreadable,
     QStringLiteral("Файл не читается: его нет, это не обычный файл или на него нет прав."),
     QStringLiteral("Проверьте имя файла и права на чтение")},
    {"crash", error, Accounts::Rejection, useless, detectNothing,
     QStringLiteral("Проверка этого файла аварийно завершилась."),
     QStringLiteral("Откройте файл в программе, которая его создала, и сохраните заново")},
    {"timeout", error, Accounts::Rejection, useless, detectNothing,
     QStringLiteral("Проверка этого файла не уложилась в отведённое время."),
     QStringLiteral("Повторите проверку этого файла, дав ей больше времени: --timeout; если она не закончится и тогда, "
                    "файл, возможно, повреждён: получите его заново")},
    {"binary-dxf", error, Accounts::Rejection, cures, detectHeader<Format::Dxf, HeaderFault::Binary>,
     QStringLiteral("Это двоичный DXF, импорт читает только текстовый."),
     QStringLiteral("Сохраните чертёж как текстовый DXF (ASCII)")},
    {"leading-comment", error, Accounts::Rejection, cures, detectHeader<Format::Dxf, HeaderFault::Comment>,
     QStringLiteral("Файл начинается с примечания (группа 999), импорт такой чертёж не принимает."),
     QStringLiteral("Удалите строки до первой пары 0/SECTION")},
    {"first-section", error, Accounts::Rejection, cures, detectHeader<Format::Dxf, HeaderFault::OtherSection>,
     QStringLiteral("Первый раздел чертежа — %1, а импорт ждёт HEADER и такой чертёж не принимает."),
     QStringLiteral("Сохраните чертёж с разделом HEADER")},
    {"not-dxf", error, Accounts::Rejection, useless, detectHeader<Format::Dxf, HeaderFault::Foreign>,
     QStringLiteral("Это не DXF: файл должен начинаться с пар 0/SECTION и 2/HEADER, а вместо них %1."),
     QStringLiteral("Сохраните чертёж заново в формате DXF")},
    {"not-mif", error, Accounts::Rejection, cures, detectHeader<Format::Mif, HeaderFault::Foreign>,
     QStringLiteral("Заголовок не принимается: первые три строки должны быть Version, Charset и Delimiter, в "
                    "каждой ровно два слова, а вместо этого %1."),
     QStringLiteral("Исправьте первые три строки, например: Version 300, Charset \"WindowsCyrillic\", "
                    "Delimiter \",\" (если поля в MID разделены табуляцией, замените и её)")},
    {"mid-missing", error, Accounts::Rejection, cures, detectMidMissing,
     QStringLiteral("Рядом нет файла %1 с обозначениями, поэтому не загрузится ничего."),
     QStringLiteral("Положите файл MID рядом с MIF, отключите поиск номеров точек и обозначений объектов")},
    {"mid-name-case", error, Accounts::Rejection, cures, detectMidNameCase,
     QStringLiteral("Импорт ищет файл %1, а рядом лежит %2: имена различаются прописными и строчными буквами, "
                    "поэтому не загрузится ничего."),
     QStringLiteral("Переименуйте %2 в %1")},
    {"mid-empty-line", error, Accounts::Loss, cures, detectStop<Trait::MidEmptyLine, Stop::MidLine>,
     QStringLiteral("В файле MID пустая строка вместо записи: на ней чтение остановится."),
     QStringLiteral("Запишите в пустую строку пустое поле в кавычках (\"\")")},
    {"mid-out-of-step", error, Accounts::Loss, useless, detectMidOutOfStep,
     QStringLiteral("Записей в MID %1, а объектов в MIF %2: обозначения могут достаться не тем объектам, а если "
                    "записей не хватит, чтение остановится."),
     QStringLiteral("Выгрузите пару MIF/MID заново: каждому объекту нужна ровно одна строка")},
    {"pline-count", error, Accounts::Loss, cures, detectStop<Trait::PlineCount, Stop::Line>,
     QStringLiteral("У PLINE число вершин не в той же строке, или в PLINE MULTIPLE меньше двух частей: на первой "
                    "такой линии чтение остановится, за ней ещё строк: %1."),
     QStringLiteral("Перенесите число в строку PLINE (например, PLINE 4), одну часть запишите без MULTIPLE")},
    {"decimal-comma", error, Accounts::Loss, cures, detectStop<Trait::DecimalComma, Stop::Line>,
     QStringLiteral("Координаты с десятичной запятой: на первой чтение остановится, за ней ещё строк: %1."),
     QStringLiteral("Замените в координатах запятые точками")},
    {"blank-line", error, Accounts::Loss, cures, detectBlankLine,
     QStringLiteral("Пустая строка там, где её быть не должно: на ней чтение остановится с ошибкой, за ней ещё "
                    "строк: %1."),
     QStringLiteral("Удалите пустую строку и проверьте файл снова")},
    {"collection", error, Accounts::Loss, cures, detectStop<Trait::Collection, Stop::Line>,
     QStringLiteral("Коллекции не поддерживаются: на первой из них чтение закончится, за ней ещё строк: %1."),
     QStringLiteral("Разберите коллекции на отдельные объекты")},
    {"truncated", error, Accounts::Loss, useless, detectTruncated,
     QStringLiteral("Файл обрывается: его конца нет, последние объекты потеряны или неполны."),
     QStringLiteral("Получите файл заново: он скопирован или сохранён не до конца")},
    {"degrees", error, Accounts::Nothing, cures, detectDegrees,
     QStringLiteral("Координаты, судя по всему, в градусах: точки ближе 0,01 градуса (около километра) считаются "
                    "одной, и у разных вершин будет один номер."),
     QStringLiteral("Пересчитайте координаты в систему в метрах")},
    {"too-many-copies", error, Accounts::Loss, useless, detectTooManyCopies,
     QStringLiteral("С этой вставкой блоки чертят больше %1 объектов или вложены слишком глубоко. Содержимое "
                    "чертежа не подсчитано, и convert его не читает."),
     QStringLiteral("Удалите или исправьте вставку: её строки и столбцы и вставки внутри её блока")},
    {"blocks", warning, Accounts::Loss, cures, detectTrait<Trait::BlockReference>,
     QStringLiteral("Содержимое блоков не читается: вставка блока даёт самое большее точку."),
     QStringLiteral("Разбейте блоки на объекты в чертеже")},
    {"curves", warning, Accounts::Loss, cures, detectTrait<Trait::Curve>,
     QStringLiteral("Дуги, окружности, эллипсы и сплайны контуров не дают; окружность и эллипс DXF дают "
                    "самое большее точку в центре."),
     QStringLiteral("Замените их ломаными в чертеже")},
    {"entities-not-read", warning, Accounts::Loss, cures, detectUnreadEntities, QStringLiteral("Импорт не читает: %1."),
     QStringLiteral("Разбейте их на линии и полилинии в чертеже%2")},
    {"texts-not-read", warning, Accounts::Nothing, cures, detectUnreadTexts,
     QStringLiteral("Надписи MTEXT и ATTRIB не читаются и ни обозначений, ни номеров не дадут."),
     QStringLiteral("Замените их однострочным текстом TEXT")},
    {"mesh", warning, Accounts::Nothing, useless, detectTrait<Trait::Mesh>,
     QStringLiteral("Сети (POLYLINE с признаком 16 в группе 70) читаются просто как список вершин: контур будет "
                    "неверным."),
     QStringLiteral("Разбейте сети на грани или полилинии в чертеже")},
    {"polyline-kind", warning, Accounts::Nothing, cures, detectTrait<Trait::PolylineKind>,
     QStringLiteral("Сглаженные полилинии и многогранные сети читаются просто как список вершин: контур будет "
                    "неверным."),
     QStringLiteral("Замените их обычными полилиниями в чертеже")},
    {"polyline-flag", warning, Accounts::Nothing, cures, detectTrait<Trait::PolylineFlag>,
     QStringLiteral("Замкнутые полилинии загрузятся незамкнутыми: признак замкнутости читается, только если "
                    "группа 70 равна ровно 1."),
     QStringLiteral("Замените значение группы 70 на 1")},
    {"bulges", warning, Accounts::Nothing, cures, detectBulges,
     QStringLiteral("Дуги полилиний станут хордами, наибольшее отклонение — %1 в единицах файла."),
     QStringLiteral("Замените дуги ломаными в чертеже")},
    {"mirrored", warning, Accounts::Nothing, cures, detectTrait<Trait::OtherPlane>,
     QStringLiteral("Объекты построены в своей плоскости (группы 210–230), чаще всего зеркально, а импорт этого не "
                    "учитывает: они загрузятся не на своём месте."),
     QStringLiteral("Перестройте их в чертеже в мировой системе координат")},
    {"transform", warning, Accounts::Nothing, cures, detectTransform,
     QStringLiteral("Строка Transform меняет масштаб или сдвигает координаты, а импорт её не учитывает: объекты "
                    "загрузятся не на своём месте."),
     QStringLiteral("Выгрузите файл без Transform")},
    {"open-rings", warning, Accounts::Nothing, cures, detectTrait<Trait::OpenRing>,
     QStringLiteral("Контур области не замкнут: его последняя вершина не совпадает с первой, но получит её номер."),
     QStringLiteral("Повторите первую вершину в конце контура")},
    {"not-finite", warning, Accounts::Nothing, useless, detectNotFinite,
     QStringLiteral("Вместо координат стоит nan или inf, или они не помещаются в число: таких вершин нет на "
                    "плане, но они загрузятся."),
     QStringLiteral("Исправьте координаты этих вершин")},
    {"merged-numbers", warning, Accounts::Nothing, useless, detectMergedNumbers,
     QStringLiteral("Вершины в разных местах получат один номер: точки ближе 0,01 считаются одной, либо одна "
                    "надпись или запись досталась нескольким точкам."),
     QStringLiteral("Если координаты в градусах, пересчитайте их в метры; иначе проверьте номера этих точек или "
                    "отключите поиск номеров точек")},
    {"empty-numbers", warning, Accounts::Nothing, useless, detectUnnumbered,
     QStringLiteral("Вершины останутся без номера: в их месте стоит точка, у которой номера нет."),
     QStringLiteral("Подпишите точки или отключите поиск номеров точек")},
    {"heights-as-names", warning, Accounts::Nothing, useless, detectHeights,
     QStringLiteral("Обозначения или номера похожи на отметки высот или размеры (число с дробной частью)."),
     QStringLiteral("Уберите из чертежа надписи высот или отключите поиск номеров и обозначений; в MIF поставьте "
                    "обозначение в первое поле")},
    {"escaped-names", warning, Accounts::Nothing, cures, detectEscapedNames,
     QStringLiteral("В обозначениях или номерах останутся коды вида \\U+0416 вместо букв: импорт их не "
                    "расшифровывает."),
     QStringLiteral("Сохраните чертёж в кодировке, в которой эти буквы есть (ANSI_1251)")},
    {"misplaced-names", warning, Accounts::Nothing, cures, detectMisplacedNames,
     QStringLiteral("Объекты получат обозначение не от ближайшей надписи: в чертеже нет точек, и при поиске номеров "
                    "точек надписи остаются неупорядоченными."),
     QStringLiteral("Отключите поиск номеров точек (--no-search-points)")},
    {"shared-names", warning, Accounts::Nothing, useless, detectSharedNames,
     QStringLiteral("Несколько объектов получат одно и то же обозначение."),
     QStringLiteral("Исправьте обозначения в файле или после импорта либо отключите поиск обозначений объектов")},
    {"encoding", warning, Accounts::Nothing, useless, detectEncoding,
     QStringLiteral("Обозначения и номера прочтутся неверно: кодировка в заголовке — %1, по байтам — %2, а "
                    "выбрана %3."),
     QStringLiteral("Выберите при импорте кодировку %4 (--encoding)%5")},
    {"texts-in-mif", Severity::Note, Accounts::Nothing, useless, detectMifTexts,
     QStringLiteral("Надписи TEXT файла MIF обозначений не дают, а первое поле записи MID пустое у объектов: %1. "
                    "Обозначения им даст импорт по порядку."),
     QStringLiteral("Впишите обозначения в первое поле файла MID; надпись внутри контура впишет туда команда "
                    "convert")},
    {"paper-space", Severity::Note, Accounts::Nothing, useless, detectTrait<Trait::PaperSpace>,
     QStringLiteral("Линии листов (пространства листа) загрузятся вместе с чертежом: рамки, штампы."),
     QStringLiteral("Удалите листы из чертежа или лишние объекты после импорта")},
};

} // namespace

const QVector<FindingRule> &findingRules()
{
    return rules;
}
