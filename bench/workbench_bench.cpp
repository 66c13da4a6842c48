// Measures the workbench with a million vertices, in 100,000 objects and in a single one, and compares the figures with
// bounds.
//
//     workbench_bench [--markdown] [--benchmark_filter=...]
//
// Runs on the platform "offscreen" and prints a Markdown table to standard output. --markdown has no effect; it is
// accepted because import_bench needs it.

#include "actiontable.h"
#include "machine.h"
#include "pictureview.h"
#include "resultreader.h"
#include "workbenchwindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QSettings>
#include <QTemporaryDir>
#include <QWheelEvent>

#include <cmath>

namespace {

constexpr int rowCount = 250; // of parcels
constexpr int columnCount = 400;
constexpr int parcelVertexCount = 9;    // without the closing vertex: 5 up one long side, 4 down the other
constexpr int vertexCount = 1000000;    // of the single object
const GeometryInfo columns{0, 1, 2, 0}; // point number, X, Y; designation
constexpr double pi = 3.14159265358979323846;

// In the order of the table.
const QVector<Bound> bounds{
    {"read", "прочитать результат, 1 млн вершин в 100 000 объектов, мс", 2500},
    {"window", "то же и показать в окне: рисунок, списки, текст, мс", 3000},
    {"all/show", "из них рисунок, мс", 500},
    {"all/zoom", "увеличить или уменьшить, когда видно всё, мс", 50},
    {"all/pan", "сдвинуть, когда видно всё, мс", 50},
    {"some/zoom", "увеличить или уменьшить, когда видна сотая часть, мс", 50},
    {"some/pan", "сдвинуть, когда видна сотая часть, мс", 50},
    {"names/pan", "сдвинуть, когда видны номера и обозначения, мс", 50},
    {"select", "выделить объект, мс", 50},
    {"big/show", "показать один объект, 1 млн вершин, мс", 500},
    {"big/zoom", "увеличить или уменьшить его, мс", 50},
    {"big/pan", "сдвинуть его, мс", 50},
    {"memory", "наибольшая память всего процесса вместе с текстом результата, МБ", 1200},
};

void appendCell(QString &text, const QString &indent, const QString &cell)
{
    text += indent + QStringLiteral("<Cell>%1</Cell>\n").arg(cell);
}

void appendVertex(QString &text, int number, const QPointF &xy)
{
    const QString indent = QStringLiteral("                ");
    text += QStringLiteral("            <Row>\n");
    appendCell(text, indent, QStringLiteral("н%1").arg(number));
    appendCell(text, indent, QString::number(xy.x(), 'f', 2));
    appendCell(text, indent, QString::number(xy.y(), 'f', 2));
    text += QStringLiteral("            </Row>\n");
}

/// A corner of the mosaic; neighbours share it.
QPointF corner(int row, int column)
{
    const double jitter = (row * 7919 + column * 104729) % 1000 / 100.0;
    return {500000 + row * 48 + jitter, 2200000 + column * 30 + jitter};
}

void appendParcel(QString &text, int row, int column)
{
    const int number = (row * columnCount + column) * (parcelVertexCount + 1);
    text += QStringLiteral("    <Row>\n");
    appendCell(text, QStringLiteral("        "),
               QStringLiteral("50:21:%1:%2").arg(row, 7, 10, QLatin1Char('0')).arg(column));
    text += QStringLiteral("        <FormTable Name=\"Координаты\">\n");
    for (int i = 0; i <= parcelVertexCount; ++i) {
        // Up one side and down the other.
        const int side = i % parcelVertexCount;
        const bool isUp = side < 5;
        const double part = isUp ? side / 4.0 : (parcelVertexCount - 1 - side) / 3.0;
        const QPointF from = corner(row, column + (isUp ? 0 : 1));
        const QPointF to = corner(row + 1, column + (isUp ? 0 : 1));
        appendVertex(text, number + side, from + (to - from) * part);
    }
    text += QStringLiteral("        </FormTable>\n    </Row>\n");
}

/// A result of a million vertices, as the plug-in writes it.
const QString &resultText()
{
    static const QString text = [] {
        QString document;
        document.reserve(170000000);
        document += QStringLiteral("<FormTable Name=\"Участки\">\n");
        for (int row = 0; row < rowCount; ++row) {
            for (int column = 0; column < columnCount; ++column)
                appendParcel(document, row, column);
        }
        return document + QStringLiteral("</FormTable>\n");
    }();
    return text;
}

ImportResult readResult()
{
    ResultReader reader(columns);
    if (!reader.read(resultText()))
        qFatal("%s", qPrintable(reader.error()));
    return reader.result();
}

const ImportResult &manyObjects()
{
    static const ImportResult result = readResult();
    return result;
}

/// A ring with a coastline's detail.
ImportResult bigObject()
{
    ImportResult result;
    for (int i = 0; i < vertexCount; ++i) {
        const double angle = 2 * pi * (i % (vertexCount - 1)) / (vertexCount - 1);
        const double radius = 5000 + 300 * std::sin(40 * angle) + 5 * std::sin(1e5 * angle) + i % 7 / 10.0;
        const QPointF xy(1e6 + radius * std::cos(angle), 2e6 + radius * std::sin(angle));
        result.appendVertex(xy, QByteArray::number(i) + '\0');
    }
    result.vertices.last() = result.vertices.first();
    result.contours.append({0, vertexCount, true});
    result.objects.append({QStringLiteral("берег"), 0, 1, 0, vertexCount});
    return result;
}

/// Returns the prepared result instead of importing.
class PreparedPlugin : public ImportGeometryInterface
{
public:
    QList<QString> operations() const override { return {QStringLiteral("import")}; }
    QString operation(const QString & /*op*/, const QString & /*formName*/, const QString & /*objectTableName*/,
                      const QString & /*pointTableName*/, const GeometryInfo & /*info*/,
                      void (* /*statusFunc*/)(const QString &)) override
    {
        return resultText();
    }
};

/// The time from the return of the plug-in until the window is idle, in milliseconds.
double showWindow()
{
    static PreparedPlugin plugin;
    HostOptions options;
    options.columns = columns;
    WorkbenchWindow window(plugin, options);
    window.resize(1200, 800);
    window.show();
    QCoreApplication::processEvents();
    return timeOf([&window] {
        window.runOperation(QStringLiteral("import"));
        QCoreApplication::processEvents();
    });
}

/// A visible picture, and the time that its actions take including the painting.
class PictureFixture
{
public:
    explicit PictureFixture(const ImportResult &result)
    {
        view.resize(1200, 800);
        view.show();
        QCoreApplication::processEvents();
        view.setResult(result);
        view.viewport()->repaint();
    }

