#include "badinputfixture.h"

#include <QProcess>
#include <QTest>

namespace {

const QString noFile = QStringLiteral("Ошибка открытия файла %1");
const QString noMidFile = QStringLiteral("Ошибка открытия MID файла %1");
const QString noMif = QStringLiteral("Ошибка. Файл plan.mif не соответствует формату MIF");
const QString noDxf = QStringLiteral("Ошибка. Файл plan.dxf не соответствует формату DXF");
const QString dxfError = QStringLiteral("Ошибка чтения DXF файла в строке: %1");
const QString plineError = QStringLiteral("Ошибка чтения полилинии из строки: %1");
const QString regionError = QStringLiteral("Ошибка чтения области из строки: %1");

/// What has the name of a file and is none; somebody would write into the pipe, were it opened.
class NoFile
{
public:
    static QStringList kinds()
    {
        QStringList kinds{QStringLiteral("folder"), QStringLiteral("link to nothing"), QStringLiteral("locked")};
        if (QFile::exists(QStringLiteral("/dev/null")))
            kinds += {QStringLiteral("/dev/null"), QStringLiteral("/dev/urandom")};
        const TextFixture files;
        if (QProcess::execute(QStringLiteral("mkfifo"), {files.path(QStringLiteral("a"))}) == 0)
            kinds.append(QStringLiteral("pipe"));
        return kinds;
    }

    NoFile(const QString &kind, const QString &path, const TextFixture &files)
    {
        if (kind == QLatin1String("folder"))
            QDir().mkpath(path);
        else if (kind == QLatin1String("link to nothing"))
            QFile::link(files.path(QStringLiteral("nowhere")), path);
        else if (kind == QLatin1String("pipe"))
            layPipe(path, files);
        else if (kind == QLatin1String("locked"))
            QFile(files.writeBytes(QFileInfo(path).fileName(), "x")).setPermissions(QFile::WriteOwner);
        else
            QFile::link(kind, path);
    }
    ~NoFile()
    {
        m_writer.kill();
        m_writer.waitForFinished();
    }
    NoFile(const NoFile &) = delete;
    NoFile &operator=(const NoFile &) = delete;

private:
    void layPipe(const QString &path, const TextFixture &files)
    {
        const QByteArray text = path.endsWith(QLatin1String(".dxf"))   ? dxfHead + dxfLine
                                : path.endsWith(QLatin1String(".mif")) ? mifHead + mifLine
                                                                       : QByteArray("A\n");
        QProcess::execute(QStringLiteral("mkfifo"), {path});
        m_writer.start(QStringLiteral("sh"), {QStringLiteral("-c"), QStringLiteral("exec cat \"$0\" > \"$1\""),
                                              files.writeBytes(QStringLiteral("text"), text), path});
    }

    QProcess m_writer;
};

/// Has \a run read the file \a name of its folder; when that is not its file of objects, it is given one.
void useFile(BadInputFixture &run, const QString &name)
{
    const QString objectFile = QFileInfo(run.import->objectFileName).fileName();
    if (name != objectFile)
        run.files.writeBytes(objectFile,
                             objectFile.endsWith(QLatin1String("dxf")) ? dxfHead + dxfLine : mifHead + mifLine);
    run.import->searchPointDefs = name.startsWith(QLatin1String("points"));
    run.import->pointFileName = run.import->searchPointDefs ? run.files.path(name) : QString();
    run.import->searchObjectDefs = name.endsWith(QLatin1String("mid"));
}

} // namespace

class tst_BadInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onlyAFileIsOpened_data();
    void onlyAFileIsOpened();
    void fileThatGivesNothingIsEmpty_data();
    void fileThatGivesNothingIsEmpty();
    void linkToAFileIsAFile();
    void strangeDrawingIsSurvived_data();
    void strangeDrawingIsSurvived();
    void strangeRecordIsSurvived_data();
    void strangeRecordIsSurvived();
    void markedUnicodeIsRead_data();
    void markedUnicodeIsRead();
    void strangeNumberInDrawing_data();
    void strangeNumberInDrawing();
    void strangeCountEndsThePass_data();
    void strangeCountEndsThePass();
};

