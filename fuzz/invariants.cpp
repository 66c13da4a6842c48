// What holds after every run. The known points and the numbers of the vertices are told again here in the plainest way,
// from the points that the points pass has left.

#include "invariants.h"

#include <QDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

/// With what generated numbers and designations begin. Were it to stand in a file too, the file's designations could
/// not be told from the generated ones.
const char mark[] = "номер-по-порядку ";

QString numbered(const QString &prefix, int num)
{
    return QStringLiteral("%1%2").arg(prefix).arg(num); // NOLINT(*-multi-arg)
}

bool isGenerated(const QString &def)
{
    return def.startsWith(QString::fromUtf8(mark));
}

bool isSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool isSamePlace(const DefPoint &a, const DefPoint &b)
{
    return isSame(a.x, b.x) && isSame(a.y, b.y);
}

bool isSamePoint(const DefPoint &a, const DefPoint &b)
{
    return a.def == b.def && isSamePlace(a, b);
}

bool areSamePoints(const QVector<DefPoint> &a, const QVector<DefPoint> &b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), isSamePoint);
}

bool isSameObject(const DefPolygon &a, const DefPolygon &b)
{
    return a.def == b.def && a.contours.size() == b.contours.size() &&
           std::equal(a.contours.begin(), a.contours.end(), b.contours.begin(), areSamePoints);
}

int countOf(const QStringList &texts, const char *begin)
{
    const QString text = QString::fromUtf8(begin);
    return static_cast<int>(
        std::count_if(texts.begin(), texts.end(), [&](const QString &t) { return t.startsWith(text); }));
}

// A collection is told of, and ends its pass well.
void checkMifPass(const Pass &pass)
{
    const int collections = countOf(pass.messages, "Ошибка в стоке ");
    require(collections == 0 || pass.ok, "a collection does not fail a pass");
    require(pass.messages.size() == (pass.ok ? collections : 1) && collections <= 1,
            "a failed MIF pass sends one message, and a good one none but that of a collection");
}

// A texts pass within the objects pass sends a message of its own and fails nothing.
void checkDxfPass(const Pass &pass, bool hasTextsPass)
{
    const int failures = pass.ok ? 0 : 1;
    const int count = pass.messages.size();
    require(count == failures || (hasTextsPass && count == failures + 1),
            "a failed DXF pass sends one message, and a good one none");
    require(countOf(pass.messages, "Ошибка. Файл ") == 0 || (count == 1 && !pass.ok),
            "nothing is read after a bad beginning");
    require(countOf(pass.messages, "Ошибка. Файл ") + countOf(pass.messages, "Ошибка чтения DXF файла в строке: ") ==
                count,
            "a DXF pass has two messages");
}

void checkPasses(const Options &options, const Run &run, Format format)
{
    const bool hasTextsPass = options.searchObjectDefs && !(options.searchPointDefs && options.pointFileName.isEmpty());
    for (const Pass *pass : {&run.pointPass, &run.objectPass}) {
        if (pass->ran && format == Format::Mif)
            checkMifPass(*pass);
        else if (pass->ran)
            checkDxfPass(*pass, hasTextsPass && pass == &run.objectPass);
    }
    const int missing = countOf(run.messages, "Ошибка открытия файла ");
    require(run.messages.size() == run.pointPass.messages.size() + run.objectPass.messages.size() + missing,
            "only passes and missing files send messages");
    require(run.ok == ((!run.pointPass.ran || run.pointPass.ok) && (!run.objectPass.ran || run.objectPass.ok)),
            "a run fails with a pass");
    require(!run.pointPass.ran || options.searchPointDefs, "a points pass has been asked for");
    require(!run.objectPass.ran || !run.pointPass.ran || run.pointPass.ok, "no objects are read after a failed pass");
    require(run.objectPass.ran || run.objects.isEmpty(), "only the objects pass makes objects");
}

// The points that were read, sorted, without those that are equal to the last one kept.
void checkStart(const Run &run)
{
    QVector<DefPoint> sorted = run.read;
    std::stable_sort(sorted.begin(), sorted.end(), lessNanLast);
    QVector<DefPoint> kept;
    for (const DefPoint &point : qAsConst(sorted)) {
        if (kept.isEmpty() || !(kept.last() == point))
            kept.append(point);
    }
    require(kept.size() == run.start.size() && std::equal(kept.begin(), kept.end(), run.start.begin(), isSamePlace),
            "the known points are sorted and no two neighbours are equal");
}

// The points of the points pass with the designations that the objects pass of a drawing has given them. Where several
// points lie at one place, those from the points pass stand last.
QVector<DefPoint> namedStart(const Run &run)
{
    QVector<DefPoint> named = run.start;
    int i = run.known.size() - 1;
    for (auto point = named.rbegin(); point != named.rend(); ++point) {
        while (i >= 0 && !isSamePlace(run.known.at(i), *point))
            --i;
        require(i >= 0, "no known point is lost");
        point->def = run.known.at(i--).def;
    }
    return named;
}

