// Both models over objects that change in their hands, as the dialog's do:
//
//     000            columns of the designation, of X and of Y
//     ...            actions, a digit each with its own options behind it; see actions below

#include "invariants.h"

#include "defpolygontablemodel.h"

#include <QAbstractItemModelTester>
#include <QBrush>
#include <QLocale>

#include <algorithm>
#include <cmath>

namespace {

/// Models over objects, and what the actions do to them.
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
            checkTexts();
        }
        checkResult(m_objects);
    }

private:
    // The colon, which comes after the digits, stands for a text of the input.
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

    void dropObjects()
    {
        m_vertices.detachPolygon();
        m_list.detachMap();
        m_isShown = false;
    }

    // The vector may move its objects, so the models let go of them first and take them up again.
    void addObject()
    {
        dropObjects();
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

    void renameObject()
    {
        const QModelIndex index = m_list.index(row(m_list.rowCount()), 0);
        const QString def = text();
        checkRename(m_list, index, def, index.isValid() && index.data().toString() != def);
    }

    void renameVertex()
    {
        const int vertexRow = row(m_vertices.rowCount());
        const QModelIndex index = m_vertices.index(vertexRow, row(m_vertices.columnCount()));
        const bool editable = (index.flags() & Qt::ItemIsEditable) != 0 && index.data().isValid();
        const QString def = text();
        checkRename(m_vertices, index, def, editable && index.data().toString() != def);
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

    // Without a word to the model.
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
        dropObjects();
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
        if (!m_objects.isEmpty())
            checkConflicts();
        QAbstractItemModelTester list(&m_list, QAbstractItemModelTester::FailureReportingMode::Fatal);
        QAbstractItemModelTester vertices(&m_vertices, QAbstractItemModelTester::FailureReportingMode::Fatal);
    }

    // As the object is when the table is told of it.
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

    /// The vertex of a row as it is now; null between two contours, and for one that is gone.
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

    static QString coordinateText(double coordinate, int role)
    {
        if (role == Qt::DisplayRole)
            return QLocale().toString(coordinate, 'f', 2);
        return QString::asprintf("%.2f", coordinate);
    }

    // Of things that have one column the first is shown.
    QVariant textOf(const DefPoint &vertex, int column, int role) const
    {
        if (column == m_defColumn)
            return vertex.def;
        if (column == m_xColumn)
            return coordinateText(vertex.x, role);
        if (column == m_yColumn)
            return coordinateText(vertex.y, role);
        return m_fields.contains(column) ? m_fields.value(column) : QVariant();
    }

    void checkCell(int row, int column, const DefPoint *vertex)
    {
        const QModelIndex index = m_vertices.index(row, column);
        for (const int role : {Qt::DisplayRole, Qt::EditRole}) {
            const QVariant text = vertex == nullptr ? QVariant() : textOf(*vertex, column, role);
            require(index.data(role).isValid() == text.isValid(), "a text is there where there is a vertex");
            require(index.data(role).toString() == text.toString(), "a cell has the text of its vertex");
        }
        const QString edited = index.data(Qt::EditRole).toString();
        const QString written = m_vertices.text(row, column);
        require(written == edited && written.isNull() == edited.isNull(), "the result has what can be edited");
    }

    void checkTexts()
    {
        require(m_vertices.rowCount() == m_rows.size(), "there are rows for the object as the table was told of it");
        for (int row = 0; row < m_rows.size(); ++row) {
            const DefPoint *const vertex = vertexOf(row);
            for (int column = 0; column < m_vertices.columnCount(); ++column)
                checkCell(row, column, vertex);
        }
    }

    void checkRename(QAbstractItemModel &model, const QModelIndex &index, const QString &def, bool changes)
    {
        m_signals = 0;
        require(model.setData(index, def, Qt::EditRole) == changes, "only a new designation is taken");
        require(m_signals == (changes ? 2 : 0), "the change and its colours are told, or nothing");
        require(!changes || index.data(Qt::EditRole).toString() == def, "the new designation is there");
    }

    void checkList()
    {
        for (int i = 0; i < m_list.rowCount(); ++i) {
            const auto isAlike = [&](const DefPolygon &object) {
                return object.def.compare(m_objects.at(i).def, Qt::CaseInsensitive) == 0;
            };
            const bool duplicate =
                !m_objects.at(i).def.isEmpty() && std::count_if(m_objects.cbegin(), m_objects.cend(), isAlike) > 1;
            const QModelIndex index = m_list.index(i, 0);
            require(m_list.isDuplicateDef(i) == duplicate, "a designation that occurs twice is a duplicate");
            require(index.data(Qt::BackgroundRole).isValid() == duplicate, "a duplicate is coloured");
            require(index.data() == m_objects.at(i).def, "an object is listed with its designation");
        }
    }

    // Row by row in the order of the object, when the rows are those of the object as it is.
    void checkConflicts()
    {
        QVector<DefPoint> all;
        QVector<int> rows;
        int row = 0;
        for (const QVector<DefPoint> &contour : m_objects.at(m_current).contours) {
            for (const DefPoint &vertex : contour) {
                all.append(vertex);
                rows.append(row++);
            }
            ++row;
        }
        for (int i = 0; i < all.size(); ++i) {
            const auto isElsewhere = [&](const DefPoint &other) {
                return other.def.compare(all.at(i).def, Qt::CaseInsensitive) == 0 &&
                       !(std::fabs(other.x - all.at(i).x) <= 0.01 && std::fabs(other.y - all.at(i).y) <= 0.01);
            };
            bool conflict = false;
            for (int j = 0; j < all.size() && !all.at(i).def.isEmpty(); ++j)
                conflict = conflict || (j != i && isElsewhere(all.at(j)));
            require(m_vertices.isConflictingPoint(rows.at(i)) == conflict, "a number at two places is a conflict");
        }
        require(m_vertices.rowCount() == qMax(0, row - 1), "there is a row for each vertex and between two contours");
    }

    // The rows may be older than the object; every cell can be asked for all the same.
    void checkVertices()
    {
        for (int i = 0; i < m_vertices.rowCount(); ++i) {
            const bool conflict = m_vertices.isConflictingPoint(i);
            for (int column = 0; column < m_vertices.columnCount(); ++column) {
                const QModelIndex index = m_vertices.index(i, column);
                const QVariant background = index.data(Qt::BackgroundRole);
                require(index.data().isValid() == index.data(Qt::EditRole).isValid(), "what is shown can be edited");
                const bool isRed = background.value<QBrush>().color() == QColor(255, 220, 220);
                require(isRed == conflict, "a conflict is coloured, and nothing else");
            }
        }
    }

    Input &m_input;
    int m_defColumn;
    int m_xColumn;
    int m_yColumn;
    QVector<DefPolygon> m_objects;
    int m_current = 0;
    bool m_isShown = false; ///< the models have hold of the objects
    QVector<RowInfo> m_rows;
    int m_signals = 0;
    QMap<int, QString> m_fields;
    DefMapTableModel m_list;
    DefPolygonTableModel m_vertices;
};

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    prepareResults(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Input input(data, size);
    Session(input).run();
    return 0;
}
