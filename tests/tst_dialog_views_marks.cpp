#include "modeltesting.h"
#include "viewtesting.h"

#include <QFontMetrics>
#include <QScrollBar>

#include <functional>

/// What is coloured in the views after runs, sorting and editing, and whether it can be read.
class tst_DialogViewsMarks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void marksFollowTheRuns();
    void marksFollowARunThatFails();
    void marksFollowTheSorting();
    void marksFollowTheEditing();
    void marksFollowTheCurrentRow();

    void longDesignationCanBeRead_data();
    void longDesignationCanBeRead();
    void renamedDesignationCanBeRead();
    void listHasTheFontOfTheTable();

private:
    void processLines(Dialog &dialog, const QString &defs, const QString &end = QString()) const;

    SettingsSandbox settings;
    TextFixture files;
};

namespace {

std::function<void()> &reaction()
{
    static std::function<void()> function;
    return function;
}

/// A letter for each row: "x" for a coloured one, "." for a plain one, "?" for another colour.
QString marksOf(const QAbstractItemModel &model)
{
    const QMap<QString, QChar> marks{{QStringLiteral("#ffdcdc"), QLatin1Char('x')},
                                     {QStringLiteral("none"), QLatin1Char('.')}};
    QString text;
    for (const QString &colour : backgroundsOf(model))
        text += marks.value(colour, QLatin1Char('?'));
    return text;
}

/// True when nothing of the text is left out when the row is painted, and the list can be scrolled to its end.
bool canBeRead(const QListView &list, int row)
{
    const QModelIndex index = list.model()->index(row, 0);
    const int width = QFontMetrics(list.font()).horizontalAdvance(index.data().toString());
    const int painted = list.visualRect(index).width();
    const int reached = list.horizontalScrollBar()->maximum() + list.viewport()->width();
    return width <= painted && list.sizeHintForIndex(index).width() <= painted && width <= reached;
}

} // namespace

void tst_DialogViewsMarks::initTestCase()
{
    QLocale::setDefault(QLocale::c());
}

void tst_DialogViewsMarks::init()
{
    settings.clear();
    setStatusFunc([](const QString & /*text*/) {
        if (reaction())
            reaction()();
    });
}

void tst_DialogViewsMarks::cleanup()
{
    setStatusFunc(nullptr);
    reaction() = nullptr;
}

/// Has \a dialog process a line for each of the designations, and \a end after them.
void tst_DialogViewsMarks::processLines(Dialog &dialog, const QString &defs, const QString &end) const
{
    enter(dialog, QStringLiteral("encodingCombo"), QStringLiteral("UTF-8"));
    enter(dialog, QStringLiteral("searchPointDefsCheck"), false);
    dialog.show();
    const QStringList records = defs.split(QLatin1Char(','));
    QStringList lines;
    for (int i = 0; i < records.size(); ++i)
        lines.append(QStringLiteral("LINE %1 0 %1 5").arg(i * 10));
    files.write(QStringLiteral("lines.mid"), records + QStringList{QStringLiteral("last")});
    process(dialog, files.write(QStringLiteral("lines.mif"), mifLines(lines + QStringList{end})));
    dialog.grab();
}

void tst_DialogViewsMarks::marksFollowTheRuns()
{
    Dialog dialog;
    processLines(dialog, QStringLiteral("а,А,б"));
    QCOMPARE(marksOf(dialog.mapModel), QStringLiteral("xx."));

    processLines(dialog, QStringLiteral("а,б,Б"));
    QCOMPARE(marksOf(dialog.mapModel), QStringLiteral(".xx"));

    processLines(dialog, QStringLiteral("а,в,Б"));
    QCOMPARE(marksOf(dialog.mapModel), QStringLiteral("..."));
}

// The host paints the views while it takes the message: whatever they ask for then must not be taken for the state
// after the run.
void tst_DialogViewsMarks::marksFollowARunThatFails()
{
    Dialog dialog;
    processLines(dialog, QStringLiteral("а,А,б"));
    int reactions = 0;
    QString marks;
    reaction() = [&] {
        ++reactions;
        dialog.grab();
        marks += marksOf(dialog.mapModel);
    };

    processLines(dialog, QStringLiteral("а,б,Б"), QStringLiteral("LINE"));

    QCOMPARE(reactions, 1);
    QCOMPARE(marks, QString());
    QCOMPARE(marksOf(dialog.mapModel), QStringLiteral(".xx"));
    process(dialog, files.path(QStringLiteral("missing.mif")));
    QCOMPARE(marksOf(dialog.mapModel), QString());
}