    double zoom(int steps)
    {
        const QPointF middle(610, 390);
        QWheelEvent event(middle, middle, QPoint(), QPoint(0, 120 * steps), Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        return timeToPaint([&] { QCoreApplication::sendEvent(view.viewport(), &event); });
    }

    double pan(Qt::Key key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        return timeToPaint([&] { QCoreApplication::sendEvent(&view, &event); });
    }

    double timeToPaint(const std::function<void()> &action)
    {
        return timeOf([&] {
            action();
            view.viewport()->repaint();
        });
    }

    PictureView view;
};

// Never deleted: at exit, Qt's static objects would be destroyed before the view.
PictureFixture &manyFixture()
{
    static auto *const fixture = new PictureFixture(manyObjects());
    return *fixture;
}

PictureFixture &bigFixture()
{
    static auto *const fixture = new PictureFixture(bigObject());
    return *fixture;
}

double show(PictureFixture &fixture, const ImportResult &result)
{
    return fixture.timeToPaint([&] { fixture.view.setResult(result); });
}

/// Measures one step of zooming, alternately in from and out to \a steps from the whole picture.
double zoom(PictureFixture &fixture, int steps)
{
    static bool isIn = false;
    isIn = !isIn;
    fixture.view.fit();
    fixture.zoom(isIn ? steps : steps + 1);
    return fixture.zoom(isIn ? 1 : -1);
}

double pan(PictureFixture &fixture, int steps)
{
    static bool isLeft = false;
    isLeft = !isLeft;
    fixture.view.fit();
    fixture.zoom(steps);
    return fixture.pan(isLeft ? Qt::Key_Left : Qt::Key_Up);
}

double selectObject()
{
    static int object = 0;
    manyFixture().view.fit();
    manyFixture().view.viewport()->repaint();
    object += 11003;
    return manyFixture().timeToPaint([] { manyFixture().view.setCurrentObject(object % (rowCount * columnCount)); });
}

void addAll()
{
    addAction("read", [] { return timeOf([] { readResult(); }); });
    addAction("window", showWindow);
    addAction("all/show", [] { return show(manyFixture(), manyObjects()); });
    addAction("all/zoom", [] { return zoom(manyFixture(), 0); });
    addAction("all/pan", [] { return pan(manyFixture(), 0); });
    addAction("some/zoom", [] { return zoom(manyFixture(), 10); });
    addAction("some/pan", [] { return pan(manyFixture(), 10); });
    addAction("names/pan", [] { return pan(manyFixture(), 17); });
    addAction("select", selectObject);
    addAction("memory", [] { return peakMemory() / 1e6; });
    addAction("big/show", [] { return show(bigFixture(), bigObject()); });
    addAction("big/zoom", [] { return zoom(bigFixture(), 0); });
    addAction("big/pan", [] { return pan(bigFixture(), 0); });
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication app(argc, argv);
    const QTemporaryDir settings; // for the window
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
    benchmark::Initialize(&argc, argv);
    addAll();
    ActionTable table(bounds);
    benchmark::RunSpecifiedBenchmarks(&table);
    return 0;
}
