#include "fieldtesting.h"

#include <QLocale>
#include <QRandomGenerator>
#include <QTest>
#include <QXmlStreamWriter>

#include <limits>

/// Compares the result document with one that QXmlStreamWriter writes from the cells of the vertex table.
///
/// The environment variable RESULT_LOCALE selects the locale, Russian by default.
class tst_DialogResultOracle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void resultFixesLocale();
    void everyCodeUnitIsEscaped();
    void pairsOfSpecialCodeUnitsAreEscaped();
    void randomDocumentsMatchTheOracle_data();
    void randomDocumentsMatchTheOracle();

private:
    SettingsSandbox settings;
};

namespace {

const QString table = QStringLiteral("FormTable");
const QString row = QStringLiteral("Row");
const QString cell = QStringLiteral("Cell");

void startTable(QXmlStreamWriter &writer, const QString &name)
{
    writer.writeStartElement(table);
    if (!name.isEmpty())
        writer.writeAttribute(QStringLiteral("Name"), name);
}

bool isEmptyRow(const QAbstractItemModel &model, int i)
{
    for (int column = 0; column < model.columnCount(); ++column) {
        if (!model.index(i, column).data(Qt::DisplayRole).isNull())
            return false;
    }
    return true;
}

void writeVertexRow(QXmlStreamWriter &writer, const QAbstractItemModel &model, int i)
{
    if (isEmptyRow(model, i)) {
        writer.writeEmptyElement(row);
        return;
    }
    writer.writeStartElement(row);
    for (int column = 0; column < model.columnCount(); ++column) {
        const QModelIndex index = model.index(i, column);
        if (index.data(Qt::DisplayRole).isNull())
            writer.writeEmptyElement(cell);
        else
            writer.writeTextElement(cell, index.data(Qt::EditRole).toString());
    }
    writer.writeEndElement();
}

void writeObject(QXmlStreamWriter &writer, const Dialog &dialog, DefPolygon object)
{
    DefPolygonTableModel model;
    model.setNxyColNum(dialog.nColNum, dialog.xColNum, dialog.yColNum);
    model.setFieldNumValueMap(dialog.fieldNumValueMap);
    model.setPolygon(&object);
    writer.writeStartElement(row);
    for (int i = 0; i < dialog.defColNum; ++i)
        writer.writeEmptyElement(cell);
    writer.writeTextElement(cell, object.def);
    startTable(writer, dialog.pointTableName);
    for (int i = 0; i < model.rowCount(); ++i)
        writeVertexRow(writer, model, i);
    writer.writeEndElement();
    writer.writeEndElement();
}

QString oracle(const Dialog &dialog)
{
    QString document;
    QXmlStreamWriter writer(&document);
    writer.setAutoFormatting(true);
    startTable(writer, dialog.objectTableName);
    if (entered(dialog, QStringLiteral("updateCheck")).toBool())
        writer.writeAttribute(QStringLiteral("Update"), QStringLiteral("1"));
    for (const DefPolygon &object : dialog.objects)
        writeObject(writer, dialog, object);
    writer.writeEndElement();
    return document;
}

/// Compares line by line, because a whole document is too long for a message.
void compareWithOracle(Dialog &dialog)
{
    const QString document = dialog.stringResult();
    const QString expected = oracle(dialog);
    if (document == expected)
        return;
    const QStringList lines = document.split(QLatin1Char('\n'));
    const QStringList expectedLines = expected.split(QLatin1Char('\n'));
    for (int i = 0; i < expectedLines.size(); ++i)
        QCOMPARE(lines.value(i), expectedLines.at(i));
    QCOMPARE(lines.size(), expectedLines.size());
}

/// Markup, quotes, control characters, surrogates and the limits of the ranges that XML allows.
const QVector<ushort> specials{0,      1,      8,      9,      10,     11,     12,     13,    14,     31,     32,
                               '!',    '"',    '#',    '%',    '&',    '\'',   '(',    ';',   '<',    '=',    '>',
                               '?',    ']',    0x7E,   0x7F,   0x80,   0x85,   0x9F,   0x436, 0x2028, 0xD7FF, 0xD800,
                               0xDBFF, 0xDC00, 0xDFFF, 0xE000, 0xFEFF, 0xFFFD, 0xFFFE, 0xFFFF};

/// Random content for a dialog; the same number gives the same content.
class RandomContent
{
public:
    explicit RandomContent(int number) : m_random(static_cast<quint32>(number)) {}

