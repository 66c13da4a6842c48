// Both models over objects that change in their hands, as the dialog's do:
//
//     000            columns of the designation, of X and of Y
//     ...            actions, a digit each with its own options behind it; see actions below

#include "invariants.h"

#include "defpolygontablemodel.h"

#include <QAbstractItemModelTester>
#include <QBrush>

#include <algorithm>

namespace {

/// Models over objects, and what the actions do to them.
class Session
{
public:
    explicit Session(Input &input) : m_input(input)
    {
        const int n = input.option(6);
        const int x = input.option(6);
        const int y = input.option(6);
        m_vertices.setNxyColNum(n, x, y);
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
    QString text()
    {
        static const char *const texts[] = {"", "н1", "Н1", "н2", "ЗУ", "зу", "н99999999999", "1", "<&>", "ß"};
        return QString::fromUtf8(m_input.oneOf(texts));
    }

    double coordinate()
    {
        static const double coordinates[] = {0, 0.005, 0.01, 0.0101, 1000.5, -1e300, qInf(), qQNaN()};
        return m_input.oneOf(coordinates);
    }

    int row(int count) { return count == 0 ? 0 : m_input.option(count); }

    // The vector may move its objects, so the models let go of them first and take them up again.
    void addObject()
    {
        m_vertices.dropPolygon();
        m_list.dropMap();
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
            m_vertices.refresh();
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
        m_vertices.refresh();
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
        m_vertices.dropPolygon();
        m_list.dropMap();
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
        if (!m_objects.isEmpty())
            checkConflicts();
        QAbstractItemModelTester list(&m_list, QAbstractItemModelTester::FailureReportingMode::Fatal);
        QAbstractItemModelTester vertices(&m_vertices, QAbstractItemModelTester::FailureReportingMode::Fatal);
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
    QVector<DefPolygon> m_objects;
    int m_current = 0;
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
