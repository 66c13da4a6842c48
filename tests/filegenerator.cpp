#include "filegenerator.h"

#include <QTextCodec>

#include <cmath>

namespace {

// Number of bytes that QTextStream and the importers decode at a time.
constexpr int chunkSize = 16384;

} // namespace

GeneratedRun FileGenerator::run(const RunKind &kind)
{
    GeneratedRun run;
    run.options.dxf = kind.dxf;
    run.options.searchPointDefs = kind.searchPointDefs;
    run.options.searchObjectDefs = kind.searchObjectDefs;
    setStyle();
    setOptions(run.options);

    const QString extension = kind.dxf ? QStringLiteral(".dxf") : oneOf(".mif/.MIF");
    run.options.objectFileName = QStringLiteral("objects") + extension;
    if (kind.ownPointFile)
        run.options.pointFileName = chance(4) ? run.options.objectFileName : QStringLiteral("points") + extension;
    for (const QString &name : {run.options.pointFileName, run.options.objectFileName}) {
        if (name.isEmpty() || below(200) == 0)
            continue;
        if (kind.dxf)
            addDxf(run, name);
        else
            addMif(run, name);
    }
    return run;
}

void FileGenerator::setStyle()
{
    const bool large = chance(5);
    m_grid = large && chance(70) ? 4 + below(4) : below(8);
    m_offset = chance(20) ? 1e6 * below(8) : 0;
    m_size = large ? 60 + below(300) : 1 + below(12);
    m_unusualPercent = !large && chance(20) ? 3 : 0;
    m_extremePercent = chance(15) ? 4 : 0;
    m_pointPercent = chance(20) ? 0 : 25;
    m_textPercent = chance(15) ? 65 : 27;
    m_errorPercent = large ? 5 : 30;
    m_lineEnd = oneOf("\r\n/\n/\n");
    m_codec = oneOf("UTF-8/UTF-8/Windows-1251/Windows-1251/IBM866/UTF-16/KOI8-R/GB18030/UTF-16BE/UTF-32/ISO-2022-JP/"
                    "Shift_JIS")
                  .toLatin1();
}

void FileGenerator::setOptions(ImportOptions &options)
{
    const char *const prefixes = "/н/ЗУ/%1/%1-%2/50:01 /%";
    options.swapXY = chance(25);
    options.pointPref = oneOf(prefixes);
    options.pointStartNum = below(20) - 3;
    options.objectPref = oneOf(prefixes);
    options.objectStartNum = below(20) - 3;
    options.encoding = m_codec;
    if (chance(10))
        options.encoding =
            oneOf("/no such/Windows-1251/UTF-8/UTF-16LE/ISO-8859-1/EUC-JP/Big5/UTF-32LE/ISO-2022-JP/IBM866").toLatin1();
}

// Steps of 1/128 and 1/64, one below and one above the tolerance, are exact in binary and so produce true ties.
double FileGenerator::coordinate()
{
    const double offsets[] = {
        1.0 * below(8),      below(16) / 128.0,        below(12) / 64.0,
        below(60) / 100.0,   m_random.bounded(1000.0), std::round(m_random.bounded(100.0) * 100) / 100,
        below(2048) / 128.0, below(40) * 0.5 - 10,
    };
    return m_offset + offsets[m_grid];
}

FileGenerator::Place FileGenerator::freshPlace()
{
    Place at{coordinate(), coordinate()};
    if (chance(4))
        at.first = m_offset;
    if (chance(2))
        at.second = -0.0;
    return at;
}

// Most places repeat an earlier one, some with a shift about as large as the tolerance.
FileGenerator::Place FileGenerator::place()
{
    static const double shifts[] = {0.005, 0.01, 0.0101, 0.00999, 1.0 / 128, 1.0 / 64, 0.02, 0.0100000001};
    const int kind = m_places.isEmpty() ? 100 : below(100);
    Place at = kind < 65 ? m_places[below(m_places.size())] : freshPlace();
    if (kind < 20) {
        const double shiftX = shifts[below(8)];
        const double shiftY = shifts[below(8)];
        at.first += shiftX * (below(3) - 1);
        at.second += shiftY * (below(3) - 1);
    }
    m_places.append(at);
    return at;
}

// The sort is unstable for points and texts at the same place, so most of them get an unused place.
FileGenerator::Place FileGenerator::unusedPlace()
{
    if (below(400) == 0 && !m_usedPlaces.isEmpty())
        return m_usedPlaces[below(m_usedPlaces.size())];
    Place at = place();
    for (int attempt = 0; attempt < 8 && m_usedPlaces.contains(at); ++attempt)
        at = chance(70) ? place() : freshPlace();
    if (m_usedPlaces.contains(at))
        at = Place(m_offset + m_usedPlaces.size() * 0.0137, coordinate());
    m_usedPlaces.append(at);
    return at;
}