void tst_DialogViewsMarks::marksFollowTheSorting()
{
    Dialog dialog;
    processLines(dialog, QStringLiteral("б2,а,Б2"));
    QCOMPARE(marksOf(dialog.mapModel), QStringLiteral("x.x"));

    press(dialog, QStringLiteral("sortButton"));
    dialog.grab();

    QCOMPARE(marksOf(dialog.mapModel), QStringLiteral(".xx"));
}

void tst_DialogViewsMarks::marksFollowTheEditing()
{
    Dialog dialog;
    processLines(dialog, QStringLiteral("а,А,б"));

    QVERIFY(openEditor(listOf(dialog), QString()) != nullptr);
    type(listOf(dialog), QStringLiteral("Б"));
    dialog.grab();

    QCOMPARE(marksOf(dialog.mapModel), QStringLiteral("x.x"));
}

// The first object has one number at two places, the second has not.
void tst_DialogViewsMarks::marksFollowTheCurrentRow()
{
    Dialog dialog;
    processLines(dialog, QStringLiteral("а,б"));
    dialog.objects[0].contours[0][1].def = dialog.objects.at(0).contours.at(0).at(0).def;
    QCOMPARE(marksOf(dialog.polygonModel), QStringLiteral("xx"));

    selectRow(dialog, 1);
    QCOMPARE(marksOf(dialog.polygonModel), QStringLiteral(".."));
    selectRow(dialog, 0);
    QCOMPARE(marksOf(dialog.polygonModel), QStringLiteral("xx"));
}

void tst_DialogViewsMarks::longDesignationCanBeRead_data()
{
    QTest::addColumn<QString>("def");
    QTest::addColumn<int>("row");

    const QString cyrillic = QStringLiteral("Земельный участок 50:21:0110205:1234 ").repeated(6);
    const QString kerned = QStringLiteral("AVAVAV To fi ffl W. Ё́ ").repeated(20);
    const QString arabic = QStringLiteral("قطعة أرض ").repeated(30);
    for (const int row : {0, 25, 49}) {
        QTest::addRow("Cyrillic in row %d", row) << cyrillic << row;
        QTest::addRow("kerned letters in row %d", row) << kerned << row;
        QTest::addRow("joined letters in row %d", row) << arabic << row;
    }
}

void tst_DialogViewsMarks::longDesignationCanBeRead()
{
    QFETCH(QString, def);
    QFETCH(int, row);
    Dialog dialog;
    QStringList defs = QStringLiteral("а ").repeated(50).trimmed().split(QLatin1Char(' '));
    defs[row] = def;

    processLines(dialog, defs.join(QLatin1Char(',')));

    QVERIFY(QFontMetrics(listOf(dialog)->font()).horizontalAdvance(def) > listOf(dialog)->viewport()->width());
    for (const int i : {0, 25, 49})
        QVERIFY(canBeRead(*listOf(dialog), i));
}

void tst_DialogViewsMarks::renamedDesignationCanBeRead()
{
    Dialog dialog;
    processLines(dialog, QStringLiteral("а,б,в"));
    QCOMPARE(listOf(dialog)->horizontalScrollBar()->maximum(), 0);

    const QString def = QStringLiteral("Земельный участок ").repeated(10);
    QVERIFY(dialog.mapModel.setData(dialog.mapModel.index(1, 0), def));
    dialog.grab();

    QVERIFY(listOf(dialog)->horizontalScrollBar()->maximum() > 0);
    QVERIFY(canBeRead(*listOf(dialog), 1));
}

// Letters that are joined or kerned are drawn alike in both.
void tst_DialogViewsMarks::listHasTheFontOfTheTable()
{
    const Dialog dialog;

    QCOMPARE(listOf(dialog)->font(), tableViewOf(dialog)->font());
    QCOMPARE(listOf(dialog)->font().styleStrategy(), tableViewOf(dialog)->font().styleStrategy());
}

QTEST_MAIN(tst_DialogViewsMarks)
#include "tst_dialog_views_marks.moc"
