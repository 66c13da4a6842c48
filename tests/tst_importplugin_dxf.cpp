// Entities are written in one line each, codes and values in turn: «0 LINE 10 0 20 0 11 10 21 0».

#include "pluginhost.h"
#include "resultoutline.h"

#include <QTest>

namespace {

const QString opening = QStringLiteral("0 SECTION 2 HEADER 0 ENDSEC 0 SECTION 2 ENTITIES");
const QString closing = QStringLiteral("0 ENDSEC 0 EOF");

/// Writes a drawing; the first pair of its entities stands in lines 11 and 12.
QString writeDrawing(const PluginHost &host, const QString &name, const QStringList &entities)
{
    const QStringList parts = QStringList{opening} + entities + QStringList{closing};
    return host.write(name, parts.join(QLatin1Char(' ')).split(QLatin1Char(' ')));
}

/// Two lines from (0, 0), points on both ends of the first, a number at either point and in the middle, and a name
/// beside each line.
QString writeObjects(const PluginHost &host)
{
    return writeDrawing(host, QStringLiteral("objects.dxf"),
                        {QStringLiteral("0 POINT 10 0 20 0"), QStringLiteral("0 CIRCLE 10 10 20 0 40 0.5"),
                         QStringLiteral("0 TEXT 10 0 20 1 1 1"), QStringLiteral("0 TEXT 10 10 20 1 1 н2"),
                         QStringLiteral("0 TEXT 10 5 20 1 1 15"), QStringLiteral("0 TEXT 10 5 20 3 1 ЗУ7"),
                         QStringLiteral("0 TEXT 10 3 20 10 1 ЗУ8"), QStringLiteral("0 LINE 10 0 20 0 11 10 21 0"),
                         QStringLiteral("0 LINE 10 0 20 0 11 0 21 20")});
}

/// Points on both ends of the second line with a number each, and a name that no object takes.
QString writePoints(const PluginHost &host)
{
    return writeDrawing(host, QStringLiteral("points.dxf"),
                        {QStringLiteral("0 POINT 10 0 20 0"), QStringLiteral("0 INSERT 2 знак 10 0 20 20"),
                         QStringLiteral("0 TEXT 10 0 20 1 1 51"), QStringLiteral("0 TEXT 10 0 20 19 1 52"),
                         QStringLiteral("0 TEXT 10 5 20 0 1 ЗУ9")});
}

} // namespace

class tst_ImportPluginDxf : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void optionsDecideOnTheSources_data();
    void optionsDecideOnTheSources();
    void drawingGoesToTheHost();
    void specialSignsAreDecoded();
    void failureIsToldOnce_data();
    void failureIsToldOnce();
    void failedTextsPassIsOnlyTold();
    void otherFileIsRefused_data();
    void otherFileIsRefused();
};

void tst_ImportPluginDxf::optionsDecideOnTheSources_data()
{
    QTest::addColumn<bool>("searchPoints");
    QTest::addColumn<bool>("hasPointFile");
    QTest::addColumn<bool>("searchObjects");
    QTest::addColumn<QStringList>("objects");

    const QStringList numbered{
        QStringLiteral(":ЗУ1"), QStringLiteral("  н1|0.00|0.00"), QStringLiteral("  н2|10.00|0.00"),
        QStringLiteral(":ЗУ2"), QStringLiteral("  н1|0.00|0.00"), QStringLiteral("  н3|0.00|20.00")};
    QTest::newRow("nothing") << false << false << false << numbered;
    QTest::newRow("nothing, in spite of a point file") << false << true << false << numbered;

    const QStringList named{QStringLiteral("ЗУ7"), QStringLiteral("  н1|0.00|0.00"), QStringLiteral("  н2|10.00|0.00"),
                            QStringLiteral("ЗУ8"), QStringLiteral("  н1|0.00|0.00"), QStringLiteral("  н3|0.00|20.00")};
    QTest::newRow("objects") << false << false << true << named;
    QTest::newRow("objects, in spite of a point file") << false << true << true << named;

    QTest::newRow("points") << true << false << false << QStringList{QStringLiteral(":ЗУ1"),
                                                                     QStringLiteral("  1|0.00|0.00"),
                                                                     QStringLiteral("  н2|10.00|0.00"),
                                                                     QStringLiteral(":ЗУ2"),
                                                                     QStringLiteral("  1|0.00|0.00"),
                                                                     QStringLiteral("  н1|0.00|20.00")};
    QTest::newRow("points and objects") << true << false << true << QStringList{QStringLiteral("ЗУ7"),
                                                                                QStringLiteral("  1|0.00|0.00"),
                                                                                QStringLiteral("  н2|10.00|0.00"),
                                                                                QStringLiteral("ЗУ8"),
                                                                                QStringLiteral("  1|0.00|0.00"),
                                                                                QStringLiteral("  н1|0.00|20.00")};
    QTest::newRow("points of their own file")
        << true << true << false
        << QStringList{QStringLiteral(":ЗУ1"), QStringLiteral("  51|0.00|0.00"), QStringLiteral("  н1|10.00|0.00"),
                       QStringLiteral(":ЗУ2"), QStringLiteral("  51|0.00|0.00"), QStringLiteral("  52|0.00|20.00")};
    QTest::newRow("points of their own file and objects")
        << true << true << true
        << QStringList{QStringLiteral("ЗУ7"), QStringLiteral("  51|0.00|0.00"), QStringLiteral("  н1|10.00|0.00"),
                       QStringLiteral("ЗУ8"), QStringLiteral("  51|0.00|0.00"), QStringLiteral("  52|0.00|20.00")};
}