void tst_BadInput::onlyAFileIsOpened_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("name"); // of the file that is none
    QTest::addColumn<QString>("objectFile");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("objects");
    QTest::addColumn<bool>("ok");

    for (const QString &kind : NoFile::kinds()) {
        const auto row = [&kind](const char *name, const char *objectFile, const QString &message,
                                 const QString &objects, bool ok) {
            QTest::addRow("%s, %s for %s", qPrintable(kind), name, objectFile)
                << kind << QString::fromLatin1(name) << QString::fromLatin1(objectFile) << message << objects << ok;
        };
        row("plan.mif", "plan.mif", noFile, QString(), true);
        row("plan.dxf", "plan.dxf", noFile, QString(), true);
        row("points.mif", "plan.mif", noFile, readLine, true);
        row("points.dxf", "plan.dxf", noFile, readLine, true);
        row("plan.mid", "plan.mif", noMidFile, QString(), false);
    }
}

void tst_BadInput::onlyAFileIsOpened()
{
    QFETCH(QString, kind);
    QFETCH(QString, name);
    QFETCH(QString, objectFile);
    QFETCH(QString, message);
    QFETCH(QString, objects);
    QFETCH(bool, ok);
    BadInputFixture run(objectFile);
    useFile(run, name);
    const NoFile noFileAtAll(kind, run.files.path(name), run.files);
    if (kind == QLatin1String("locked") && QFile(run.files.path(name)).open(QIODevice::ReadOnly))
        QSKIP("an administrator reads whatever there is");

    QCOMPARE(run.import->importMap(), ok);

    QCOMPARE(run.messages(), QStringList{message.arg(name)});
    QCOMPARE(run.objectText(), objects);
}

void tst_BadInput::fileThatGivesNothingIsEmpty_data()
{
    QTest::addColumn<QString>("name"); // of the file
    QTest::addColumn<QString>("objectFile");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("objects");

    const auto row = [](const char *name, const char *objectFile, const QString &message, const QString &objects) {
        QTest::addRow("%s for %s", name, objectFile)
            << QString::fromLatin1(name) << QString::fromLatin1(objectFile) << message << objects;
    };
    row("plan.mif", "plan.mif", noMif, QString());
    row("plan.dxf", "plan.dxf", noDxf, QString());
    row("points.mif", "plan.mif", QStringLiteral("Ошибка. Файл points.mif не соответствует формату MIF"), QString());
    row("points.dxf", "plan.dxf", QStringLiteral("Ошибка. Файл points.dxf не соответствует формату DXF"), QString());
    row("plan.mid", "plan.mif", QStringLiteral("Ошибка чтения обозначения объекта из строки: 1"),
        QStringLiteral("- [н1 0 0, н2 1 1]"));
}

// The memory of a process opens as a file, but nothing lies at its beginning.
void tst_BadInput::fileThatGivesNothingIsEmpty()
{
    QFETCH(QString, name);
    QFETCH(QString, objectFile);
    QFETCH(QString, message);
    QFETCH(QString, objects);
    QFile memory(QStringLiteral("/proc/self/mem"));
    if (!memory.open(QIODevice::ReadOnly) || memory.read(1).size() == 1)
        QSKIP("there is no file that opens and cannot be read");
    BadInputFixture run(objectFile);
    useFile(run, name);
    QVERIFY(QFile::link(memory.fileName(), run.files.path(name)));

    QVERIFY(!run.import->importMap());

    QCOMPARE(run.messages(), QStringList{message});
    QCOMPARE(run.objectText(), objects);
}

