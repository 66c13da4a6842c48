// An ASCII DXF drawing is a sequence of pairs of lines, a group code and a value:
//
//     0              a pair with code 0 begins something: a section, an entity, the vertex of a polyline
//     LWPOLYLINE
//     90             the other pairs describe it: 10 and 20 are X and Y, 11 and 21 the second X and Y,
//     4              70 flags, 90 a number of vertices, 1 a text; which mean something depends on the entity
//
// A file begins with the section HEADER, and only entities of the section ENTITIES are read. There are no attributes:
// points and objects are named by the texts that lie nearest.
//
// The functions stand in the order in which the data travels: pair, text, entity; the passes have a file of their own.

#include "mapimport_dxf.h"

#include <QRegularExpression>
#include <QTextCodec>

namespace {

/// The first digit of a code that has one only.
constexpr unsigned noTens = 10;

/// The number that a digit stands for; of other characters more than 9.
constexpr unsigned digitOf(QChar c)
{
    return c.unicode() - unsigned{u'0'};
}

constexpr unsigned bit(int group)
{
    return 1U << static_cast<unsigned>(group);
}

constexpr bool hasAll(unsigned groups, unsigned wanted)
{
    return (groups & wanted) == wanted;
}

/// \a text with \a sign for each \a code. QString::replace() moves the rest of a long text over and over.
QString replaced(const QString &text, QLatin1String code, QChar sign)
{
    QString result;
    int begin = 0;
    for (int at = text.indexOf(code); at >= 0; at = text.indexOf(code, begin)) {
        result += text.midRef(begin, at - begin);
        result += sign;
        begin = at + code.size();
    }
    return begin == 0 ? text : result + text.midRef(begin);
}

} // namespace

// A code is what is written: 010 is not 10. The table has a row for the codes with each first of two digits, and one
// for those that have a single digit.
DxfImport::Group DxfImport::groupOf(unsigned tens, unsigned ones)
{
    static constexpr std::array<Group, 110> groups = [] {
        std::array<Group, 110> all{};
        for (Group &group : all)
            group = Other;
        all[10] = X;
        all[20] = Y;
        all[11] = X2;
        all[21] = Y2;
        all[70] = Flags;
        all[72] = HorizontalAlignment;
        all[73] = VerticalAlignment;
        all[90] = Count;
        all[noTens * 10 + 0] = Begin;
        all[noTens * 10 + 1] = Text;
        all[noTens * 10 + 2] = Name;
        return all;
    }();
    return tens <= noTens && ones < 10 ? groups[tens * 10 + ones] : Other;
}

// Nearly all programs write a code at the end of three columns. That is told without looking for blanks, of which the
// processor would never know how many come next.
bool DxfImport::readCode()
{
    line = stream.readLineView();
    ++lineNum;
    if (line.size() == 3 && line[0] == QLatin1Char(' ')) {
        const bool alone = line[1] == QLatin1Char(' ');
        const unsigned tens = digitOf(line[1]);
        const unsigned ones = digitOf(line[2]);
        if ((alone || tens < 10) && ones < 10) {
            code = groupOf(alone ? noTens : tens, ones);
            return true;
        }
    }
    line = trimmedLine(line);
    if (line.size() == 1)
        code = groupOf(noTens, digitOf(line[0]));
    else
        code = line.size() == 2 && digitOf(line[0]) < 10 ? groupOf(digitOf(line[0]), digitOf(line[1])) : Other;
    return !line.isEmpty();
}

// A blank line in place of a group code ends the reading, as the end of the file does.
bool DxfImport::readCodeValue()
{
    if (pushedBack) {
        pushedBack = false;
        return true;
    }
    if (!readCode())
        return false;
    line = stream.readLineView();
    ++lineNum;
    value = code != Other ? trimmedLine(line) : line;
    return true;
}

// Nothing takes a pair back, so it may be asked for after its line is gone.
void DxfImport::pushBack()
{
    pushedBack = true;
    pushedBackValue.setUnicode(value.data(), static_cast<int>(value.size())); // into the same memory each time
    value = pushedBackValue;
}

