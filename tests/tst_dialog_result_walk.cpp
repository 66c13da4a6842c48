#include "fieldtesting.h"

#include <QLocale>
#include <QTest>
#include <QXmlStreamWriter>

#include <limits>
#include <random>

/// The document held against a plain walk through a vertex table by its indexes and roles.
class tst_DialogResultWalk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void documentIsThatOfAPlainWalk_data();
    void documentIsThatOfAPlainWalk();

private:
    SettingsSandbox settings;
};

namespace {

using Numbers = std::mt19937;

const QString table = QStringLiteral("FormTable");
const QString row = QStringLiteral("Row");
const QString cell = QStringLiteral("Cell");

int upTo(Numbers &numbers, int last)
{
    return std::uniform_int_distribution<int>(0, last)(numbers);
}

template <class T>
T anyOf(Numbers &numbers, const QVector<T> &values)
{
    return values.at(upTo(numbers, values.size() - 1));
}

QString anyText(Numbers &numbers)
{
    return anyOf<QString>(numbers, {QString(), QStringLiteral(""), QStringLiteral("н1"), QStringLiteral("a<b>&\"'c"),
                                    QStringLiteral("  "), QStringLiteral("ЗУ\t1\n2"), QStringLiteral("𐐀]]>")});
}

double anyCoordinate(Numbers &numbers)
{
    const double usual = std::uniform_real_distribution<double>(-1e7, 1e7)(numbers);
    return anyOf<double>(numbers, {usual, usual, usual, 0.125, -0.001, -0.0, 1e15, 1e300, qInf(), -qInf(), qQNaN()});
}

DefPolygon anyObject(Numbers &numbers)
{
    DefPolygon object{anyText(numbers), {}};
    for (int contour = upTo(numbers, 3); contour > 0; --contour) {
        object.contours.append(QVector<DefPoint>());
        for (int vertex = upTo(numbers, 3); vertex > 0; --vertex)
            object.contours.last().append(DefPoint{anyText(numbers), anyCoordinate(numbers), anyCoordinate(numbers)});
    }
    return object;
}

int anyColumn(Numbers &numbers)
{
    return anyOf<int>(numbers, {std::numeric_limits<int>::min(), -1, 0, 1, 2, 2, 3, 4, 30});
}

/// Fills in what the host and the user give.
void fill(Dialog &dialog, Numbers &numbers)
{
    setColumns(dialog, anyColumn(numbers), anyColumn(numbers), anyColumn(numbers));
    dialog.defColNum = upTo(numbers, 3) - 1;
    dialog.objectTableName = anyText(numbers);
    dialog.pointTableName = anyText(numbers);
    dialog.fieldNumValueMap.clear();
    for (int field = upTo(numbers, 4); field > 0; --field)
        dialog.fieldNumValueMap.insert(upTo(numbers, 8) - 1, anyText(numbers));
    dialog.objects.clear();
    for (int object = upTo(numbers, 4); object > 0; --object)
        dialog.objects.append(anyObject(numbers));
}

void startTable(QXmlStreamWriter &writer, const QString &name)
{
    writer.writeStartElement(table);
    if (!name.isEmpty())
        writer.writeAttribute(QStringLiteral("Name"), name);
}

bool isEmptyRow(const QAbstractItemModel &model, int i)
{
    for (int column = 0; column < model.columnCount(); ++column) {
        if (!model.data(model.index(i, column), Qt::DisplayRole).isNull())
            return false;
    }
    return true;
}

void walkRow(QXmlStreamWriter &writer, const QAbstractItemModel &model, int i)
{
    if (isEmptyRow(model, i)) {
        writer.writeEmptyElement(row);
        return;
    }
    writer.writeStartElement(row);
    for (int column = 0; column < model.columnCount(); ++column) {
        const QModelIndex index = model.index(i, column);
        if (model.data(index, Qt::DisplayRole).isNull())
            writer.writeEmptyElement(cell);
        else
            writer.writeTextElement(cell, model.data(index, Qt::EditRole).toString());
    }
    writer.writeEndElement();
}

QString plainWalk(const Dialog &dialog)
{
    QString document;
    QXmlStreamWriter writer(&document);
    writer.setAutoFormatting(true);
    DefPolygonTableModel model;
    model.setNxyColNum(dialog.nColNum, dialog.xColNum, dialog.yColNum);
    model.setFieldNumValueMap(dialog.fieldNumValueMap);
    startTable(writer, dialog.objectTableName);
    for (DefPolygon object : dialog.objects) {
        model.setPolygon(&object);
        writer.writeStartElement(row);
        for (int i = 0; i < dialog.defColNum; ++i)
            writer.writeEmptyElement(cell);
        writer.writeTextElement(cell, object.def);
        startTable(writer, dialog.pointTableName);
        for (int i = 0; i < model.rowCount(); ++i)
            walkRow(writer, model, i);
        writer.writeEndElement();
        writer.writeEndElement();
        model.setPolygon(nullptr);
    }
    writer.writeEndElement();
    return document;
}

} // namespace

void tst_DialogResultWalk::initTestCase()
{
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
}

void tst_DialogResultWalk::init()
{
    settings.clear();
}

void tst_DialogResultWalk::documentIsThatOfAPlainWalk_data()
{
    QTest::addColumn<int>("start");

    for (int start = 1; start <= 10; ++start)
        QTest::addRow("objects from number %d", start) << start;
}

void tst_DialogResultWalk::documentIsThatOfAPlainWalk()
{
    QFETCH(int, start);
    Numbers numbers(static_cast<unsigned>(start));
    Dialog dialog;

    for (int i = 0; i < 200; ++i) {
        fill(dialog, numbers);
        QCOMPARE(dialog.stringResult(), plainWalk(dialog));
    }
}

QTEST_MAIN(tst_DialogResultWalk)
#include "tst_dialog_result_walk.moc"
