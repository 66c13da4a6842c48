#include "dialog_elidingdelegate.h"

#include <QListView>
#include <QProxyStyle>
#include <QStandardItemModel>
#include <QTest>

/// The sizes of rows, held against those that the text of each takes by itself.
class tst_DialogElidingDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textFitsIn_data();
    void textFitsIn();
    void textWithoutDigitsTakesItsSize_data();
    void textWithoutDigitsTakesItsSize();
    void numbersTakeOneSize();
    void longTextTakesItsSize();
    void beginningIsShown_data();
    void beginningIsShown();
    void beginningTakesItsSize();
    void numbersAreMeasuredOnce();
    void namesAreMeasuredOnce();
    void otherFontIsMeasuredAnew();
    void otherStyleIsMeasuredAnew();
};

namespace {

/// Counts how often it is asked for the size of a row, which it makes so much higher.
class CountingStyle : public QProxyStyle
{
public:
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override
    {
        if (type == CT_ItemViewItem)
            ++count;
        return QProxyStyle::sizeFromContents(type, option, size, widget) + QSize(0, extraHeight);
    }

    mutable int count = 0;
    int extraHeight = 0;
};

QStringList numberedNames(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(QStringLiteral("ЗУ%1").arg(1000 + i));
    return names;
}

/// A list of names that has been laid out.
struct NameList
{
    explicit NameList(const QStringList &names) : model(names.size(), 1)
    {
        for (int row = 0; row < names.size(); ++row)
            model.setData(model.index(row, 0), names.at(row));
        view.setStyle(&style);
        view.setItemDelegate(&delegate);
        view.setModel(&model);
        view.doItemsLayout();
    }

    CountingStyle style;
    QStandardItemModel model;
    DefDelegate delegate;
    QListView view;
};

/// The size of a row of \a text as \a delegate has it for a list in the font \a points points high.
QSize sizeOf(const QStyledItemDelegate &delegate, const QString &text, int points = 10)
{
    static QFont font;
    if (font.pointSize() != points)
        font.setPointSize(points);
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), text);
    QStyleOptionViewItem option;
    option.font = font;
    option.fontMetrics = QFontMetrics(font);
    return delegate.sizeHint(option, model.index(0, 0));
}

} // namespace

void tst_DialogElidingDelegate::textFitsIn_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("alike");

    const auto add = [](const char *name, const QString &text, const QString &alike) {
        QTest::newRow(name) << text << alike;
    };
    add("numbers", QStringLiteral("н111"), QStringLiteral("н999"));
    add("cadastral numbers", QStringLiteral("50:21:0110205:1111"), QStringLiteral("50:21:0110205:4747"));
    add("digits beside letters", QStringLiteral("Г1Т1У1A1V1W1"), QStringLiteral("Г4Т4У7A7V4W4"));
    add("long", QStringLiteral("Г1Т1У1A1V1W1").repeated(30), QStringLiteral("Г4Т4У7A7V4W4").repeated(30));
    add("joined letters", QStringLiteral("قطعة 1"), QStringLiteral("قطعة 8"));
    add("two lines", QStringLiteral("a\n1"), QStringLiteral("a\n8"));
    add("other digits", QStringLiteral("١١١"), QStringLiteral("٩٩٩"));
}

// Whichever is asked for first.
void tst_DialogElidingDelegate::textFitsIn()
{
    QFETCH(QString, text);
    QFETCH(QString, alike);
    const QStyledItemDelegate plain;

    for (const QString &first : {text, alike}) {
        const DefDelegate delegate;
        sizeOf(delegate, first);
        for (const QString &each : {text, alike}) {
            QVERIFY(sizeOf(delegate, each).width() >= sizeOf(plain, each).width());
            QCOMPARE(sizeOf(delegate, each).height(), sizeOf(plain, each).height());
        }
    }
}

void tst_DialogElidingDelegate::textWithoutDigitsTakesItsSize_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << QString();
    QTest::newRow("empty") << QStringLiteral("");
    QTest::newRow("Cyrillic") << QStringLiteral("Участок");
    QTest::newRow("kerned letters") << QStringLiteral("AVAVAV To fi ffl W. Ё́");
    QTest::newRow("joined letters") << QStringLiteral("قطعة أرض");
    QTest::newRow("two lines") << QStringLiteral("a\nб");
    QTest::newRow("long, with digits") << QStringLiteral("Земельный участок 50:21:0110205:1234 ").repeated(6);
}

