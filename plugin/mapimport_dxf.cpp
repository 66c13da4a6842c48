// An ASCII DXF drawing is a sequence of pairs of lines, a group code and a value:
//
//     0              code 0 begins a section, an entity or a vertex of a polyline
//     LWPOLYLINE
//     90             other codes describe it: 10/20 and 11/21 are points, 70 flags, 72/73 the alignment of a text,
//     4              90 a number of vertices, 1 a text, 2 a name; each entity reads only some of them
//
// The first section is HEADER; entities are read only in ENTITIES. There are no attributes: the nearest texts name
// points and objects.
//
// Functions are in data-flow order: pair, text, entity. The passes are in mapimport_dxf_passes.cpp.

#include "mapimport_dxf.h"

#include <QRegularExpression>
#include <QTextCodec>

namespace {

constexpr bool hasAll(unsigned groups, unsigned wanted)
{
    return (groups & wanted) == wanted;
}

/// Key of a trimmed group code of one or two characters; a single one is padded with a space in front.
constexpr uint key(char16_t tens, char16_t ones)
{
    return uint{tens} << 16U | ones;
}

/// Replaces every \a code by \a sign in linear time; QString::replace() is quadratic here.
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

// Codes are compared as text: 010 is not 10.
DxfImport::Group DxfImport::groupOf(QStringView code)
{
    if (code.size() != 1 && code.size() != 2)
        return Other;
    switch (code.size() == 1 ? key(u' ', code[0].unicode()) : key(code[0].unicode(), code[1].unicode())) {
    case key(u' ', u'0'):
        return Begin;
    case key(u' ', u'1'):
        return Text;
    case key(u' ', u'2'):
        return Name;
    case key(u'1', u'0'):
        return X;
    case key(u'2', u'0'):
        return Y;
    case key(u'1', u'1'):
        return X2;
    case key(u'2', u'1'):
        return Y2;
    case key(u'7', u'0'):
        return Flags;
    case key(u'7', u'2'):
        return HorizontalAlignment;
    case key(u'7', u'3'):
        return VerticalAlignment;
    case key(u'9', u'0'):
        return Count;
    default:
        return Other;
    }
}

// Returns false if the line of the group code is blank, and at the end of the file. A blank value is valid.
bool DxfImport::readCodeValue()
{
    if (pushedBack) {
        pushedBack = false;
        return true;
    }
    line = trimmedLine(stream.readLineView());
    ++lineNum;
    code = groupOf(line);
    if (line.isEmpty())
        return false;
    line = stream.readLineView();
    ++lineNum;
    value = trimmedLine(line);
    return true;
}

// A pushed-back pair can outlive the line buffer, so copy it.
void DxfImport::pushBack()
{
    pushedBack = true;
    pushedBackValue.setUnicode(value.data(), static_cast<int>(value.size())); // reuses its memory
    value = pushedBackValue;
}

bool DxfImport::checkDxfFile()
{
    const bool ok = readCodeValue() && code == Begin && value == QLatin1String("SECTION") && readCodeValue() &&
                    code == Name && value == QLatin1String("HEADER");
    return ok || failWithFileName(QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF"));
}

// Expands %%d, %%p, %%c and %%nnn (a byte in the file's encoding). Other formatting codes are kept.
QString DxfImport::decodeText(const QString &s) const
{
    static const QRegularExpression re(QStringLiteral("%%(\\d{3})"));
    if (!s.contains(QLatin1String("%%")))
        return s;
    QString text = replaced(s, QLatin1String("%%d"), QChar(0xB0));
    text = replaced(text, QLatin1String("%%p"), QChar(0xB1));
    text = replaced(text, QLatin1String("%%c"), QChar(0xD8));

    QString decoded = QStringLiteral(""); // empty but not null: the result writes the two differently
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

double *DxfImport::Coordinates::find(Group group)
{
    switch (group) {
    case X:
        return &x;
    case Y:
        return &y;
    case X2:
        return &x2;
    case Y2:
        return &y2;
    default:
        return nullptr;
    }
}

// Reads on until all wanted coordinates are found, even beyond the end of the entity; kept for compatibility.
bool DxfImport::readCoordinates(Coordinates &at, unsigned wanted)
{
    unsigned missing = wanted;
    while (missing != 0) {
        if (stream.atEnd() || !readCodeValue())
            return false;
        if ((code & wanted) == 0)
            continue;
        bool ok = false;
        *at.find(code) = toDouble(value, ok);
        if (!ok)
            return false;
        missing &= ~code;
    }
    return true;
}

bool DxfImport::readPoint()
{
    Coordinates at;
    if (!readCoordinates(at, X | Y))
        return false;
    points.append(DefPoint{QString(), at.x, at.y});
    return true;
}

bool DxfImport::readVertex()
{
    Coordinates at;
    if (!readCoordinates(at, X | Y))
        return false;
    appendVert(at.x, at.y, false);
    return true;
}

bool DxfImport::readLine()
{
    Coordinates at;
    if (!readCoordinates(at, X | Y | X2 | Y2))
        return false;
    appendEmptyPolygon();
    appendEmptyContour();
    appendVert(at.x, at.y, false);
    appendVert(at.x2, at.y2, false);
    return true;
}

// Reads the vertices of a POLYLINE up to SEQEND. Only the flags value 1 closes it, not 9 or 129. Flags after the
// coordinates of a VERTEX count as well.
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

// Reads the vertices of an LWPOLYLINE, whose number must precede them. Bit 0 of the flags closes it.
bool DxfImport::readLwVertices(bool &closed)
{
    Coordinates at;
    unsigned missing = X | Y;
    bool first = true;
    bool ok = true;
    qint64 count = 0; // 64 bits: a repeated code 90 may set -2^31, where --count would overflow an int
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
            *at.find(code) = toDouble(value, ok);
            missing &= ~code;
        }
        if (!ok || missing != 0)
            continue;
        if (first && count <= 1)
            return false;
        first = false;
        appendVert(at.x, at.y, false);
        if (--count == 0)
            return true;
        missing = X | Y;
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

// A closed contour ends with a copy of its first vertex, unless the last vertex already equals it.
bool DxfImport::finishContour(bool closed)
{
    QVector<DefPoint> &contour = objects->last().contours.last();
    if (contour.size() < 2)
        return false;
    if (closed && !(contour.first() == contour.last()))
        contour.append(contour.first());
    return true;
}

void DxfImport::storeTextGroup(TextGroups &groups) const
{
    bool ok = false;
    if (double *const coordinate = groups.position.find(code))
        *coordinate = toDouble(value, ok);
    else if (code == Text)
        groups.text = value.toString();
    else if (code == HorizontalAlignment)
        groups.horizontal = toInt(value, ok);
    else if (code == VerticalAlignment)
        groups.vertical = toInt(value, ok);
    groups.present |= code;
    groups.numeric = ok ? groups.numeric | code : groups.numeric & ~code;
}

// Reads the groups of a TEXT up to the next pair with code 0, which is pushed back.
bool DxfImport::readTextGroups(TextGroups &groups)
{
    while (!stream.atEnd()) {
        if (!readCodeValue())
            return false;
        if (code == Begin) {
            pushBack();
            break;
        }
        storeTextGroup(groups);
    }
    return true;
}

// A text whose alignment is not left/baseline is positioned by its second point, if it has one.
bool DxfImport::readText()
{
    TextGroups groups;
    if (!readTextGroups(groups) || !hasAll(groups.present, X | Y | Text) || !hasAll(groups.numeric, X | Y))
        return false;
    const bool second = groups.isAligned() && hasAll(groups.present, X2 | Y2);
    if (second && !hasAll(groups.numeric, X2 | Y2))
        return false;
    const Coordinates &at = groups.position;
    texts.append(DefPoint{decodeText(groups.text), second ? at.x2 : at.x, second ? at.y2 : at.y});
    return true;
}