bool DxfImport::checkDxfFile()
{
    const bool ok = readCodeValue() && code == Begin && value == QLatin1String("SECTION") && readCodeValue() &&
                    code == Name && value == QLatin1String("HEADER");
    return ok || failWithFileName(QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF"));
}

// Replaces the codes of special characters and of single bytes; all other formatting stays as it is written.
QString DxfImport::decodeText(const QString &s) const
{
    static const QRegularExpression re(QStringLiteral("%%(\\d{3})"));
    if (!s.contains(QLatin1String("%%")))
        return s;
    QString text = replaced(s, QLatin1String("%%d"), QChar(0xB0));
    text = replaced(text, QLatin1String("%%p"), QChar(0xB1));
    text = replaced(text, QLatin1String("%%c"), QChar(0xD8));

    QString decoded = QStringLiteral("");
    int end = 0;
    for (QRegularExpressionMatchIterator it = re.globalMatch(text); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const int byte = match.captured(1).toInt();
        decoded += text.midRef(end, match.capturedStart() - end);
        decoded += byte <= 255 ? codec->toUnicode(QByteArray(1, static_cast<char>(byte))) : match.captured();
        end = match.capturedEnd();
    }
    return end == 0 ? text : decoded + text.midRef(end);
}

// Reads on until there are the first count coordinates, if need be into the entities that follow.
bool DxfImport::readCoordinates(Coordinates &coordinates, int count)
{
    unsigned missing = bit(count) - 1;
    while (missing != 0) {
        if (stream.atEnd() || !readCodeValue())
            return false;
        if (code >= count)
            continue;
        bool ok = false;
        coordinates.at(code) = toDouble(value, ok);
        if (!ok)
            return false;
        missing &= ~bit(code);
    }
    return true;
}

bool DxfImport::readPoint()
{
    Coordinates at{};
    if (!readCoordinates(at, 2))
        return false;
    points.append(DefPoint{QString(), at[X], at[Y]});
    return true;
}

bool DxfImport::readVertex()
{
    Coordinates at{};
    if (!readCoordinates(at, 2))
        return false;
    appendVert(at[X], at[Y], false);
    return true;
}

bool DxfImport::readLine()
{
    Coordinates at{};
    if (!readCoordinates(at, 4))
        return false;
    appendEmptyPolygon();
    appendEmptyContour();
    appendVert(at[X], at[Y], false);
    appendVert(at[X2], at[Y2], false);
    return true;
}

// The vertices of a POLYLINE up to its SEQEND. The flag closes it only when it is 1 and nothing else; the groups that
// follow the coordinates of a VERTEX are looked at alike.
bool DxfImport::readVertices(bool &closed)
{
    while (!stream.atEnd() && readCodeValue()) {
        if (code == Begin) {
            if (value == QLatin1String("SEQEND"))
                return true;
            if (value != QLatin1String("VERTEX") || !readVertex())
                return false;
        } else if (code == Flags && value == QLatin1String("1")) {
            closed = true;
        }
    }
    return false;
}

bool DxfImport::readPolyline()
{
    bool closed = false;
    appendEmptyPolygon();
    appendEmptyContour();
    return readVertices(closed) && finishContour(closed);
}

// The vertices of an LWPOLYLINE, as many as it declares before the first; its flag closes it when bit 0 is set.
bool DxfImport::readLwVertices(bool &closed)
{
    Coordinates at{};
    unsigned missing = bit(X) | bit(Y);
    bool first = true;
    bool ok = true;
    qint64 count = 0; // wide enough to be counted down however often the file changes it
    while (ok && !stream.atEnd() && readCodeValue()) {
        if (code == Begin)
            return false;
        if (code == Flags) {
            bool isNumber = false;
            closed = (toInt(value, isNumber) & 1) != 0;
        } else if (code == Count) {
            const int announced = toInt(value, ok);
            reserveVerts(announced);
            count = announced;
        } else if (code == X || code == Y) {
            at.at(code) = toDouble(value, ok);
            missing &= ~bit(code);
        }
        if (!ok || missing != 0)
            continue;
        if (first && count <= 1)
            return false;
        first = false;
        appendVert(at[X], at[Y], false);
        if (--count == 0)
            return true;
        missing = bit(X) | bit(Y);
    }
    return false;
}

bool DxfImport::readLwpolyline()
{
    bool closed = false;
    appendEmptyPolygon();
    appendEmptyContour();
    return readLwVertices(closed) && finishContour(closed);
}

// A ring ends with a copy of its first vertex, unless it is drawn so already.
bool DxfImport::finishContour(bool closed)
{
    QVector<DefPoint> &contour = objects->last().contours.last();
    if (contour.size() < 2)
        return false;
    if (closed && !(contour.first() == contour.last()))
        contour.append(contour.first());
    return true;
}

void DxfImport::takeTextGroup(TextGroups &groups) const
{
    bool ok = false;
    if (code <= Y2)
        groups.at.at(code) = toDouble(value, ok);
    else if (code == Text)
        groups.text = value.toString();
    else if (code == HorizontalAlignment || code == VerticalAlignment)
        groups.alignment[code - HorizontalAlignment] = toInt(value, ok);
    groups.present |= bit(code);
    groups.numbers = ok ? groups.numbers | bit(code) : groups.numbers & ~bit(code);
}

// The groups of a TEXT up to the next pair with code 0, which is left for the caller.
bool DxfImport::readTextGroups(TextGroups &groups)
{
    while (!stream.atEnd()) {
        if (!readCodeValue())
            return false;
        if (code == Begin) {
            pushBack();
            break;
        }
        takeTextGroup(groups);
    }
    return true;
}

// A text with an alignment other than left on the baseline is placed by its second point, when it has one.
bool DxfImport::readText()
{
    constexpr unsigned firstPoint = bit(X) | bit(Y);
    constexpr unsigned secondPoint = bit(X2) | bit(Y2);
    TextGroups groups;
    if (!readTextGroups(groups) || !hasAll(groups.present, firstPoint | bit(Text)) ||
        !hasAll(groups.numbers, firstPoint))
        return false;
    const bool aligned = groups.alignment[0] != 0 || groups.alignment[1] != 0;
    const bool second = aligned && hasAll(groups.present, secondPoint);
    if (second && !hasAll(groups.numbers, secondPoint))
        return false;
    texts.append(DefPoint{decodeText(groups.text), groups.at[second ? X2 : X], groups.at[second ? Y2 : Y]});
    return true;
}
