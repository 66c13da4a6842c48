// The text that the host takes: a table of objects, and in each object's row the table of its vertices.
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

#include "ui_dialog.h"

#include <QXmlStreamWriter>

namespace {

const QString strFormTable = QStringLiteral("FormTable");
const QString strRow = QStringLiteral("Row");
const QString strCell = QStringLiteral("Cell");
const QString strName = QStringLiteral("Name");
const QString strUpdate = QStringLiteral("Update");

void startTable(QXmlStreamWriter &writer, const QString &name)
{
    writer.writeStartElement(strFormTable);
    if (!name.isEmpty())
        writer.writeAttribute(strName, name);
}

bool isEmptyRow(const DefPolygonTableModel &model, int row)
{
    const int columns = model.columnCount();
    for (int column = 0; column < columns; ++column) {
        if (!model.text(row, column).isNull())
            return false;
    }
    return true;
}

void writeCell(QXmlStreamWriter &writer, const QString &text)
{
    if (text.isNull())
        writer.writeEmptyElement(strCell);
    else
        writer.writeTextElement(strCell, text);
}

void writeVertexRow(QXmlStreamWriter &writer, const DefPolygonTableModel &model, int row)
{
    if (isEmptyRow(model, row)) {
        writer.writeEmptyElement(strRow);
        return;
    }
    writer.writeStartElement(strRow);
    const int columns = model.columnCount();
    for (int column = 0; column < columns; ++column)
        writeCell(writer, model.text(row, column));
    writer.writeEndElement();
}

void writeVertexTable(QXmlStreamWriter &writer, const DefPolygonTableModel &model, const QString &name)
{
    startTable(writer, name);
    const int rows = model.rowCount();
    for (int row = 0; row < rows; ++row)
        writeVertexRow(writer, model, row);
    writer.writeEndElement();
}

} // namespace

QString Dialog::stringResult()
{
    QString result;
    QXmlStreamWriter writer(&result);
    writer.setAutoFormatting(true);

    DefPolygonTableModel model;
    model.setNxyColNum(nColNum, xColNum, yColNum);
    model.setFieldNumValueMap(fieldNumValueMap);

    startTable(writer, objectTableName);
    if (ui->updateCheck->isChecked())
        writer.writeAttribute(strUpdate, QStringLiteral("1"));
    for (DefPolygon &object : objects) {
        model.setPolygon(&object);
        writer.writeStartElement(strRow);
        for (int i = 0; i < defColNum; ++i)
            writer.writeEmptyElement(strCell);
        writer.writeTextElement(strCell, object.def);
        writeVertexTable(writer, model, pointTableName);
        writer.writeEndElement();
    }
    writer.writeEndElement();
    return result;
}
