// The text that the host receives: a table of objects, and in each object's row the table of its vertices.
//
//     <FormTable Name="Участки" Update="1">
//         <Row>
//             <Cell/>                             defColNum empty cells
//             <Cell>ЗУ1</Cell>
//             <FormTable Name="Координаты">
//                 <Row>                           a vertex: as many cells as the table has columns
//                     <Cell>н1</Cell>
//                     ...
//                 </Row>
//                 <Row/>                          between two contours

#include "dialog.h"

#include "dialog_resultwriter.h"
#include "ui_dialog.h"

#include <algorithm>

namespace {

bool hasValue(const ValueColumn &column, const DefPoint &vertex)
{
    switch (column.content) {
    case ValueColumn::Def:
        return !vertex.def.isNull();
    case ValueColumn::Field:
        return !column.text.isNull();
    default:
        return true;
    }
}

void writeCell(ResultWriter &writer, const ValueColumn &column, const DefPoint &vertex)
{
    switch (column.content) {
    case ValueColumn::Def:
        writer.textCell(vertex.def);
        break;
    case ValueColumn::X:
        writer.coordCell(vertex.x, DefPolygonTableModel::coordDecimals());
        break;
    case ValueColumn::Y:
        writer.coordCell(vertex.y, DefPolygonTableModel::coordDecimals());
        break;
    default:
        writer.textCell(column.text);
    }
}

/// The tables of vertices, all with the same columns.
class VertexTables
{
public:
    VertexTables(ResultWriter &writer, const DefPolygonTableModel &model, const QString &name)
        : m_writer(writer),
          m_model(model),
          m_columns(model.valueColumns()),
          m_columnCount(model.columnCount()),
          m_tag(ResultWriter::tableTag(name))
    {
    }

    /// Writes the object that the model shows.
    void writeTable() const
    {
        const int rows = m_model.rowCount();
        if (rows == 0) {
            m_writer.emptyTable(m_tag);
            return;
        }
        m_writer.startTable(m_tag);
        for (int row = 0; row < rows; ++row)
            writeRow(m_model.vertexAt(row));
        m_writer.endTable();
    }

private:
    void writeRow(const DefPoint *vertex) const
    {
        if (vertex == nullptr || isEmpty(*vertex)) {
            m_writer.emptyRow();
            return;
        }
        m_writer.startRow();
        writeCells(*vertex);
        m_writer.endRow();
    }

    bool isEmpty(const DefPoint &vertex) const
    {
        return std::none_of(m_columns.begin(), m_columns.end(),
                            [&](const ValueColumn &column) { return hasValue(column, vertex); });
    }

    void writeCells(const DefPoint &vertex) const
    {
        int next = 0;
        for (const ValueColumn &column : m_columns) {
            if (!hasValue(column, vertex))
                continue;
            m_writer.emptyCells(column.number - next);
            writeCell(m_writer, column, vertex);
            next = column.number + 1;
        }
        m_writer.emptyCells(m_columnCount - next);
    }

    ResultWriter &m_writer;
    const DefPolygonTableModel &m_model;
    const QVector<ValueColumn> m_columns;
    const int m_columnCount;
    const QString m_tag;
};

} // namespace

QString Dialog::stringResult()
{
    DefPolygonTableModel model;
    model.setNxyColNum(nColNum, xColNum, yColNum);
    model.setFieldNumValueMap(fieldNumValueMap);

    ResultWriter writer;
    const QString tag = ResultWriter::tableTag(objectTableName, ui->updateCheck->isChecked());
    const VertexTables vertexTables(writer, model, pointTableName);
    if (objects.isEmpty()) {
        writer.emptyTable(tag);
        return writer.document();
    }
    writer.startTable(tag);
    for (DefPolygon &object : objects) {
        model.setPolygon(&object);
        writer.startRow();
        writer.emptyCells(defColNum);
        writer.textCell(object.def);
        vertexTables.writeTable();
        writer.endRow();
    }
    writer.endTable();
    return writer.document();
}
