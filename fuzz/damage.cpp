#include "damage.h"

#include <QList>

#include <array>

namespace {

int below(QRandomGenerator &random, int limit)
{
    return random.bounded(qMax(limit, 1));
}

/// A stretch of \a bytes, mostly short.
struct Stretch
{
    Stretch(const QByteArray &bytes, QRandomGenerator &random)
        : begin(below(random, bytes.size())),
          length(below(random, random.bounded(10) == 0 ? bytes.size() - begin : qMin(200, bytes.size() - begin)))
    {
    }

    int begin;
    int length;
};

void truncate(QByteArray &bytes, const QByteArray & /*other*/, QRandomGenerator &random)
{
    bytes.truncate(below(random, bytes.size()));
}

void changeByte(QByteArray &bytes, const QByteArray & /*other*/, QRandomGenerator &random)
{
    if (!bytes.isEmpty())
        bytes[below(random, bytes.size())] = static_cast<char>(random.bounded(256));
}

void removeStretch(QByteArray &bytes, const QByteArray & /*other*/, QRandomGenerator &random)
{
    const Stretch stretch(bytes, random);
    bytes.remove(stretch.begin, stretch.length);
}

void insertStretch(QByteArray &bytes, const QByteArray &other, QRandomGenerator &random)
{
    const Stretch stretch(other, random);
    bytes.insert(below(random, bytes.size()), other.mid(stretch.begin, stretch.length));
}

void repeatStretch(QByteArray &bytes, const QByteArray & /*other*/, QRandomGenerator &random)
{
    const Stretch stretch(bytes, random);
    bytes.insert(stretch.begin, bytes.mid(stretch.begin, stretch.length).repeated(1 + random.bounded(20)));
}

void removeLine(QByteArray &bytes, const QByteArray & /*other*/, QRandomGenerator &random)
{
    const int begin = bytes.indexOf('\n', below(random, bytes.size())) + 1;
    const int end = bytes.indexOf('\n', begin) + 1;
    if (end > begin)
        bytes.remove(begin, end - begin);
}

/// Replaces a line, which in a drawing is a code or a value and in a map often a vertex or a count.
void replaceLine(QByteArray &bytes, const QByteArray & /*other*/, QRandomGenerator &random)
{
    static const QList<QByteArray> lines{
        "",
        "0",
        "-1",
        "1",
        "2147483647",
        "-2147483648",
        "99999999999999999999",
        "1e308",
        "-1e308",
        "nan",
        "inf",
        "1e-320",
        "10 10",
        "0 0",
        "1e300 1e300",
        "nan nan",
        "SECTION",
        "ENDSEC",
        "EOF",
        "SEQEND",
        "POLYLINE",
        "LWPOLYLINE",
        "SPLINE",
        "HATCH",
        "INSERT",
        "BLOCK",
        "ELLIPSE",
        "MTEXT",
        "90",
        "70",
        "10",
        "42",
        "40",
        "72",
        "999",
        "Region 1",
        "Region 99999999",
        "Pline 2",
        "Pline Multiple 3",
        "Collection 9",
        "\"",
        "\"a\",\"b",
        "\xff\xfe",
        "{\\H1;\\P",
        "%%300",
    };
    const int begin = bytes.indexOf('\n', below(random, bytes.size())) + 1;
    const int end = bytes.indexOf('\n', begin);
    if (end >= begin)
        bytes.replace(begin, end - begin, lines.at(random.bounded(lines.size())));
}

void changeDigit(QByteArray &bytes, const QByteArray & /*other*/, QRandomGenerator &random)
{
    for (int i = below(random, bytes.size()); i < bytes.size(); ++i) {
        if (bytes.at(i) < '0' || bytes.at(i) > '9')
            continue;
        bytes[i] = "0123456789.-eE"[random.bounded(14)];
        return;
    }
}

using Damage = void (*)(QByteArray &bytes, const QByteArray &other, QRandomGenerator &random);

constexpr std::array<Damage, 10> damages{truncate,   changeByte,  removeStretch, insertStretch, repeatStretch,
                                         removeLine, replaceLine, replaceLine,   changeDigit,   changeDigit};

} // namespace

QByteArray damaged(QByteArray bytes, const QByteArray &other, QRandomGenerator &random)
{
    for (int i = random.bounded(4); i >= 0; --i)
        damages.at(random.bounded(static_cast<quint32>(damages.size())))(bytes, other, random);
    return bytes;
}