void tst_BadInput::linkToAFileIsAFile()
{
    BadInputFixture run(QStringLiteral("plan.mif"));
    run.import->searchObjectDefs = true;
    for (const QString &end : {QStringLiteral(".mif"), QStringLiteral(".mid")}) {
        const QByteArray text = end == QLatin1String(".mif") ? mifHead + mifLine : QByteArray("Лес\n");
        QVERIFY(QFile::link(run.files.writeBytes(QStringLiteral("other") + end, text),
                            run.files.path(QStringLiteral("plan") + end)));
    }

    QVERIFY(run.import->importMap());

    QCOMPARE(run.messages(), QStringList());
    QCOMPARE(run.objectText(), QStringLiteral("Лес [н1 0 0, н2 1 1]"));
}

void tst_BadInput::strangeDrawingIsSurvived_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("messages");
    QTest::addColumn<QString>("objects");

    const QByteArray zero(1, '\0');
    const QByteArray text("0\nTEXT\n10\n0\n20\n0\n1\n");
    const QStringList none;
    QTest::newRow("zeros only") << QByteArray(1000, '\0') << QStringList{noDxf} << QString();
    QTest::newRow("one long line") << QByteArray(1000000, '0') << QStringList{noDxf} << QString();
    QTest::newRow("carriage returns only")
        << QByteArray(dxfHead + dxfLine).replace('\n', '\r') << QStringList{noDxf} << QString();
    QTest::newRow("binary") << QByteArray("Binary drawing\r\n\x1A\0\0\0SECTION\0\x02\0HEADER\0", 37)
                            << QStringList{noDxf} << QString();
    QTest::newRow("two bytes a character, unmarked")
        << QByteArray("0\0\n\0S\0E\0C\0T\0I\0O\0N\0\n\0", 20) << QStringList{noDxf} << QString();
    QTest::newRow("zero in a keyword") << dxfHead + "0\nLI" + zero + "NE\n" + dxfLine << none << readLine;
    QTest::newRow("zero in a group code")
        << dxfHead + "0\nLINE\n1" + zero + "0\n7\n" + dxfLine.mid(7) << none << readLine;
    // Line 14, counted after the 16 lines of the pass over the texts.
    QTest::newRow("zero in a coordinate") << dxfHead + "0\nLINE\n10\n0" + zero + "\n20\n0\n"
                                          << QStringList{dxfError.arg(30)} << QString();
    QTest::newRow("zero in a text") << dxfHead + dxfLine + text + "a" + zero + "b\n"
                                    << none << QStringLiteral("a%1b [н1 0 0, н2 1 1]").arg(QChar(QChar::Null));
    QTest::newRow("bytes of no character")
        << dxfHead + "999\n\xFF\xFE\x80 \xC3\n\xD0\n\n" + dxfLine << none << readLine;
    QTest::newRow("a hundred thousand codes of signs")
        << dxfHead + dxfLine + text + QByteArray("%%d%%065%").repeated(100000) + "\n"
        << none << QStringLiteral("°A%").repeated(100000) + QStringLiteral(" [н1 0 0, н2 1 1]");
}

void tst_BadInput::strangeDrawingIsSurvived()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, messages);
    QFETCH(QString, objects);
    BadInputFixture run(QStringLiteral("plan.dxf"));
    run.import->searchObjectDefs = true;
    run.files.writeBytes(QStringLiteral("plan.dxf"), bytes);

    run.import->importMap();

    QCOMPARE(run.messages(), messages);
    QVERIFY2(run.objectText() == objects, qPrintable(run.objectText().left(200)));
}