void tst_DialogElidingDelegate::textWithoutDigitsTakesItsSize()
{
    QFETCH(QString, text);
    const DefDelegate delegate;

    for (int time = 0; time < 2; ++time)
        QCOMPARE(sizeOf(delegate, text), sizeOf(QStyledItemDelegate(), text));
}

void tst_DialogElidingDelegate::numbersTakeOneSize()
{
    const DefDelegate delegate;

    QCOMPARE(sizeOf(delegate, QStringLiteral("н111")), sizeOf(delegate, QStringLiteral("н909")));
    QCOMPARE(sizeOf(delegate, QStringLiteral("н111")), sizeOf(QStyledItemDelegate(), QStringLiteral("н1111")));
    QCOMPARE(sizeOf(delegate, QStringLiteral("x111")), sizeOf(QStyledItemDelegate(), QStringLiteral("x1111")));
    QVERIFY(sizeOf(delegate, QStringLiteral("н111")) != sizeOf(delegate, QStringLiteral("н1111")));
}

void tst_DialogElidingDelegate::namesAreMeasuredOnce()
{
    QStringList names;
    for (int i = 0; i < 100; ++i)
        names.append(QStringLiteral("ж").repeated(i));
    NameList list(names);
    QVERIFY(list.style.count >= 100);

    list.style.count = 0;
    list.view.doItemsLayout();

    QVERIFY(list.style.count < 10);
}

void tst_DialogElidingDelegate::otherFontIsMeasuredAnew()
{
    const DefDelegate delegate;
    const QString text = QStringLiteral("Участок 7");
    const QSize small = sizeOf(delegate, text);

    const QSize large = sizeOf(delegate, text, 30);

    QVERIFY(large.width() > 2 * small.width() && large.height() > 2 * small.height());
    QCOMPARE(sizeOf(delegate, text), small);
}

// In a long text differences between digits might add up.
void tst_DialogElidingDelegate::longTextTakesItsSize()
{
    const DefDelegate delegate;
    const QStyledItemDelegate plain;
    const QString text = QStringLiteral("Участок 50:21:0110205:47"); // as long as one that is taken for its like

    QVERIFY(sizeOf(delegate, text) != sizeOf(plain, text));
    QCOMPARE(sizeOf(delegate, text + QLatin1Char('1')), sizeOf(plain, text + QLatin1Char('1')));
}

void tst_DialogElidingDelegate::beginningIsShown_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");

    const QString most = QStringLiteral("Участок 7 ").repeated(50);
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("short") << QStringLiteral("н1") << QStringLiteral("н1");
    QTest::newRow("two lines") << QStringLiteral("a\nb") << QStringLiteral("a\u2028b");
    QTest::newRow("as long as is shown") << most << most;
    QTest::newRow("longer") << most + QLatin1Char('x') << most + QStringLiteral("…");
    QTest::newRow("very long") << most.repeated(20000) << most + QStringLiteral("…");
    QTest::newRow("longer, two lines") << QStringLiteral("a\nb") + most
                                       << QStringLiteral("a\u2028b") + most.left(497) + QStringLiteral("…");
}

void tst_DialogElidingDelegate::beginningIsShown()
{
    QFETCH(QString, text);

    QTEST(ElidingDelegate().displayText(text, QLocale::c()), "shown");
    QTEST(DefDelegate().displayText(text, QLocale::c()), "shown");
}

void tst_DialogElidingDelegate::beginningTakesItsSize()
{
    const QString beginning(500, QLatin1Char('W'));
    const DefDelegate delegate;

    const QSize size = sizeOf(delegate, beginning.repeated(20000));

    QCOMPARE(size, sizeOf(QStyledItemDelegate(), beginning + QStringLiteral("…")));
}

void tst_DialogElidingDelegate::numbersAreMeasuredOnce()
{
    NameList list(numberedNames(1000));
    QVERIFY(list.style.count > 0 && list.style.count < 10);

    list.style.count = 0;
    list.view.doItemsLayout();

    QVERIFY(list.style.count < 10);
}

void tst_DialogElidingDelegate::otherStyleIsMeasuredAnew()
{
    NameList list(numberedNames(3));
    const int height = list.view.sizeHintForRow(2);

    list.style.extraHeight = 17;
    list.view.doItemsLayout();

    QCOMPARE(list.view.sizeHintForRow(2), height + 17);
}

QTEST_MAIN(tst_DialogElidingDelegate)
#include "tst_dialog_elidingdelegate.moc"
