#include "pictureexport.h"

#include "picturetesting.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

Q_DECLARE_METATYPE(TestObject)

class tst_WorkbenchPictureExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void svgHasEachContour_data();
    void svgHasEachContour();
    void svgHasEachVertex();
    void svgTextsAreReadable();
    void svgLooksLikePng();
    void pngIs2000PixelsWide_data();
    void pngIs2000PixelsWide();
    void axesAreRespected();
    void pdfHasOnePage();
    void suffixIsCaseInsensitive();
    void failureLeavesNothing_data();
    void failureLeavesNothing();

private:
    QString path(const char *name) const { return m_dir->filePath(QLatin1String(name)); }
    QByteArray saved(const ImportResult &result, const char *name, bool hasSurveyAxes = true) const;
    QStringList names() const { return QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot); }

    QScopedPointer<QTemporaryDir> m_dir;
};

const QVector<TestObject> plan{
    {QStringLiteral("участок <1> & 2"), {square(1000, 2000, 100), square(1060, 2060, 30)}},
    {QStringLiteral("дорога"), {{{1150, 2000}, {1150, 2300}}}},
    {QStringLiteral("пикет"), {{{1120, 2200}}}},
};

void tst_WorkbenchPictureExport::init()
{
    m_dir.reset(new QTemporaryDir);
}

QByteArray tst_WorkbenchPictureExport::saved(const ImportResult &result, const char *name, bool hasSurveyAxes) const
{
    QString error;
    QFile file(path(name));
    if (!savePicture(result, hasSurveyAxes, file.fileName(), error) || !file.open(QIODevice::ReadOnly))
        qFatal("%s", qUtf8Printable(error));
    return file.readAll();
}

/// The number of points of each polyline.
QVector<int> polylinesOf(const QByteArray &svg)
{
    QVector<int> counts;
    QXmlStreamReader xml(svg);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1String("polyline"))
            counts.append(
                xml.attributes().value(QLatin1String("points")).toString().simplified().split(QLatin1Char(' ')).size());
    }
    return xml.hasError() ? QVector<int>() : counts;
}

/// \a count parcels in a row.
QVector<TestObject> parcels(int count)
{
    QVector<TestObject> objects;
    for (int i = 0; i < count; ++i)
        objects.append({QStringLiteral("ЗУ%1").arg(i), {square(0, i * 10, 10)}});
    return objects;
}

void tst_WorkbenchPictureExport::svgHasEachContour_data()
{
    QTest::addColumn<QVector<TestObject>>("objects");
    QTest::addColumn<int>("count");

    QTest::newRow("rings, lines and points") << plan << 4;
    QTest::newRow("smaller than a pixel") << parcels(5000) << 5000;
    QTest::newRow("without a position") << (plan + QVector<TestObject>{{QString(), {notDrawable}}}) << 4;
}

void tst_WorkbenchPictureExport::svgHasEachContour()
{
    QFETCH(QVector<TestObject>, objects);

    const QByteArray svg = saved(resultOf(objects), "a.svg");

    QTEST(polylinesOf(svg).size(), "count");
    QVERIFY(QSvgRenderer(svg).isValid());
}

void tst_WorkbenchPictureExport::svgHasEachVertex()
{
    QVector<QPointF> line;
    for (int i = 0; i < 1000; ++i)
        line.append(QPointF(i * 1e-6, i % 2 * 1e-6));
    line.append(QPointF(1000, 1000));

    QCOMPARE(polylinesOf(saved(resultOf({{QString(), {line}}}), "a.svg")), QVector<int>{1001});
}

void tst_WorkbenchPictureExport::svgTextsAreReadable()
{
    ImportResult result = resultOf(plan);
    result.objectTable = QStringLiteral("Участки & дороги");

    const QString svg = QString::fromUtf8(saved(result, "a.svg"));

    for (const QString &text :
         {QStringLiteral("<title>Участки &amp; дороги</title>"), QStringLiteral("участок &lt;1&gt; &amp; 2"),
          QStringLiteral(">н1<"), QStringLiteral("20 м")})
        QVERIFY2(svg.contains(text), qUtf8Printable(text));
}

/// The share of pixels that are not white, in each of 8 by 8 fields.
QVector<double> densities(const QImage &image)
{
    QVector<double> shares(64, 0);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            shares[y * 8 / image.height() * 8 + x * 8 / image.width()] += qGray(image.pixel(x, y)) < 250 ? 1 : 0;
    }
    for (double &share : shares)
        share *= 64.0 / (image.width() * image.height());
    return shares;
}