void tst_BadInput::strangeRecordIsSurvived_data()
{
    QTest::addColumn<QByteArray>("records");
    QTest::addColumn<QString>("objects");

    QTest::newRow("zeros") << QByteArray(3, '\0')
                           << QString(3, QChar(QChar::Null)) + QStringLiteral(" [н1 0 0, н2 1 1]");
    QTest::newRow("carriage returns only") << QByteArray("Лес\rПоле\r") << QStringLiteral("ЛесПоле [н1 0 0, н2 1 1]");
    QTest::newRow("bytes of no character") << QByteArray("\xFF,x\n") << QStringLiteral("\uFFFD [н1 0 0, н2 1 1]");
    QTest::newRow("quotes only") << QByteArray(1000001, '"') << readLine;
    QTest::newRow("quote without end") << QByteArray("\"Лес,x\nПоле\n") << QStringLiteral("Лес,x [н1 0 0, н2 1 1]");
}

void tst_BadInput::strangeRecordIsSurvived()
{
    QFETCH(QByteArray, records);
    QFETCH(QString, objects);
    BadInputFixture run(QStringLiteral("plan.mif"));
    run.import->searchObjectDefs = true;
    run.files.writeBytes(QStringLiteral("plan.mif"), mifHead + mifLine);
    run.files.writeBytes(QStringLiteral("plan.mid"), records);

    QVERIFY(run.import->importMap());

    QCOMPARE(run.messages(), QStringList());
    QCOMPARE(run.objectText(), objects);
}

void tst_BadInput::markedUnicodeIsRead_data()
{
    QTest::addColumn<QString>("objectFile");
    QTest::addColumn<QString>("ends");
    QTest::addColumn<QByteArray>("codec");

    for (const char *const codec : {"UTF-16LE", "UTF-16BE", "UTF-32LE", "UTF-8"}) {
        for (const char *const name : {"plan.mif", "plan.dxf"}) {
            QTest::addRow("%s in %s", name, codec)
                << QString::fromLatin1(name) << QStringLiteral("\n") << QByteArray(codec);
            QTest::addRow("%s in %s with carriage returns", name, codec)
                << QString::fromLatin1(name) << QStringLiteral("\r\n") << QByteArray(codec);
        }
    }
}

void tst_BadInput::markedUnicodeIsRead()
{
    QFETCH(QString, objectFile);
    QFETCH(QString, ends);
    QFETCH(QByteArray, codec);
    const bool isDxf = objectFile.endsWith(QLatin1String("dxf"));
    const auto encoded = [&](const QByteArray &text) {
        QString marked = QChar(QChar::ByteOrderMark) + QString::fromUtf8(text);
        marked.replace(QLatin1Char('\n'), ends);
        QTextCodec::ConverterState noHeader(QTextCodec::IgnoreHeader);
        return QTextCodec::codecForName(codec)->fromUnicode(marked.constData(), marked.size(), &noHeader);
    };
    BadInputFixture run(objectFile);
    run.import->searchObjectDefs = true;
    run.files.writeBytes(objectFile,
                         encoded(isDxf ? dxfHead + dxfLine + "0\nTEXT\n10\n0\n20\n0\n1\nЛесЊ\n" : mifHead + mifLine));
    run.files.writeBytes(QStringLiteral("plan.mid"), encoded("ЛесЊ,1\n"));

    QVERIFY(run.import->importMap());

    QCOMPARE(run.messages(), QStringList());
    QCOMPARE(run.objectText(), QStringLiteral("ЛесЊ [н1 0 0, н2 1 1]"));
}

void tst_BadInput::strangeNumberInDrawing_data()
{
    QTest::addColumn<QByteArray>("x");
    QTest::addColumn<QString>("object"); // none when the number is refused

    const QString object = QStringLiteral("ЗУ1 [н1 %1 0, н2 1 1]");
    QTest::newRow("nan") << QByteArray("nan") << object.arg(QStringLiteral("nan"));
    QTest::newRow("inf") << QByteArray("inf") << object.arg(QStringLiteral("inf"));
    QTest::newRow("-inf") << QByteArray("-inf") << object.arg(QStringLiteral("-inf"));
    QTest::newRow("1e308") << QByteArray("1e308") << object.arg(QStringLiteral("1e+308"));
    QTest::newRow("-1e308") << QByteArray("-1e308") << object.arg(QStringLiteral("-1e+308"));
    QTest::newRow("beyond a double") << QByteArray("1e309") << QString();
    QTest::newRow("hexadecimal") << QByteArray("0x10") << QString();
    QTest::newRow("hexadecimal with exponent") << QByteArray("0x1p4") << QString();
    QTest::newRow("a million digits") << QByteArray(1000000, '9') << QString();
    QTest::newRow("a million decimals") << "2." + QByteArray(1000000, '0') << object.arg(2);
}

