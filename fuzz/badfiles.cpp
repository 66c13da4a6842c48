// Checks and converts damaged files until the time is up: badfiles SECONDS FOLDER EXAMPLE...
//
// The examples are MIF and DXF files. Each run takes one of them, or one of the files below, which have what the
// examples lack, and damages it: truncated, with changed bytes, numbers and lines, or with a piece of another file. The
// files of the last run stay in FOLDER. A run that takes too long ends the program by SIGALRM.

#include "checkcommand.h"
#include "convert.h"
#include "damage.h"
#include "require.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <unistd.h>

#include <array>

namespace {

constexpr unsigned secondsPerRun = 30;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A file with its MID file.
struct Sample
{
    bool isDrawing = false;
    QByteArray text;
    QByteArray records;
};

/// All kinds of entities that are neither points, texts nor lines.
Sample drawingOfCurves()
{
    const QByteArray text(
        "0 SECTION 2 HEADER 9 $ACADVER 1 AC1015 0 ENDSEC 0 SECTION 2 BLOCKS 0 BLOCK 2 B 70 0 10 1 20 1 "
        "0 LINE 10 0 20 0 11 5 21 5 0 ATTDEF 10 0 20 0 1 t 2 T 70 0 0 ENDBLK 0 ENDSEC 0 SECTION 2 ENTITIES "
        "0 INSERT 66 1 2 B 10 9 20 9 41 2 42 -3 50 30 70 3 71 2 44 8 45 8 0 ATTRIB 10 9 20 9 1 a 2 T 0 SEQEND "
        "0 SPLINE 70 8 71 3 72 8 73 4 74 0 40 0 40 0 40 0 40 0 40 1 40 1 40 1 40 1 "
        "10 0 20 0 10 5 20 9 10 9 20 -9 10 12 20 0 "
        "0 ELLIPSE 10 5 20 5 11 4 21 1 40 0.5 41 0 42 6.28 0 ARC 10 1 20 1 40 3 50 10 51 200 "
        "0 CIRCLE 10 50 20 50 40 9 210 0 220 0 230 -1 "
        "0 HATCH 91 1 92 2 72 1 73 1 93 3 10 0 20 0 42 0.5 10 9 20 0 10 9 20 9 97 0 "
        "0 POLYLINE 66 1 70 16 71 2 72 2 0 VERTEX 10 0 20 0 0 VERTEX 10 0 20 1 0 VERTEX 10 1 20 0 "
        "0 VERTEX 10 1 20 1 0 SEQEND 0 3DFACE 10 0 20 0 11 1 21 0 12 1 22 1 13 0 23 1 "
        "0 MTEXT 10 3 20 3 1 {\\H2;m}\\Pn 0 DIMENSION 2 B 10 1 20 1 0 SOLID 10 0 20 0 11 1 21 0 12 0 22 1 "
        "0 LEADER 76 2 10 0 20 0 10 4 20 4 0 3DSOLID 1 x 0 LWPOLYLINE 90 3 70 1 10 0 20 0 42 1 10 8 20 0 "
        "42 -0.3 10 8 20 8 0 ENDSEC 0 EOF ");
    return {true, QByteArray(text).replace(' ', '\n'), {}};
}

/// All kinds of objects, and odd but valid forms of them.
Sample mapOfKinds()
{
    return {
        false,
        "Version 300\nCharset \"WindowsCyrillic\"\nDelimiter \",\"\nCoordSys Earth Projection 1, 104\nColumns 2\n"
        "  A Char(9)\n  B Integer\nData\n\nPoint 1 2\nLine 0 0 5 5\nPline\n3\n0 0\n1 1\n2 0\nPline Multiple 2\n  2\n"
        "0 0\n1 1\n  2\n2 2\n3 3\nRegion 2\n  4\n0 0\n9 0\n9 9\n0 0\n  3\n1 1\n2 1\n2 2\nArc 0 0 9 9\n0 90\n"
        "Text \"t\"\n0 0 5 5\nRect 0 0 5 5\nRoundrect 0 0 5 5 1\nEllipse 0 0 5 5\nMultipoint 2\n1 1\n2 2\n"
        "Collection 2\nRegion 1\n  3\n0 0\n9 0\n9 9\nPline 2\n0 0\n1 1\nNone\n",
        "\"1\",1\n\"2\",2\n,3\n\"4\",4\n\n\"6\",6\n7,7\n8,8\n9,9\n10,10\n11,11\n12,12\n13,13\n"};
}

/// Groups of two bytes, texts that end in a zero, and coordinates of eight bytes: a line from 5, 5 to 5, 5.
Sample binaryDrawing()
{
    QByteArray text("AutoCAD Binary DXF\r\n\x1a");
    const auto add = [&text](char code, const QByteArray &value) {
        const std::array<char, 2> group{code, '\0'};
        text += QByteArray(group.data(), 2) + value;
    };
    const auto addText = [&add](char code, const char *value) { add(code, QByteArray(value) + '\0'); };
    text += '\0';
    addText(0, "SECTION");
    addText(2, "HEADER");
    addText(0, "ENDSEC");
    addText(0, "SECTION");
    addText(2, "ENTITIES");
    addText(0, "LINE");
    for (const char code : {'\x0a', '\x14', '\x0b', '\x15'})
        add(code, QByteArray("\0\0\0\0\0\0\x14\x40", sizeof(double)));
    addText(0, "ENDSEC");
    addText(0, "EOF");
    return {true, text, {}};
}

QVector<Sample> samplesFrom(const QStringList &paths)
{
    QVector<Sample> samples{drawingOfCurves(), mapOfKinds(), binaryDrawing()};
    for (const QString &path : paths) {
        const QString recordPath = path.left(path.size() - 1) + QLatin1Char('d');
        samples.append({path.endsWith(QLatin1String(".dxf")), contentOf(path), contentOf(recordPath)});
        require(!samples.last().text.isEmpty(), "every example can be read");
    }
    return samples;
}

/// Damages samples in a folder, and checks and converts the result.
class BadFiles
{
public:
    BadFiles(const QString &folder, const QVector<Sample> &samples) : m_folder(folder), m_samples(samples) {}