void tst_ImportPluginDxf::optionsDecideOnTheSources()
{
    QFETCH(bool, searchPoints);
    QFETCH(bool, hasPointFile);
    QFETCH(bool, searchObjects);
    QFETCH(QStringList, objects);
    PluginHost host;

    const QString result = host.call(fromDxf, [&](DialogDriver &driver) {
        driver.chooseEncoding(QStringLiteral("UTF-8"));
        driver.setChecked("searchPointDefsCheck", searchPoints);
        driver.setChecked("searchObjectDefsCheck", searchObjects);
        driver.setChecked("usePointFileCheck", hasPointFile);
        if (hasPointFile)
            driver.type("pointFileNameEdit", writePoints(host));
        driver.process(writeObjects(host));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result), objects);
    QCOMPARE(host.messages(), QStringList());
}

// An open polyline, and a light-weight one that is closed; the line in the block and the arc are no objects.
void tst_ImportPluginDxf::drawingGoesToTheHost()
{
    PluginHost host;
    host.columns = {2, 0, 1, 0};

    const QString result = host.call(fromDxf, [&host](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", false);
        driver.setChecked("searchObjectDefsCheck", false);
        driver.process(host.write(QStringLiteral("a.dxf"),
                                  QStringLiteral("0 SECTION 2 HEADER 0 ENDSEC 0 SECTION 2 BLOCKS 0 BLOCK "
                                                 "0 LINE 10 7 20 7 11 8 21 8 0 ENDBLK 0 ENDSEC 0 SECTION 2 ENTITIES "
                                                 "0 POLYLINE 66 1 70 0 10 0 20 0 0 VERTEX 10 1.5 20 2 30 9 "
                                                 "0 VERTEX 10 -3 20 4.004 0 SEQEND 0 ARC 10 5 20 5 40 1 "
                                                 "0 LWPOLYLINE 90 2 70 1 10 1.5 20 2 10 5 20 6.25 0 ENDSEC 0 EOF")
                                      .split(QLatin1Char(' '))));
        driver.accept();
    });

    QCOMPARE(result, QString::fromUtf8(R"(
<FormTable Name="Участки">
    <Row>
        <Cell>:ЗУ1</Cell>
        <FormTable Name="Координаты">
            <Row>
                <Cell>1.50</Cell>
                <Cell>2.00</Cell>
                <Cell>н1</Cell>
            </Row>
            <Row>
                <Cell>-3.00</Cell>
                <Cell>4.00</Cell>
                <Cell>н2</Cell>
            </Row>
        </FormTable>
    </Row>
    <Row>
        <Cell>:ЗУ2</Cell>
        <FormTable Name="Координаты">
            <Row>
                <Cell>1.50</Cell>
                <Cell>2.00</Cell>
                <Cell>н1</Cell>
            </Row>
            <Row>
                <Cell>5.00</Cell>
                <Cell>6.25</Cell>
                <Cell>н3</Cell>
            </Row>
            <Row>
                <Cell>1.50</Cell>
                <Cell>2.00</Cell>
                <Cell>н1</Cell>
            </Row>
        </FormTable>
    </Row>
</FormTable>)"));
    QCOMPARE(host.messages(), QStringList());
}

// Byte 199 is a letter of the chosen encoding.
void tst_ImportPluginDxf::specialSignsAreDecoded()
{
    PluginHost host;

    host.call(fromDxf, [&host](DialogDriver &driver) {
        driver.chooseEncoding(QStringLiteral("Windows-1251"));
        driver.process(writeDrawing(host, QStringLiteral("a.dxf"),
                                    {QStringLiteral("0 TEXT 10 1 20 1 1 %%c20%%d%%p1%%199%%D"),
                                     QStringLiteral("0 LINE 10 0 20 0 11 10 21 0")}));
        QCOMPARE(DialogDriver::shown(driver.list()), QStringList{QStringLiteral("Ø20°±1З%%D")});
    });
}

void tst_ImportPluginDxf::failureIsToldOnce_data()
{
    QTest::addColumn<QStringList>("entities");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<QStringList>("objects");

    const QString line = QStringLiteral("0 LINE 10 1 20 2 11 3 21 4"); // up to line 20
    const QStringList lineObject{QStringLiteral(":ЗУ1"), QStringLiteral("  н1|1.00|2.00"),
                                 QStringLiteral("  н2|3.00|4.00")};

    QTest::newRow("line with a comma") << QStringList{line, QStringLiteral("0 LINE 10 1,5 20 2 11 3 21 4")}
                                       << QStringList{QStringLiteral("Ошибка чтения DXF файла в строке: 24")}
                                       << lineObject;
    QTest::newRow("polyline cut short") << QStringList{line,
                                                       QStringLiteral("0 POLYLINE 70 0 0 VERTEX 10 1 20 2 0 LINE")}
                                        << QStringList{QStringLiteral("Ошибка чтения DXF файла в строке: 32")}
                                        << lineObject + QStringList{QString(), QStringLiteral("  н1|1.00|2.00")};
    QTest::newRow("light-weight polyline of one vertex")
        << QStringList{line, QStringLiteral("0 LWPOLYLINE 90 1 10 7 20 8")}
        << QStringList{QStringLiteral("Ошибка чтения DXF файла в строке: 28")} << lineObject + QStringList{QString()};
    QTest::newRow("text without position, in the points pass")
        << QStringList{line, QStringLiteral("0 TEXT 1 ЗУ7")}
        << QStringList{QStringLiteral("Ошибка чтения DXF файла в строке: 26")} << QStringList();
}

void tst_ImportPluginDxf::failureIsToldOnce()
{
    QFETCH(QStringList, entities);
    QFETCH(QStringList, messages);
    QFETCH(QStringList, objects);
    PluginHost host;

    const QString result = host.call(fromDxf, [&](DialogDriver &driver) {
        driver.process(writeDrawing(host, QStringLiteral("a.dxf"), entities));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result), objects);
    QCOMPARE(host.messages(), messages);
}

// The objects pass goes on behind the text that failed, and begins with the next section of entities there.
void tst_ImportPluginDxf::failedTextsPassIsOnlyTold()
{
    PluginHost host;

    const QString result = host.call(fromDxf, [&host](DialogDriver &driver) {
        driver.setChecked("searchPointDefsCheck", false);
        driver.process(writeDrawing(host, QStringLiteral("a.dxf"),
                                    {QStringLiteral("0 LINE 10 1 20 2 11 3 21 4"), QStringLiteral("0 TEXT 10 1 20 1"),
                                     QStringLiteral("0 ENDSEC 0 SECTION 2 ENTITIES"),
                                     QStringLiteral("0 LINE 10 5 20 6 11 7 21 8")}));
        driver.accept();
    });

    QCOMPARE(ResultOutline::lines(result),
             (QStringList{QStringLiteral(":ЗУ1"), QStringLiteral("  н1|5.00|6.00"), QStringLiteral("  н2|7.00|8.00")}));
    QCOMPARE(host.messages(), QStringList{QStringLiteral("Ошибка чтения DXF файла в строке: 28")});
}

void tst_ImportPluginDxf::otherFileIsRefused_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("message");

    QTest::newRow("drawing without header, as DXF")
        << fromDxf << QStringLiteral("Ошибка. Файл %1 не соответствует формату DXF");
    QTest::newRow("drawing, as MIF") << fromMif << QStringLiteral("Ошибка. Файл %1 не соответствует формату MIF");
}

void tst_ImportPluginDxf::otherFileIsRefused()
{
    QFETCH(QString, operation);
    QFETCH(QString, message);
    PluginHost host;

    const QString result = host.call(operation, [&host](DialogDriver &driver) {
        driver.process(host.write(
            QStringLiteral("a.dxf"),
            QStringLiteral("0 SECTION 2 ENTITIES 0 LINE 10 1 20 2 11 3 21 4 0 EOF").split(QLatin1Char(' '))));
        driver.accept();
    });

    QCOMPARE(result, QStringLiteral("\n<FormTable Name=\"Участки\"/>"));
    QCOMPARE(host.messages(), QStringList{message.arg(host.path(QStringLiteral("a.dxf")))});
}

QTEST_MAIN(tst_ImportPluginDxf)
#include "tst_importplugin_dxf.moc"