/// Numbers the vertices of a run once more.
class Numbering
{
public:
    Numbering(const Options &options, const QVector<DefPoint> &start)
        : m_options(options),
          m_points(start),
          m_next(options.pointStartNum)
    {
    }

    /// A vertex that closes a ring takes no number of its own.
    void checkContour(const QVector<DefPoint> &contour, bool isClosed)
    {
        for (int i = 0; i < contour.size(); ++i) {
            const DefPoint &stored = contour.at(i);
            if (isClosed && i == contour.size() - 1)
                require(stored.def == contour.first().def, "a vertex that closes a ring has the number of the first");
            else
                checkVertex(m_options.swapXY ? DefPoint{stored.def, stored.y, stored.x} : stored);
        }
    }

    const QVector<DefPoint> &points() const { return m_points; }
    int next() const { return m_next; }

private:
    void checkVertex(const DefPoint &vertex)
    {
        const DefPoint *const known = findNearestPoint(m_points, QPointF(vertex.x, vertex.y));
        if (known != nullptr && *known == vertex) {
            require(vertex.def == known->def, "a vertex carries the number of the point it lies on");
            return;
        }
        require(vertex.def == numbered(m_options.pointPref, m_next), "a vertex at a new place has the next number");
        ++m_next;
        m_points.insert(std::lower_bound(m_points.begin(), m_points.end(), vertex, lessNanLast), vertex);
    }

    const Options &m_options;
    QVector<DefPoint> m_points;
    int m_next;
};

// A drawing does not tell in its objects what it has closed with a copy of the first vertex.
bool isDrawnClosed(const QVector<DefPoint> &contour)
{
    return contour.size() > 2 && isSamePoint(contour.first(), contour.last());
}

void checkNumbers(const Options &options, const Run &run, Format format)
{
    const bool isMif = format == Format::Mif;
    const QVector<QVector<bool>> closed = isMif ? closedRings(options, run.objects) : QVector<QVector<bool>>();
    Numbering numbering(options, isMif ? run.start : namedStart(run));
    for (int i = 0; i < run.objects.size(); ++i) {
        const QVector<QVector<DefPoint>> &contours = run.objects.at(i).contours;
        for (int j = 0; j < contours.size(); ++j)
            numbering.checkContour(contours.at(j), isMif ? closed.at(i).at(j) : isDrawnClosed(contours.at(j)));
    }
    require(run.pointStartNum == numbering.next(), "every generated number is used once");
    require(areSamePoints(run.known, numbering.points()), "the known points are sorted and all there");
}

// Only the object at which a pass has failed may be without a designation.
void checkObjectDefs(const Options &options, const Run &run)
{
    int next = options.objectStartNum;
    for (int i = 0; i < run.objects.size(); ++i) {
        const QString &def = run.objects.at(i).def;
        const bool unfinished = i == run.objects.size() - 1 && !run.ok;
        require(!def.isEmpty() || unfinished, "an object that is complete has a designation");
        if (isGenerated(def))
            require(def == numbered(options.objectPref, next++), "generated designations follow each other");
        else
            require(def.isEmpty() || options.searchObjectDefs, "designations of the file have been asked for");
    }
    require(run.objectStartNum == next, "every generated designation is used once");
}

} // namespace

void require(bool holds, const char *what)
{
    if (holds)
        return;
    static_cast<void>(std::fprintf(stderr, "Does not hold: %s\n", what));
    std::abort();
}

const TextFixture &files()
{
    static const TextFixture fixture;
    return fixture;
}

Options::Options(Input &input)
    : searchPointDefs(input.flag()),
      searchObjectDefs(input.flag()),
      swapXY(input.flag()),
      usePointFile(input.flag())
{
    static const char *const encodings[] = {"UTF-8", "Windows-1251", "IBM866", "UTF-16", "Default"};
    static const char *const tails[] = {"", "н", "%1", "%2", "%", "%1%2"};
    static const int numbers[] = {1, 0, 999, -2, 2000000000};
    encoding = input.oneOf(encodings);
    pointPref = QString::fromUtf8(mark) + QString::fromUtf8(input.oneOf(tails));
    objectPref = QString::fromUtf8(mark) + QString::fromUtf8(input.oneOf(tails));
    pointStartNum = input.oneOf(numbers);
    objectStartNum = input.oneOf(numbers);
}

void checkRun(const Options &options, const Run &run, Format format)
{
    checkPasses(options, run, format);
    checkObjectDefs(options, run);
    if (!run.objectPass.ran) {
        require(!run.pointPass.ran || run.pointPass.ok || areSamePoints(run.known, run.read),
                "a failed pass leaves the points in the order of the file");
        return;
    }
    checkStart(run);
    checkNumbers(options, run, format);
}

void checkSame(const Run &a, const Run &b)
{
    require(a.ok == b.ok && a.messages == b.messages, "a second run ends as the first");
    require(a.objects.size() == b.objects.size() &&
                std::equal(a.objects.begin(), a.objects.end(), b.objects.begin(), isSameObject),
            "a second run brings the objects of the first");
    require(areSamePoints(a.known, b.known), "a second run knows the points of the first");
}