void tst_WorkbenchPictureExport::svgLooksLikePng()
{
    const QImage png = QImage::fromData(saved(resultOf(plan), "a.png"));
    QSvgRenderer svg(saved(resultOf(plan), "a.svg"));
    QImage drawn(png.size(), QImage::Format_RGB32);
    drawn.fill(Qt::black);
    QPainter painter(&drawn);

    svg.render(&painter);

    const QVector<double> expected = densities(png);
    const QVector<double> actual = densities(drawn);
    for (int i = 0; i < expected.size(); ++i)
        QVERIFY2(std::abs(actual.at(i) - expected.at(i)) < 0.15, qPrintable(QString::number(i)));
}

void tst_WorkbenchPictureExport::pngIs2000PixelsWide_data()
{
    QTest::addColumn<QVector<QPointF>>("contour");
    QTest::addColumn<double>("aspect"); // at most, height to width

    QTest::newRow("wide") << QVector<QPointF>{{0, 0}, {1, 1e6}} << 0.5;
    QTest::newRow("high") << QVector<QPointF>{{0, 0}, {1e6, 1}} << 1.5;
    QTest::newRow("point") << QVector<QPointF>{{5, 5}} << 1.5;
    QTest::newRow("huge") << QVector<QPointF>{{-1e18, -1e18}, {1e18, 1e18}} << 1.1;
}

void tst_WorkbenchPictureExport::pngIs2000PixelsWide()
{
    QFETCH(QVector<QPointF>, contour);
    QFETCH(double, aspect);

    const QImage image = QImage::fromData(saved(resultOf({{QString(), {contour}}}), "a.png"), "PNG");

    QCOMPARE(image.width(), 2000);
    QVERIFY(image.height() <= aspect * 2000);
    QVERIFY(image.height() >= (aspect - 0.15) * 2000);
}

void tst_WorkbenchPictureExport::axesAreRespected()
{
    const ImportResult result = resultOf({{QString(), {{{0, 0}, {1000, 1}}}}});

    const QImage up = QImage::fromData(saved(result, "a.png", true));
    const QImage right = QImage::fromData(saved(result, "b.png", false));

    QVERIFY(up.height() > up.width());
    QVERIFY(right.height() < right.width());
}

void tst_WorkbenchPictureExport::pdfHasOnePage()
{
    const QByteArray pdf = saved(resultOf(plan), "a.pdf");

    QVERIFY(pdf.startsWith("%PDF-"));
    QVERIFY(pdf.trimmed().endsWith("%%EOF"));
    QVERIFY(pdf.contains("/Count 1\n"));
    QVERIFY(pdf.contains("/MediaBox [0 0 842.000000 595.000000]"));
}

void tst_WorkbenchPictureExport::suffixIsCaseInsensitive()
{
    QVERIFY(saved(resultOf(plan), "A.PNG").startsWith("\x89PNG"));
}

void tst_WorkbenchPictureExport::failureLeavesNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QVector<TestObject>>("objects");
    QTest::addColumn<QString>("error"); // its beginning; empty: the system's

    const QString format = QStringLiteral("рисунок сохраняется только в файл .png, .svg или .pdf");
    const QString nothing = QStringLiteral("рисовать нечего: в результате нет вершин");
    QTest::newRow("unknown suffix") << QStringLiteral("a.bmp") << plan << format;
    QTest::newRow("no suffix") << QStringLiteral("png") << plan << format;
    QTest::newRow("empty result") << QStringLiteral("a.png") << QVector<TestObject>() << nothing;
    QTest::newRow("no positions") << QStringLiteral("a.svg") << QVector<TestObject>{{QString(), {notDrawable}}}
                                  << nothing;
    for (const char *const suffix : {"png", "svg", "pdf"})
        QTest::addRow("missing folder, %s", suffix)
            << QStringLiteral("missing/a.%1").arg(QLatin1String(suffix)) << plan << QString();
}

void tst_WorkbenchPictureExport::failureLeavesNothing()
{
    QFETCH(QString, name);
    QFETCH(QVector<TestObject>, objects);
    QFETCH(QString, error);
    QString actual;

    QVERIFY(!savePicture(resultOf(objects), true, m_dir->filePath(name), actual));

    QVERIFY(!actual.isEmpty());
    QVERIFY2(error.isEmpty() || actual == error, qUtf8Printable(actual));
    QCOMPARE(names(), QStringList());
}

QTEST_MAIN(tst_WorkbenchPictureExport)
#include "tst_workbench_pictureexport.moc"
