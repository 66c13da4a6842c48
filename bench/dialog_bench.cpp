// Measures the dialog with 100,000 objects and with an object of 100,000 vertices, and compares the figures with
// bounds.
//
//     dialog_bench [--markdown] [--benchmark_filter=...]
//
// Runs on the platform "offscreen" and prints a Markdown table to standard output. --markdown has no effect; it is
// accepted because import_bench needs it.

#include "actiontable.h"
#include "machine.h"
#include "viewtesting.h"

#include <QApplication>
#include <QScrollBar>
#include <QXmlStreamWriter>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <random>

namespace {

constexpr int count = 100000;
constexpr int verticesInResult = 10; // of each object
constexpr int bigObjectRow = 1;      // row of the big object in the list

// In the order of the table.
const QVector<Bound> bounds{
    {"list/show", "показать список 100 000 объектов, мс", 600},
    {"list/rename", "переименовать объект в нём, мс", 600},
    {"list/select", "выбрать объект в нём, мс", 30},
    {"list/scroll", "прокрутить его на страницу, мс", 30},
    {"table/show", "показать таблицу 100 000 вершин, мс", 600},
    {"table/rename", "переименовать вершину в ней, мс", 600},
    {"table/select", "выбрать объект с ними, мс", 30},
    {"table/scroll", "прокрутить её на страницу, мс", 30},
    {"sort", "отсортировать 100 000 объектов, мс", 0},
    {"result/3_columns", "результат, 1 млн вершин, 3 столбца, к записи одним QXmlStreamWriter", 0.2},
    {"result/8_columns", "то же, 8 столбцов с полями", 0.2},
    {"result/memory", "память для результата к его тексту", 1.1},
};

DefPolygon bigObject()
{
    DefPolygon object{QStringLiteral("большой"), {{}}};
    for (int i = 0; i < count; ++i)
        object.contours[0].append(DefPoint{QStringLiteral("н%1").arg(i), 1e6 + i / 7.0, 2e6 + i * 1.37});
    return object;
}

QVector<DefPolygon> manyObjects()
{
    QVector<DefPolygon> objects;
    for (int i = 0; i < count; ++i)
        objects.append(DefPolygon{QStringLiteral("Участок 50:21:%1").arg(i), {{point("н1"), point("н2", 1005)}}});
    objects[bigObjectRow] = bigObject();
    return objects;
}

/// A visible dialog after a run, with the imported objects replaced by generated ones.
class DialogFixture
{
public:
    explicit DialogFixture(const QVector<DefPolygon> &objects)
    {
        dialog.resize(1200, 900);
        showPlan(dialog, m_files);
        setObjects(objects);
    }

    void setObjects(const QVector<DefPolygon> &objects)
    {
        dialog.polygonModel.detachPolygon();
        dialog.mapModel.detachMap();
        dialog.objects = objects;
        dialog.polygonModel.setPolygon(&dialog.objects.first());
        dialog.mapModel.setMap(&dialog.objects);
        paint();
    }

    /// Completes layout and painting.
    void paint()
    {
        QCoreApplication::processEvents();
        dialog.repaint();
    }

    double timeToPaint(const std::function<void()> &action)
    {
        return timeOf([&] {
            action();
            paint();
        });
    }

    Dialog dialog;

private:
    TextFixture m_files;
};

/// The dialog with all objects; shared, because filling it is slow.
DialogFixture &fixture()
{
    static DialogFixture fixture(manyObjects());
    return fixture;
}

void scrollByPage(QAbstractItemView &view)
{
    QScrollBar *const bar = view.verticalScrollBar();
    bar->setValue(bar->value() + bar->pageStep());
}

/// Alternates between \a row and rows far from it.
int alternatingRow(int row)
{
    static int turn = 0;
    return ++turn % 2 == 0 ? row : count / 2 + turn;
}

QString newName()
{
    static int number = 0;
    return QStringLiteral("новый %1").arg(++number);
}

double showList()
{
    DialogFixture &f = fixture();
    f.dialog.mapModel.setMap(nullptr);
    f.paint();
    return f.timeToPaint([&] { f.dialog.mapModel.setMap(&f.dialog.objects); });
}

double renameObject()
{
    DialogFixture &f = fixture();
    const QModelIndex index = f.dialog.mapModel.index(count / 2, 0);
    return f.timeToPaint([&] { f.dialog.mapModel.setData(index, newName()); });
}

double selectObject()
{
    selectRow(fixture().dialog, alternatingRow(0));
    fixture().paint();
    return fixture().timeToPaint([] { selectRow(fixture().dialog, alternatingRow(0)); });
}

double scrollList()
{
    return fixture().timeToPaint([] { scrollByPage(*listOf(fixture().dialog)); });
}

double showTable()
{
    DialogFixture &f = fixture();
    f.dialog.polygonModel.setPolygon(nullptr);
    f.paint();
    return f.timeToPaint([&] { f.dialog.polygonModel.setPolygon(&f.dialog.objects[bigObjectRow]); });
}

double renameVertex()
{
    DialogFixture &f = fixture();
    f.dialog.polygonModel.setPolygon(&f.dialog.objects[bigObjectRow]);
    f.paint();
    const QModelIndex index = f.dialog.polygonModel.index(5, f.dialog.polygonModel.columnCount() - 3);
    return f.timeToPaint([&] { f.dialog.polygonModel.setData(index, newName()); });
}

double selectBigObject()
{
    selectRow(fixture().dialog, count / 2);
    fixture().paint();
    return fixture().timeToPaint([] { selectRow(fixture().dialog, bigObjectRow); });
}

double scrollTable()
{
    selectRow(fixture().dialog, bigObjectRow);
    fixture().paint();
    return fixture().timeToPaint([] { scrollByPage(*tableViewOf(fixture().dialog)); });
}

double sortShuffled()
{
    QVector<DefPolygon> objects = fixture().dialog.objects;
    std::shuffle(objects.begin(), objects.end(), std::mt19937(1));
    return timeOf([&] { sortObjects(objects); });
}

/// The texts of the cells of a vertex; null for a cell without a value.
using Row = QVector<QString>;

/// A dialog with a million vertices, and the expected cells of its result.
struct Result
{
    explicit Result(int columns)
    {
        setColumns(dialog, 0, 1, 2);
        for (int column = 3; column < columns; column += 2)
            dialog.fieldNumValueMap.insert(column, QStringLiteral("поле %1").arg(column));
        for (int i = 0; i < count; ++i)
            appendObject(i);
        for (const DefPolygon &object : qAsConst(dialog.objects))
            appendRows(object, columns);
    }

