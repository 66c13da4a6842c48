#include "convertverifier.h"

#include "convertreport.h"
#include "mapimport_mif.h"

#include <utility>

namespace {

// The callback of the import is a plain function.
QStringList &reported()
{
    static QStringList messages;
    return messages;
}

void collectMessage(const QString &message)
{
    reported().append(message);
}

// True if the import may read a written coordinate as this one: it is printed with 15 digits or exactly.
bool isWritten(double imported, double coordinate)
{
    const auto isEqual = [imported](double expected) { return !(imported < expected) && !(expected < imported); };
    return isEqual(coordinate) || isEqual(asWritten(coordinate));
}

bool isWritten(const DefPoint &imported, const ContentVertex &vertex)
{
    return isWritten(imported.x, vertex.x) && isWritten(imported.y, vertex.y);
}

QString described(double x, double y)
{
    return QStringLiteral("%1 %2").arg(QString::number(x, 'g', 17), QString::number(y, 'g', 17));
}

// Compares the results of an import with a content.
class Comparison
{
public:
    Comparison(const ConvertContent &content, const QVector<DefPolygon> &objects, QString prefix)
        : m_content(content),
          m_objects(objects),
          m_prefix(std::move(prefix))
    {
    }

    // Returns a description of the first difference; empty if there is none.
    QString objectDifference();
    QString pointDifference(const QVector<DefPoint> &points) const;

private:
    QString contourDifference(std::size_t contour, const QVector<DefPoint> &imported) const;
    QString contentDifference(std::size_t object, const DefPolygon &imported);

    const ConvertContent &m_content;
    const QVector<DefPolygon> &m_objects;
    QString m_prefix;
    int m_generated = 0;
};

QString Comparison::contourDifference(std::size_t contour, const QVector<DefPoint> &imported) const
{
    if (static_cast<std::size_t>(imported.size()) != m_content.vertexCount(contour))
        return QStringLiteral("%1 instead of %2")
            .arg(counted(imported.size(), QStringLiteral("vertex")))
            .arg(m_content.vertexCount(contour));
    const std::size_t first = m_content.vertexBegin(contour);
    for (int i = 0; i < imported.size(); ++i) {
        const ContentVertex &vertex = m_content.vertices[first + static_cast<std::size_t>(i)];
        if (!isWritten(imported.at(i), vertex))
            return QStringLiteral("vertex %1 at %2 instead of %3")
                .arg(QString::number(i + 1), described(imported.at(i).x, imported.at(i).y),
                     described(vertex.x, vertex.y));
    }
    return {};
}

QString Comparison::contentDifference(std::size_t object, const DefPolygon &imported)
{
    const ContentObject &written = m_content.objects[object];
    const std::size_t first = m_content.contourBegin(object);
    const QString def = written.def.isEmpty() ? m_prefix + QString::number(m_generated++) : written.def;
    if (imported.def != def)
        return QStringLiteral("designation \"%1\" instead of \"%2\"").arg(imported.def, def);
    if (static_cast<std::size_t>(imported.contours.size()) != written.contourEnd - first)
        return QStringLiteral("%1 instead of %2")
            .arg(counted(imported.contours.size(), QStringLiteral("contour")))
            .arg(written.contourEnd - first);
    for (int i = 0; i < imported.contours.size(); ++i) {
        const QString difference = contourDifference(first + static_cast<std::size_t>(i), imported.contours.at(i));
        if (!difference.isEmpty())
            return QStringLiteral("contour %1: %2").arg(QString::number(i + 1), difference);
    }
    return {};
}

QString Comparison::objectDifference()
{
    if (static_cast<std::size_t>(m_objects.size()) != m_content.objects.size())
        return QStringLiteral("%1 instead of %2")
            .arg(counted(m_objects.size(), QStringLiteral("object")))
            .arg(m_content.objects.size());
    for (int i = 0; i < m_objects.size(); ++i) {
        const auto object = static_cast<std::size_t>(i);
        const QString difference = contentDifference(object, m_objects.at(i));
        if (!difference.isEmpty())
            return QStringLiteral("object %1 (source id %2): %3")
                .arg(QString::number(i + 1), m_content.objects[object].id, difference);
    }
    return {};
}

// The known points of the file precede those that the import generates from vertices.
QString Comparison::pointDifference(const QVector<DefPoint> &points) const
{
    QVector<DefPoint> expected;
    expected.reserve(static_cast<int>(m_content.points.size()));
    for (const ContentPoint &point : m_content.points)
        expected.append({point.def, point.at.x, point.at.y});
    sortPoints(expected);
    if (points.size() < expected.size())
        return QStringLiteral("%1 instead of %2")
            .arg(counted(points.size(), QStringLiteral("point")))
            .arg(expected.size());
    for (int i = 0; i < expected.size(); ++i) {
        const DefPoint &point = expected.at(i);
        if (points.at(i).def != point.def || !isWritten(points.at(i), {point.x, point.y}))
            return QStringLiteral("point \"%1\" at %2 instead of \"%3\" at %4")
                .arg(points.at(i).def, described(points.at(i).x, points.at(i).y), point.def,
                     described(point.x, point.y));
    }
    return {};
}

} // namespace

bool ConvertVerifier::fail(const QString &text)
{
    m_error = text;
    return false;
}

bool ConvertVerifier::verify(const ConvertContent &content, const QString &mifFileName, const QString &encoding)
{
    QVector<DefPolygon> objects;
    MifImport import;
    reported().clear();
    import.report = collectMessage;
    import.setEncoding(encoding.toLatin1());
    import.searchPointDefs = import.searchObjectDefs = true;
    // No text of a source contains it, so generated designations cannot be mistaken for read ones.
    import.objectPref = QStringLiteral("\x01");
    import.objectFileName = mifFileName;
    import.objects = &objects;
    if (!import.importMap() || !reported().isEmpty())
        return fail(QStringLiteral("The import of the output fails: %1").arg(reported().join(QLatin1Char(' '))));
    Comparison comparison(content, objects, import.objectPref);
    QString difference = comparison.objectDifference();
    if (difference.isEmpty())
        difference = comparison.pointDifference(import.points);
    return difference.isEmpty() ||
           fail(QStringLiteral("The import does not read what was written: %1.").arg(difference));
}
