// Checks both models and the result document while the shown objects change. Input:
//
//     000            columns of the designation, of X and of Y
//     ...            actions, a digit each, followed by its own options; see Session::run()

#include "dialogtesting.h"
#include "input.h"
#include "require.h"
#include "resultoutline.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QBrush>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

Dialog *dialog = nullptr;

bool equalsIgnoringCase(const QString &a, const QString &b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

bool isWithinTolerance(const DefPoint &a, const DefPoint &b)
{
    return std::fabs(a.x - b.x) <= 0.01 && std::fabs(a.y - b.y) <= 0.01;
}

/// The designation \a def as an XML reader returns it: without characters that XML cannot represent, and with line
/// feeds for all line ends.
QString throughXml(const QString &def)
{
    const auto isXml = [](QChar c) {
        return (c.unicode() >= 0x20 && c.unicode() < 0xFFFE) || QStringLiteral("\t\n\r").contains(c);
    };
    QString read;
    std::copy_if(def.begin(), def.end(), std::back_inserter(read), isXml);
    return read.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

QString coordinateText(double coordinate)
{
    return QString::asprintf("%.2f", coordinate);
}

void checkResult(const QVector<DefPolygon> &objects)
{
    QStringList expected;
    for (const DefPolygon &object : objects) {
        expected << throughXml(object.def);
        for (int i = 0; i < object.contours.size(); ++i) {
            if (i > 0)
                expected << QStringLiteral("  -");
            for (const DefPoint &v : object.contours.at(i))
                expected << QStringLiteral("  ") + throughXml(v.def) + QLatin1Char('|') + coordinateText(v.x) +
                                QLatin1Char('|') + coordinateText(v.y);
        }
    }
    dialog->objects = objects;
    const QStringList actual = ResultOutline::lines(dialog->stringResult());
    // QXmlStreamReader decodes a lone surrogate as a question mark, as toUtf8() encodes it.
    require(actual.join(QLatin1Char('\n')).toUtf8() == expected.join(QLatin1Char('\n')).toUtf8(),
            "the result document lists the objects and their vertices");
}

/// Models of the same objects, and the actions that change models and objects.
class Session
{
public:
    explicit Session(Input &input)
        : m_input(input),
          m_defColumn(input.option(6)),
          m_xColumn(input.option(6)),
          m_yColumn(input.option(6))
    {
        m_vertices.setNxyColNum(m_defColumn, m_xColumn, m_yColumn);
        const auto count = [this] { ++m_signals; };
        QObject::connect(&m_list, &QAbstractItemModel::dataChanged, &m_list, count);
        QObject::connect(&m_vertices, &QAbstractItemModel::dataChanged, &m_vertices, count);
    }

    void run()
    {
        using Action = void (Session::*)();
        static const Action actions[] = {&Session::addObject,    &Session::addVertex,    &Session::renameObject,
                                         &Session::renameVertex, &Session::sort,         &Session::removeVertex,
                                         &Session::removeObject, &Session::chooseObject, &Session::setField,
                                         &Session::show};
        for (int i = 0; i < 200 && !m_input.atEnd(); ++i) {
            (this->*m_input.oneOf(actions))();
            checkList();
            checkVertices();
        }
        checkResult(m_objects);
    }

private:
    // A colon, the character after '9', selects a text from the input.
    QString text()
    {
        static const char *const texts[] = {"", "н1", "Н1", "н2", "ЗУ", "зу", "н99999999999", "1", "<&>", "ß", nullptr};
        const char *const fixed = m_input.oneOf(texts);
        return fixed == nullptr ? m_input.text() : QString::fromUtf8(fixed);
    }

    double coordinate()
    {
        static const double coordinates[] = {0,      0.005,  0.01,    0.0101,    1000.5,
                                             -1e300, qInf(), qQNaN(), -1234.567, 123456789.995};
        return m_input.oneOf(coordinates);
    }

    int row(int count) { return count == 0 ? 0 : m_input.option(count); }

    // The vector may move its objects, so the models must not keep pointers to them.
    void detach()
    {
        m_vertices.detachPolygon();
        m_list.detachMap();
        m_isShown = false;
    }

    void addObject()
    {
        detach();
        m_objects.append(DefPolygon{text(), {}});
        show();
    }

    void addVertex()
    {
        if (m_objects.isEmpty())
            return;
        DefPolygon &object = m_objects[m_current];
        if (object.contours.isEmpty() || m_input.flag())
            object.contours.append(QVector<DefPoint>());
        object.contours.last().append(DefPoint{text(), coordinate(), coordinate()});
        if (m_input.flag())
            refresh();
    }

    void renameObject() { rename(m_list, m_list.index(row(m_list.rowCount()), 0)); }

    void renameVertex()
    {
        const int vertexRow = row(m_vertices.rowCount());
        rename(m_vertices, m_vertices.index(vertexRow, row(m_vertices.columnCount())));
    }

    void rename(QAbstractItemModel &model, const QModelIndex &index)
    {
        const QString def = text();
        const bool isEditable = (index.flags() & Qt::ItemIsEditable) != 0 && index.data().isValid();
        const bool changes = isEditable && index.data().toString() != def;
        m_signals = 0;
        require(model.setData(index, def, Qt::EditRole) == changes, "setData() accepts only a new designation");
        require(m_signals == (changes ? 2 : 0), "a change is signalled for the cell and for the colours");
        require(!changes || index.data(Qt::EditRole).toString() == def, "setData() stores the designation");
    }

    void sort()
    {
        sortObjects(m_objects);
        m_list.setMap(&m_objects);
        refresh();
    }

    void refresh()
    {
        m_vertices.refresh();
        if (m_isShown)
            layOutRows();
    }

    // Does not notify the model, whose rows become stale.
    void removeVertex()
    {
        if (m_objects.isEmpty() || m_objects.at(m_current).contours.isEmpty())
            return;
        QVector<DefPoint> &contour = m_objects[m_current].contours.last();
        if (contour.isEmpty() || m_input.flag())
            m_objects[m_current].contours.removeLast();
        else
            contour.removeAt(m_input.option(contour.size()));
    }

    void removeObject()
    {
        if (m_objects.isEmpty())
            return;
        detach();
        m_objects.removeAt(m_input.option(m_objects.size()));
        m_current = 0;
        if (m_input.flag())
            show();
    }

    void chooseObject()
    {
        if (!m_objects.isEmpty())
            m_current = m_input.option(m_objects.size());
        show();
    }

    void setField()
    {
        m_fields.insert(m_input.option(8), text());
        m_vertices.setFieldNumValueMap(m_fields);
        show();
    }

    void show()
    {
        m_list.setMap(&m_objects);
        m_vertices.setPolygon(m_objects.isEmpty() ? nullptr : &m_objects[m_current]);
        m_isShown = !m_objects.isEmpty();
        layOutRows();
        for (int i = 0; i < m_rows.size(); ++i)
            require(m_vertices.isConflictingPoint(i) == isConflict(i), "one designation at two places is a conflict");
        QAbstractItemModelTester list(&m_list, QAbstractItemModelTester::FailureReportingMode::Fatal);
        QAbstractItemModelTester vertices(&m_vertices, QAbstractItemModelTester::FailureReportingMode::Fatal);
    }

    // Lays out the rows of the object's current shape, which the model adopts only in setPolygon() and refresh().
    void layOutRows()
    {
        m_rows.clear();
        if (!m_isShown)
            return;
        const QVector<QVector<DefPoint>> &contours = m_objects.at(m_current).contours;
        for (int contour = 0; contour < contours.size(); ++contour) {
            if (contour > 0)
                m_rows.append({-1, -1});
            for (int vertex = 0; vertex < contours.at(contour).size(); ++vertex)
                m_rows.append({contour, vertex});
        }
    }

    /// The current vertex of a row; null for a separator row and for a removed vertex.
    const DefPoint *vertexOf(int row) const
    {
        const RowInfo info = m_rows.at(row);
        if (!m_isShown || info.contourIndex < 0)
            return nullptr;
        const QVector<QVector<DefPoint>> &contours = m_objects.at(m_current).contours;
        if (info.contourIndex >= contours.size() || info.vertexIndex >= contours.at(info.contourIndex).size())
            return nullptr;
        return &contours.at(info.contourIndex).at(info.vertexIndex);
    }

    bool isConflict(int row) const
    {
        const DefPoint *const vertex = vertexOf(row);
        for (int i = 0; i < m_rows.size() && vertex != nullptr && !vertex->def.isEmpty(); ++i) {
            const DefPoint *const other = i == row ? nullptr : vertexOf(i);
            if (other != nullptr && equalsIgnoringCase(other->def, vertex->def) && !isWithinTolerance(*other, *vertex))
                return true;
        }
        return false;
    }

    /// The edit value of a cell. In a shared column the designation takes precedence, then X, then Y, then the field.
    QVariant textOf(const DefPoint &vertex, int column) const
    {
        if (column == m_defColumn)
            return vertex.def;
        if (column == m_xColumn)
            return coordinateText(vertex.x);
        if (column == m_yColumn)
            return coordinateText(vertex.y);
        return m_fields.contains(column) ? m_fields.value(column) : QVariant();
    }

    QString displayTextOf(const DefPoint &vertex, int column) const
    {
        if (column != m_defColumn && (column == m_xColumn || column == m_yColumn))
            return QLocale().toString(column == m_xColumn ? vertex.x : vertex.y, 'f', 2);
        return textOf(vertex, column).toString();
    }

    void checkCell(int row, int column)
    {
        const DefPoint *const vertex = vertexOf(row);
        const QVariant text = vertex == nullptr ? QVariant() : textOf(*vertex, column);
        const QString displayText = vertex == nullptr ? QString() : displayTextOf(*vertex, column);
        const QModelIndex index = m_vertices.index(row, column);
        require(index.data(Qt::EditRole).isValid() == text.isValid(), "a cell has a value if its vertex has one");
        require(index.data().isValid() == text.isValid(), "a cell displays a value if it has one to edit");
        require(index.data(Qt::EditRole).toString() == text.toString(), "the edit text is that of the vertex");
        require(index.data().toString() == displayText, "the displayed text is that of the vertex");
        const bool isRed = index.data(Qt::BackgroundRole).value<QBrush>().color() == QColor(255, 220, 220);
        require(isRed == m_vertices.isConflictingPoint(row), "only conflicts are red");
    }

    // Every cell can be queried, even if the rows are stale.
    void checkVertices()
    {
        require(m_vertices.rowCount() == m_rows.size(), "the rows match the object last set or refreshed");
        for (int row = 0; row < m_rows.size(); ++row) {
            for (int column = 0; column < m_vertices.columnCount(); ++column)
                checkCell(row, column);
        }
    }

    void checkList()
    {
        for (int i = 0; i < m_list.rowCount(); ++i) {
            const QString def = m_objects.at(i).def;
            const auto hasDef = [&](const DefPolygon &object) { return equalsIgnoringCase(object.def, def); };
            const bool duplicate = !def.isEmpty() && std::count_if(m_objects.cbegin(), m_objects.cend(), hasDef) > 1;
            const QModelIndex index = m_list.index(i, 0);
            require(m_list.isDuplicateDef(i) == duplicate, "a designation that occurs twice is a duplicate");
            require(index.data(Qt::BackgroundRole).isValid() == duplicate, "only duplicates are coloured");
            require(index.data() == def, "an object is listed with its designation");
        }
    }

    Input &m_input;
    int m_defColumn;
    int m_xColumn;
    int m_yColumn;
    QVector<DefPolygon> m_objects;
    int m_current = 0;
    bool m_isShown = false; ///< the models point to the objects
    QVector<RowInfo> m_rows;
    int m_signals = 0;
    QMap<int, QString> m_fields;
    DefMapTableModel m_list;
    DefPolygonTableModel m_vertices;
};

} // namespace

// The dialog is never destroyed: it would save its settings.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication application(*argc, *argv);
    static const SettingsSandbox settings;
    dialog = new Dialog; // NOLINT(*-owning-memory)
    dialog->xColNum = 1;
    dialog->yColNum = 2;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    Session(input).run();
    return 0;
}