void tst_BadInput::strangeNumberInDrawing()
{
    QFETCH(QByteArray, x);
    QFETCH(QString, object);
    BadInputFixture run(QStringLiteral("plan.dxf"));
    run.files.writeBytes(QStringLiteral("plan.dxf"), dxfHead + "0\nLINE\n10\n" + x + dxfLine.mid(11));

    QCOMPARE(run.import->importMap(), !object.isEmpty());

    QCOMPARE(run.messages(), object.isEmpty() ? QStringList{dxfError.arg(14)} : QStringList());
    QCOMPARE(run.objectText(), object);
}

void tst_BadInput::strangeCountEndsThePass_data()
{
    QTest::addColumn<QString>("objectFile");
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("object");

    const QString begun = QStringLiteral("- [н1 0 0, н2 1 1]");
    const auto mif = [](const char *name, const char *data, const QString &message, const QString &object) {
        QTest::newRow(name) << QStringLiteral("plan.mif") << mifHead + data << message << object;
    };
    mif("rings", "REGION 2147483647\n3\n0 0\n1 1\n0 0\n", regionError.arg(9),
        QStringLiteral("- [н1 0 0, н2 1 1, н1 0 0]"));
    mif("vertices of a ring", "REGION 1\n2147483647\n0 0\n1 1\n", regionError.arg(8), begun);
    mif("rings beyond an int", "REGION 2147483648\n3\n0 0\n1 1\n0 0\n", regionError.arg(5), QStringLiteral("-"));
    mif("rings far below zero", "REGION -2147483648\n3\n0 0\n1 1\n0 0\n", regionError.arg(5), QStringLiteral("-"));
    mif("vertices beyond an int", "PLINE 4294967298\n0 0\n1 1\n", plineError.arg(5), QStringLiteral("-"));
    mif("sections below zero", "PLINE MULTIPLE -2147483648\n2\n0 0\n1 1\n", plineError.arg(5), QStringLiteral("-"));

    const auto dxf = [](const char *name, const char *count, int line, const QString &object) {
        QTest::newRow(name) << QStringLiteral("plan.dxf")
                            << dxfHead + "0\nLWPOLYLINE\n90\n" + count + "\n10\n0\n20\n0\n10\n1\n20\n1\n"
                            << dxfError.arg(line) << object;
    };
    dxf("2147483647 in a drawing", "2147483647", 22, begun);
    dxf("2147483648 in a drawing", "2147483648", 14, QStringLiteral("- []"));
    dxf("-1 in a drawing", "-1", 18, QStringLiteral("- []"));
    dxf("-2147483648 in a drawing", "-2147483648", 18, QStringLiteral("- []"));
    dxf("hexadecimal in a drawing", "0x2", 14, QStringLiteral("- []"));
    dxf("nan in a drawing", "nan", 14, QStringLiteral("- []"));
}

void tst_BadInput::strangeCountEndsThePass()
{
    QFETCH(QString, objectFile);
    QFETCH(QByteArray, data);
    QFETCH(QString, message);
    QFETCH(QString, object);
    BadInputFixture run(objectFile);
    run.files.writeBytes(objectFile, data);

    QVERIFY(!run.import->importMap());

    QCOMPARE(run.messages(), QStringList{message});
    QCOMPARE(run.objectText(), object);
}

QTEST_GUILESS_MAIN(tst_BadInput)

#include "tst_badinput.moc"
