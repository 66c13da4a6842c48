#include "filegenerator.h"

#include <QTextCodec>

#include <cmath>

GeneratedRun FileGenerator::run(const RunKind &kind)
{
    GeneratedRun run;
    run.options.dxf = kind.dxf;
    run.options.searchPointDefs = kind.searchPointDefs;
    run.options.searchObjectDefs = kind.searchObjectDefs;
    setStyles();
    setOptions(run.options);

    const QString end = kind.dxf ? QStringLiteral(".dxf") : oneOf({QStringLiteral(".mif"), QStringLiteral(".MIF")});
    run.options.objectFileName = QStringLiteral("objects") + end;
    if (kind.ownPointFile)
        run.options.pointFileName = chance(4) ? run.options.objectFileName : QStringLiteral("points") + end;
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

void FileGenerator::setStyles()
{
    const bool large = chance(5);
    m_grid = large && chance(70) ? 4 + below(4) : below(8);
    m_offset = chance(20) ? 1e6 * below(8) : 0;
    m_size = large ? 60 + below(300) : 1 + below(12);
    m_oddPercent = !large && chance(20) ? 3 : 0;
    m_extremePercent = chance(15) ? 4 : 0;
    m_pointPercent = chance(20) ? 0 : 25;
    m_textPercent = chance(15) ? 65 : 27;
    m_slipPercent = large ? 5 : 30;
    m_lineEnd = chance(30) ? QStringLiteral("\r\n") : QStringLiteral("\n");
    m_fileCodec = oneOf({QStringLiteral("UTF-8"), QStringLiteral("UTF-8"), QStringLiteral("Windows-1251"),
                         QStringLiteral("Windows-1251"), QStringLiteral("IBM866"), QStringLiteral("UTF-16"),
                         QStringLiteral("KOI8-R"), QStringLiteral("GB18030"), QStringLiteral("UTF-16BE"),
                         QStringLiteral("UTF-32"), QStringLiteral("ISO-2022-JP"), QStringLiteral("Shift_JIS")})
                      .toLatin1();
}

void FileGenerator::setOptions(ImportOptions &options)
{
    const QStringList prefixes{QString(),
                               QStringLiteral("н"),
                               QStringLiteral("ЗУ"),
                               QStringLiteral("%1"),
                               QStringLiteral("%1-%2"),
                               QStringLiteral("50:01 "),
                               QStringLiteral("%")};
    options.swapXY = chance(25);
    options.pointPref = oneOf(prefixes);
    options.pointStartNum = below(20) - 3;
    options.objectPref = oneOf(prefixes);
    options.objectStartNum = below(20) - 3;
    options.encoding = m_fileCodec;
    if (chance(10))
        options.encoding = oneOf({QString(), QStringLiteral("no such"), QStringLiteral("Windows-1251"),
                                  QStringLiteral("UTF-8"), QStringLiteral("UTF-16LE"), QStringLiteral("ISO-8859-1"),
                                  QStringLiteral("EUC-JP"), QStringLiteral("Big5"), QStringLiteral("UTF-32LE"),
                                  QStringLiteral("ISO-2022-JP"), QStringLiteral("IBM866")})
                               .toLatin1();
}

// Steps of 1/128 and 1/64 are exact in binary and smaller than the tolerance or a little larger: they give true ties.
double FileGenerator::coordinate()
{
    switch (m_grid) {
    case 0:
        return m_offset + below(8);
    case 1:
        return m_offset + below(16) / 128.0;
    case 2:
        return m_offset + below(12) / 64.0;
    case 3:
        return m_offset + below(60) / 100.0;
    case 4:
        return m_offset + m_random.bounded(1000.0);
    case 5:
        return m_offset + std::round(m_random.bounded(100.0) * 100) / 100;
    case 6:
        return m_offset + below(2048) / 128.0;
    default:
        return m_offset + below(40) * 0.5 - 10;
    }
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

FileGenerator::Place FileGenerator::place()
{
    static const double near[] = {0.005, 0.01, 0.0101, 0.00999, 1.0 / 128, 1.0 / 64, 0.02, 0.0100000001};
    const int kind = m_places.isEmpty() ? 100 : below(100);
    Place at = kind < 65 ? m_places[below(m_places.size())] : freshPlace();
    if (kind < 20) {
        const double stepX = near[below(8)];
        const double stepY = near[below(8)];
        at.first += stepX * (below(3) - 1);
        at.second += stepY * (below(3) - 1);
    }
    m_places.append(at);
    return at;
}

// Known points and texts at exactly one place have no order once they are sorted, so they are mostly kept apart.
FileGenerator::Place FileGenerator::placeOfItsOwn()
{
    if (below(400) == 0 && !m_taken.isEmpty())
        return m_taken[below(m_taken.size())];
    for (int attempt = 0; attempt < 8; ++attempt) {
        const Place at = chance(70) ? place() : freshPlace();
        if (m_taken.contains(at))
            continue;
        m_taken.append(at);
        return at;
    }
    const Place at(m_offset + m_taken.size() * 0.0137, coordinate());
    m_taken.append(at);
    return at;
}

QString FileGenerator::oddNumber()
{
    return oneOf({QStringLiteral("nan"),
                  QStringLiteral("inf"),
                  QStringLiteral("-inf"),
                  QStringLiteral("1e308"),
                  QStringLiteral("-1e200"),
                  QStringLiteral("1e-320"),
                  QStringLiteral("1e400"),
                  QStringLiteral("1,5"),
                  QStringLiteral("-0.0"),
                  QStringLiteral("+2.5"),
                  QStringLiteral(".5"),
                  QStringLiteral("5."),
                  QStringLiteral("1e"),
                  QStringLiteral("0x10"),
                  QStringLiteral("--1"),
                  QStringLiteral("-"),
                  QStringLiteral("1.5.2"),
                  QStringLiteral("1_0"),
                  QStringLiteral("٣"),
                  QStringLiteral("１"),
                  QStringLiteral("1.5E+01"),
                  QStringLiteral("abc"),
                  QStringLiteral("1d2"),
                  QStringLiteral("NaN"),
                  QStringLiteral("Inf"),
                  QStringLiteral("1e+"),
                  QStringLiteral("1.0f"),
                  QStringLiteral("e5"),
                  QStringLiteral("0.1000000000000000055511151231257827"),
                  QStringLiteral("infinity"),
                  QStringLiteral("123456789012345678901234567890.5"),
                  QStringLiteral("00012.50"),
                  QStringLiteral("9007199254740993"),
                  QStringLiteral("1e0000000001")});
}

QString FileGenerator::extremeNumber()
{
    return oneOf({QStringLiteral("nan"), QStringLiteral("inf"), QStringLiteral("-inf"), QStringLiteral("1e308"),
                  QStringLiteral("1.7976931348623157e308"), QStringLiteral("-1e200"), QStringLiteral("1e154"),
                  QStringLiteral("-1.4e154"), QStringLiteral("1e16"), QStringLiteral("1e-320"), QStringLiteral("-0.0"),
                  QStringLiteral("1e-170")});
}

QString FileGenerator::number(double value)
{
    if (m_extremePercent > 0 && chance(m_extremePercent))
        return extremeNumber();
    if (m_oddPercent > 0 && chance(m_oddPercent))
        return oddNumber();
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
    if (!chance(m_slipPercent) || !chance(3))
        return QString::number(value);
    return oneOf({QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("-1"), QStringLiteral("+4"),
                  QStringLiteral("04"), QStringLiteral("2147483647"), QStringLiteral("4294967299"),
                  QStringLiteral("4.0"), QStringLiteral("abc"), QString::number(value + 1), QString::number(value - 1),
                  QStringLiteral("0x4"), QStringLiteral("٤")});
}

QString FileGenerator::def()
{
    const QString num = QString::number(1 + below(99));
    switch (below(12)) {
    case 0:
        return QStringLiteral("ЗУ") + num;
    case 1:
        return QStringLiteral(":ЗУ") + num;
    case 2:
        return num + QStringLiteral("а");
    case 3:
        return QStringLiteral("50:01:0000000:") + num;
    case 4:
        return QStringLiteral("Участок ") + num;
    case 5:
        return QStringLiteral("ё") + num;
    case 6:
        return chance(50) ? QString() : QStringLiteral("N %1").arg(num);
    default:
        return chance(50) ? num : QStringLiteral("н") + num;
    }
}

// A line about as long as what a reader takes from a file at a time, so that the next lines lie across its ends.
QString FileGenerator::padding()
{
    const QString unit = chance(50) ? QStringLiteral("x") : QStringLiteral("ж");
    const int size = chance(50) ? 16384 : 8192;
    return unit.repeated(size - below(300));
}

// Lengthens the line \a at until the first piece of the file ends about where the line \a end begins.
void FileGenerator::stretch(QStringList &lines, int at, int end)
{
    const QTextCodec *const codec = QTextCodec::codecForName(m_fileCodec);
    const auto size = [codec](const QString &text) {
        QTextCodec::ConverterState noHeader(QTextCodec::IgnoreHeader);
        return codec->fromUnicode(text.constData(), text.size(), &noHeader).size();
    };
    const QString before = QStringList(lines.mid(0, end)).join(m_lineEnd) + m_lineEnd;
    const int missing = (16384 - size(before)) / size(QStringLiteral("x")) + below(3) - 1;
    if (missing > 0)
        lines[at] += QString(missing, QLatin1Char('x'));
}

QByteArray FileGenerator::encoded(const QStringList &lines)
{
    QString text = lines.join(m_lineEnd);
    if (chance(85))
        text += m_lineEnd;
    const QTextCodec *const codec = QTextCodec::codecForName(m_fileCodec);
    QTextCodec::ConverterState state(chance(90) ? QTextCodec::DefaultConversion : QTextCodec::IgnoreHeader);
    QByteArray bytes = codec->fromUnicode(text.constData(), text.size(), &state);
    if (m_fileCodec == "UTF-8" && chance(10))
        bytes.prepend("\xEF\xBB\xBF");
    spoilBytes(bytes);
    return bytes;
}

void FileGenerator::spoilBytes(QByteArray &bytes)
{
    static const char *const odd[] = {"\r",       "\n",       "\t",     "\v",           "\f",  "\x1a",   "\xff",
                                      "\xd0",     "\x85",     " ",      "\"",           "0",   "\r\r\n", "\xe2\x80\xa8",
                                      "\xc2\xa0", "\xc2\x85", "\x1b$B", "\xef\xbb\xbf", "\n\r"};
    if (chance(m_slipPercent) && chance(8) && !bytes.isEmpty())
        bytes.truncate(below(bytes.size()));
    if (!chance(m_slipPercent) || !chance(25))
        return;
    for (int slips = 1 + below(3); slips > 0 && !bytes.isEmpty(); --slips) {
        const int at = chance(70) ? below(bytes.size()) : qMin(bytes.size(), 16384) - below(3);
        if (chance(20))
            bytes.insert(qMax(at, 0), '\0');
        else
            bytes.insert(qMax(at, 0), odd[below(19)]);
    }
}