    void fill(Dialog &dialog)
    {
        setColumns(dialog, column(), column(), column());
        dialog.defColNum = upTo(4) - 1;
        dialog.objectTableName = text();
        dialog.pointTableName = text();
        enter(dialog, QStringLiteral("updateCheck"), upTo(1) == 0);
        dialog.fieldNumValueMap.clear();
        for (int field = upTo(3); field > 0; --field)
            dialog.fieldNumValueMap.insert(upTo(9) - 1, text());
        dialog.objects.clear();
        for (int i = upTo(3); i > 0; --i)
            dialog.objects.append(DefPolygon{text(), contours()});
    }

private:
    int upTo(int last) { return m_random.bounded(last + 1); }

    template <class T>
    T anyOf(const QVector<T> &values)
    {
        return values.at(upTo(values.size() - 1));
    }

    QString text()
    {
        auto text = anyOf<QString>({QString(), QStringLiteral(""), QStringLiteral("н1"), QStringLiteral("а")});
        for (int i = upTo(3); i > 0; --i)
            text.append(QChar(upTo(1) == 0 ? anyOf(specials) : static_cast<ushort>(upTo(0xFFFF))));
        return text;
    }

    double coordinate()
    {
        const double usual = (m_random.generateDouble() - 0.5) * 2e7;
        return anyOf<double>({usual, usual, usual, 0.125, -0.001, -0.0, 1e15, 1e300, qInf(), -qInf(), qQNaN()});
    }

    Contours contours()
    {
        Contours contours(upTo(3));
        for (QVector<DefPoint> &contour : contours) {
            for (int i = upTo(3); i > 0; --i)
                contour.append(DefPoint{text(), coordinate(), coordinate()});
        }
        return contours;
    }

    // Few different numbers, so that columns often coincide.
    int column() { return upTo(49) == 0 ? 30 : anyOf<int>({std::numeric_limits<int>::min(), -1, 0, 1, 2, 2, 3, 4}); }

    QRandomGenerator m_random;
};

} // namespace

void tst_DialogResultOracle::initTestCase()
{
    const QString name = qEnvironmentVariable("RESULT_LOCALE", QStringLiteral("ru_RU"));
    QLocale::setDefault(QLocale(name));
    QCOMPARE(QLocale().name(), name);
}

// The first coordinate of a process fixes its locale, even if it is written in the C locale.
void tst_DialogResultOracle::resultFixesLocale()
{
    const QLocale locale;
    Dialog dialog;
    dialog.objects = {DefPolygon{QString(), {{DefPoint{QString(), 1234.5, 0}}}}};
    QVERIFY(dialog.stringResult().contains(QStringLiteral("1234.50")));

    QLocale::setDefault(QLocale(QStringLiteral("mr_IN")));

    QCOMPARE(DefPolygonTableModel().formatCoord(1234.5, true), locale.toString(1234.5, 'f', 2));
    QLocale::setDefault(locale);
}

void tst_DialogResultOracle::everyCodeUnitIsEscaped()
{
    Dialog dialog;
    QString all;
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const QChar c(unit);
        all.append(c);
        for (const QString &text : {QString(c), QLatin1Char('a') + QString(c), QString(c) + QLatin1Char('a')})
            dialog.objects.append(DefPolygon{text, {}});
    }
    dialog.objectTableName = all;

    compareWithOracle(dialog);
}

void tst_DialogResultOracle::pairsOfSpecialCodeUnitsAreEscaped()
{
    Dialog dialog;
    dialog.objects = {DefPolygon{QString(), {{}}}};
    for (const ushort first : specials) {
        for (const ushort second : specials)
            dialog.objects[0].contours[0].append(DefPoint{QString(QChar(first)) + QChar(second), 0, 0});
    }

    compareWithOracle(dialog);
}

void tst_DialogResultOracle::randomDocumentsMatchTheOracle_data()
{
    QTest::addColumn<int>("number");

    for (int number = 1; number <= 10; ++number)
        QTest::addRow("number %d", number) << number;
}

void tst_DialogResultOracle::randomDocumentsMatchTheOracle()
{
    QFETCH(int, number);
    RandomContent content(number);
    Dialog dialog;

    for (int i = 0; i < 1000 && !QTest::currentTestFailed(); ++i) {
        content.fill(dialog);
        compareWithOracle(dialog);
    }
}

QTEST_MAIN(tst_DialogResultOracle)
#include "tst_dialog_result_oracle.moc"