    void run();

private:
    const Sample &sample() { return m_samples.at(m_random.bounded(m_samples.size())); }
    bool chance(int percent) { return m_random.bounded(100) < percent; }
    void write(const QString &name, const QByteArray &bytes);
    QStringList checkOptions();
    QStringList convertOptions();

    const QDir m_folder;
    const QVector<Sample> m_samples;
    QRandomGenerator m_random = QRandomGenerator::securelySeeded();
};

void BadFiles::write(const QString &name, const QByteArray &bytes)
{
    QFile file(m_folder.filePath(name));
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "the file can be written");
}

QStringList BadFiles::checkOptions()
{
    QStringList options{QStringLiteral("--html"), m_folder.filePath(QStringLiteral("page.html"))};
    if (chance(50))
        options << QStringLiteral("--encoding") << QStringLiteral("UTF-8");
    if (chance(20))
        options << QStringLiteral("--no-search-points");
    if (chance(20))
        options << QStringLiteral("--no-search-objects");
    return options;
}

QStringList BadFiles::convertOptions()
{
    QStringList options{QStringLiteral("--force")};
    if (chance(20))
        options << QStringLiteral("--crs") << QStringLiteral("EPSG:28407");
    if (chance(20))
        options << QStringLiteral("--source-encoding") << QStringLiteral("IBM866");
    if (chance(20))
        options << QStringLiteral("--swap-xy");
    if (chance(20))
        options << QStringLiteral("--symbols") << QStringLiteral("objects");
    return options;
}

void BadFiles::run()
{
    alarm(secondsPerRun);
    const Sample &whole = sample();
    const QString name = whole.isDrawing ? QStringLiteral("plan.dxf") : QStringLiteral("plan.mif");
    QDir(m_folder).remove(QStringLiteral("plan.mid"));
    write(name, damaged(whole.text, sample().text, m_random));
    if (!whole.isDrawing && chance(95))
        write(QStringLiteral("plan.mid"), chance(50) ? whole.records : damaged(whole.records, whole.text, m_random));
    const QStringList before = m_folder.entryList(QDir::Files);

    const QString path = m_folder.filePath(name);
    const int status = runCheck(checkOptions() << path);
    require(status == 0 || status == 1, "a damaged file is checked");
    const QString output = m_folder.filePath(QStringLiteral("out.mif"));
    if (runConvert(convertOptions() << path << output) == 0) {
        require(runCheck({QStringLiteral("--json"), QStringLiteral("--encoding"), QStringLiteral("Windows-1251"),
                          output}) <= 1,
                "a converted file is checked");
    }
    for (const QString &written : {QStringLiteral("out.mif"), QStringLiteral("out.mid"), QStringLiteral("page.html")})
        QDir(m_folder).remove(written);
    require(m_folder.entryList(QDir::Files) == before, "nothing is left behind");
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    require(arguments.size() > 3, "usage: badfiles SECONDS FOLDER EXAMPLE...");
    BadFiles files(arguments.at(2), samplesFrom(arguments.mid(3)));
    QElapsedTimer timer;
    timer.start();
    int count = 0;
    for (; timer.elapsed() < 1000 * arguments.at(1).toLongLong(); ++count)
        files.run();
    std::fprintf(stderr, "%d files\n", count);
    return 0;
}