QString FileGenerator::unusualNumber()
{
    return oneOf("nan/inf/-inf/1e308/-1e200/1e-320/1e400/1,5/-0.0/+2.5/.5/5./1e/0x10/--1/-/1.5.2/1_0/٣/１/1.5E+01/abc/"
                 "1d2/NaN/Inf/1e+/1.0f/e5/0.1000000000000000055511151231257827/infinity/"
                 "123456789012345678901234567890.5/00012.50/9007199254740993/1e0000000001");
}

QString FileGenerator::number(double value)
{
    if (chance(m_extremePercent))
        return oneOf("nan/inf/-inf/1e308/1.7976931348623157e308/-1e200/1e154/-1.4e154/1e16/1e-320/-0.0/1e-170");
    if (chance(m_unusualPercent))
        return unusualNumber();
    switch (below(20)) {
    case 0:
        return QString::number(value, 'e', 17);
    case 1:
        return QString::number(value, 'f', 20);
    case 2:
        return QString::number(value, 'f', 2);
    case 3:
        return QStringLiteral("0") + QString::number(std::fabs(value), 'g', 16);
    default:
        return QString::number(value, 'g', 17);
    }
}

QString FileGenerator::count(int value)
{
    if (chance(m_errorPercent) && chance(3))
        value += below(3) - 1;
    else if (chance(m_errorPercent) && chance(3))
        return oneOf("0/1/-1/+4/04/2147483647/4294967299/4.0/abc/0x4/٤");
    return QString::number(value);
}

QString FileGenerator::def()
{
    return oneOf("ЗУ#/:ЗУ#/#а/50:01:0000000:#/Участок #/ё#/N #//#/#/н#/н#")
        .replace(QLatin1Char('#'), QString::number(1 + below(99)));
}

// A line of about half a chunk or a whole one, so that a chunk ends in one of the next lines.
QString FileGenerator::padding()
{
    const int size = chunkSize / (1 + below(2));
    return oneOf("x/ж").repeated(size - below(300));
}

// Pads the line \a at so that the first chunk ends near the beginning of the line \a end.
void FileGenerator::stretch(QStringList &lines, int at, int end)
{
    const QTextCodec *const codec = QTextCodec::codecForName(m_codec);
    const auto size = [codec](const QString &text) {
        QTextCodec::ConverterState noHeader(QTextCodec::IgnoreHeader);
        return codec->fromUnicode(text.constData(), text.size(), &noHeader).size();
    };
    const QString before = QStringList(lines.mid(0, end)).join(m_lineEnd) + m_lineEnd;
    const int missing = (chunkSize - size(before)) / size(QStringLiteral("x")) + below(3) - 1;
    if (missing > 0)
        lines[at] += QString(missing, QLatin1Char('x'));
}

QByteArray FileGenerator::encoded(const QStringList &lines)
{
    QString text = lines.join(m_lineEnd);
    if (chance(85))
        text += m_lineEnd;
    QTextCodec::ConverterState state(chance(90) ? QTextCodec::DefaultConversion : QTextCodec::IgnoreHeader);
    QByteArray bytes = QTextCodec::codecForName(m_codec)->fromUnicode(text.constData(), text.size(), &state);
    if (m_codec == "UTF-8" && chance(10))
        bytes.prepend("\xEF\xBB\xBF");
    corruptBytes(bytes);
    return bytes;
}

void FileGenerator::corruptBytes(QByteArray &bytes)
{
    static const QByteArray insertions[] = {
        "\r", "\n", "\t",     "\v",           "\f",       "\x1a",     "\xff",   "\xd0",         "\x85", " ",
        "\"", "0",  "\r\r\n", "\xe2\x80\xa8", "\xc2\xa0", "\xc2\x85", "\x1b$B", "\xef\xbb\xbf", "\n\r", {1, '\0'}};
    if (chance(m_errorPercent) && chance(8))
        bytes.truncate(below(bytes.size() + 1));
    if (!chance(m_errorPercent) || !chance(25))
        return;
    for (int errors = 1 + below(3); errors > 0 && bytes.size() > 3; --errors) {
        const int at = chance(70) ? below(bytes.size()) : qMin(bytes.size(), chunkSize) - below(3);
        bytes.insert(at, insertions[below(20)]);
    }
}
