// The first field of MID records and the text of a drawing, against the same told in the plainest way:
//
//     0              encoding
//     0              delimiter
//     0              1: the text stands near the end of the first piece that the reader decodes at once
//     00             then: how many bytes before that end
//     ...            the records, and the text

#include "invariants.h"

#include <QRegularExpression>

namespace {

const char *const encodings[] = {"UTF-8", "Windows-1251", "IBM866", "UTF-16LE", "KOI8-R"};

/// Both files of one run in one encoding.
struct Text
{
    const char *encoding;
    QString padding; ///< puts what follows where the reader has to fetch more
    QByteArray bytes;
};

QByteArray encoded(const Text &text, const QString &string)
{
    QTextCodec::ConverterState noHeader(QTextCodec::IgnoreHeader);
    return QTextCodec::codecForName(text.encoding)->fromUnicode(string.constData(), string.size(), &noHeader);
}

QString fieldOf(const QString &record, QChar delimiter)
{
    QString field;
    bool skipping = true;
    bool quoted = false;
    for (const QChar c : record) {
        if (c != QLatin1Char(' '))
            skipping = false;
        if (skipping)
            continue;
        if (c == QLatin1Char('"') && quoted)
            break;
        if (c == QLatin1Char('"'))
            quoted = skipping = true;
        else if (c == delimiter && !quoted)
            break;
        else
            field += c;
    }
    return field.remove(QRegularExpression(QStringLiteral(" +\\z")));
}

QString decoded(QString text, const char *encoding)
{
    static const QRegularExpression re(QStringLiteral("%%(\\d{3})"));
    text.replace(QStringLiteral("%%d"), QString(QChar(0x00B0)));
    text.replace(QStringLiteral("%%p"), QString(QChar(0x00B1)));
    text.replace(QStringLiteral("%%c"), QString(QChar(0x00D8)));
    QVector<QRegularExpressionMatch> matches;
    for (QRegularExpressionMatchIterator it = re.globalMatch(text); it.hasNext();)
        matches.prepend(it.next());
    for (const QRegularExpressionMatch &match : qAsConst(matches)) {
        const int byte = match.captured(1).toInt();
        if (byte <= 255) {
            const QByteArray bytes(1, static_cast<char>(byte));
            text.replace(match.capturedStart(), 5, QTextCodec::codecForName(encoding)->toUnicode(bytes));
        }
    }
    return text;
}

Options optionsFor(const Text &text, const QString &fileName)
{
    static const uint8_t digits[] = {'0', '1', '0'};
    Input input(digits, sizeof digits);
    Options options(input);
    options.encoding = text.encoding;
    options.objectFileName = fileName;
    return options;
}

// Objects without a designation of their own have a generated one.
bool isNamed(const DefPolygon &object, const QString &def, const Options &options)
{
    return def.isEmpty() ? object.def.startsWith(options.objectPref) : object.def == def;
}

void checkRecords(const Text &text, char delimiter)
{
    const QString quoted = delimiter == 0 ? QString() : QString(QLatin1Char(delimiter));
    const QString header = QStringLiteral("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \"%1\"\nDATA\n").arg(quoted);
    const QString data = QStringLiteral("LINE 1 2 3 4\n").repeated(4);
    const Options options =
        optionsFor(text, files().writeBytes(QStringLiteral("text.mif"), encoded(text, header + data)));
    const QString mid =
        files().writeBytes(QStringLiteral("text.mid"), encoded(text, text.padding + QLatin1Char('\n')) + text.bytes);
    const Run run = checkedRun<MifImport>(options, Format::Mif);
    checkResult(run.objects);
    const QStringList records = linesOf(mid, text.encoding);
    int i = 0;
    for (; i < 4 && i < records.size() && !records.at(i).trimmed().isEmpty(); ++i) {
        require(i < run.objects.size() &&
                    isNamed(run.objects.at(i), fieldOf(records.at(i).trimmed(), QLatin1Char(delimiter)), options),
                "an object has the first field of its record");
    }
    const QString message = QStringLiteral("Ошибка чтения обозначения объекта из строки: %1").arg(i + 1);
    require(run.ok == (i == 4), "a run fails when a record is missing");
    require(run.messages == (run.ok ? QStringList() : QStringList{message}), "the record that is missing is told");
}

// A text that is not one line makes another drawing, of which nothing is expected here.
void checkText(const Text &text)
{
    const QString begin = QStringLiteral("0\nSECTION\n2\nHEADER\n999\n%1\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n0\nTEXT\n"
                                         "10\n5\n20\n5\n1\n")
                              .arg(text.padding);
    const QString end = QStringLiteral("\n0\nLINE\n10\n1\n20\n2\n11\n3\n21\n4\n0\nEOF\n");
    const QByteArray drawing = encoded(text, begin) + text.bytes + encoded(text, end);
    const Options options = optionsFor(text, files().writeBytes(QStringLiteral("text.dxf"), drawing));
    const Run run = checkedRun<DxfImport>(options, Format::Dxf);
    checkResult(run.objects);
    QStringList lines = linesOf(options.objectFileName, text.encoding);
    const int line = begin.count(QLatin1Char('\n'));
    const QString value = line < lines.size() ? lines.at(line).trimmed() : QString();
    const QString whole = begin + (line < lines.size() ? lines.at(line) : QString()) + end;
    if (lines.join(QLatin1Char('\n')) + QLatin1Char('\n') != whole)
        return;
    require(run.ok && run.objects.size() == 1, "a drawing of one line has one object");
    require(isNamed(run.objects.first(), decoded(value, text.encoding), options), "an object has the decoded text");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    prepareResults(argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr int pieceSize = 16384;
    static const char delimiters[] = {',', ';', '|', '"', 0, 'a'};
    Input input(data, size);
    Text text{input.oneOf(encodings), QStringLiteral("x"), QByteArray()};
    const char delimiter = input.oneOf(delimiters);
    const bool atPieceEnd = input.option(10) == 1;
    const int offset = input.option(10) * 10 + input.option(10);
    if (atPieceEnd) {
        const int unit = encoded(text, QStringLiteral("x")).size();
        text.padding = QString((pieceSize - offset) / unit, QLatin1Char('x'));
    }
    text.bytes = input.files(1).first();
    checkRecords(text, delimiter == '"' ? '\0' : delimiter);
    checkText(text);
    return 0;
}