    void appendObject(int number)
    {
        DefPolygon object{QStringLiteral("ЗУ%1").arg(number), {{}}};
        for (int i = 0; i < verticesInResult; ++i) {
            const int vertex = number * verticesInResult + i;
            const DefPoint p{QStringLiteral("н%1").arg(vertex), 1e6 + vertex / 7.0, 2e6 + vertex * 1.37};
            object.contours[0].append(p);
        }
        dialog.objects.append(object);
    }

    // Called after all objects have been appended: the objects then lie close together in memory, as after an import.
    void appendRows(const DefPolygon &object, int columns)
    {
        for (const DefPoint &p : object.contours.first()) {
            Row row{p.def, QString::number(p.x, 'f', 2), QString::number(p.y, 'f', 2)};
            for (int column = row.size(); column < columns; ++column)
                row.append(dialog.fieldNumValueMap.value(column));
            rows.append(row);
        }
    }

    Dialog dialog;
    QVector<Row> rows;
};

void writeRow(QXmlStreamWriter &writer, const Row &row)
{
    writer.writeStartElement(QStringLiteral("Row"));
    for (const QString &text : row) {
        if (text.isNull())
            writer.writeEmptyElement(QStringLiteral("Cell"));
        else
            writer.writeTextElement(QStringLiteral("Cell"), text);
    }
    writer.writeEndElement();
}

/// Writes the same document with QXmlStreamWriter alone, from prepared texts.
QString writeWithStreamWriter(const Result &result)
{
    QString document;
    QXmlStreamWriter writer(&document);
    writer.setAutoFormatting(true);
    writer.writeStartElement(QStringLiteral("FormTable"));
    for (int i = 0; i < count; ++i) {
        writer.writeStartElement(QStringLiteral("Row"));
        writer.writeTextElement(QStringLiteral("Cell"), result.dialog.objects.at(i).def);
        writer.writeStartElement(QStringLiteral("FormTable"));
        for (int row = i * verticesInResult; row < (i + 1) * verticesInResult; ++row)
            writeRow(writer, result.rows.at(row));
        writer.writeEndElement();
        writer.writeEndElement();
    }
    writer.writeEndElement();
    return document;
}

template <int columns>
Result &resultOf()
{
    static Result result(columns);
    static const bool isSame = writeWithStreamWriter(result) == result.dialog.stringResult();
    if (!isSame)
        qFatal("the documents differ");
    return result;
}

/// Time of stringResult() relative to QXmlStreamWriter alone. The latter is measured before and after, because
/// processor speed varies.
double resultRatio(Result &result)
{
    const auto timeOfStreamWriter = [&] { return timeOf([&] { writeWithStreamWriter(result); }); };
    const double before = timeOfStreamWriter();
    const double document = timeOf([&] { result.dialog.stringResult(); });
    return document / ((before + timeOfStreamWriter()) / 2);
}

/// Peak memory of stringResult() relative to the size of the document.
double resultMemory()
{
    Result &result = resultOf<3>();
    QFile peak(QStringLiteral("/proc/self/clear_refs"));
    if (peak.open(QIODevice::WriteOnly))
        peak.write("5"); // resets the peak
    peak.close();
    const double before = residentMemory();
    const QString document = result.dialog.stringResult();
    return (peakMemory() - before) / (static_cast<double>(document.size()) * sizeof(QChar));
}

void addAll()
{
    addAction("list/show", showList);
    addAction("list/rename", renameObject);
    addAction("list/select", selectObject);
    addAction("list/scroll", scrollList);
    addAction("table/show", showTable);
    addAction("table/rename", renameVertex);
    addAction("table/select", selectBigObject);
    addAction("table/scroll", scrollTable);
    addAction("sort", sortShuffled);
    addAction("result/3_columns", [] { return resultRatio(resultOf<3>()); });
    addAction("result/8_columns", [] { return resultRatio(resultOf<8>()); });
    addAction("result/memory", resultMemory);
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // Static, because the dialogs live until the process ends.
    static const QApplication app(argc, argv);
    static const SettingsSandbox settings;
    benchmark::Initialize(&argc, argv);
    addAll();
    ActionTable table(bounds);
    benchmark::RunSpecifiedBenchmarks(&table);
    return 0;
}
