#include "convertoptions.h"

#include <QTextCodec>

#include <cmath>

namespace {

const QString strHelp = QStringLiteral("help");
const QString strDesignation = QStringLiteral("designation");
const QString strNumber = QStringLiteral("number");
const QString strReach = QStringLiteral("reach");
const QString strDeviation = QStringLiteral("deviation");
const QString strEncoding = QStringLiteral("encoding");
const QString strSourceEncoding = QStringLiteral("source-encoding");
const QString strCrs = QStringLiteral("crs");
const QString strSourceCrs = QStringLiteral("source-crs");
const QString strSwap = QStringLiteral("swap-xy");
const QString strSymbols = QStringLiteral("symbols");
const QString strLayer = QStringLiteral("layer");
const QString strWhere = QStringLiteral("where");
const QString strForce = QStringLiteral("force");
const QString strJson = QStringLiteral("json");

const QString strPoints = QStringLiteral("points");
const QString strObjects = QStringLiteral("objects");

const QString strField = QStringLiteral("field");
const QString strLength = QStringLiteral("length");
const QString strName = QStringLiteral("name");

QList<QCommandLineOption> options()
{
    return {
        {{QStringLiteral("h"), strHelp}, QStringLiteral("Prints this help and exits.")},
        {strDesignation,
         QStringLiteral("Field with the designations of objects. Without it, a MIF file gives its first field and a "
                        "drawing the text inside the outline or else the nearest one."),
         strField},
        {strNumber,
         QStringLiteral("Field with the numbers of points. Without it, a MIF file gives its first field and a drawing "
                        "the nearest text."),
         strField},
        {strReach, QStringLiteral("Greatest distance of a text from the object or point that it names."), strLength,
         QStringLiteral("5")},
        {strDeviation, QStringLiteral("Greatest distance of a chord from its arc."), strLength,
         QStringLiteral("0.005")},
        {strEncoding, QStringLiteral("Encoding of the output."), strName, QStringLiteral("windows-1251")},
        {strSourceEncoding, QStringLiteral("Encoding of a DXF, MIF or Shapefile. Without it, it is guessed."), strName},
        {strCrs, QStringLiteral("Transforms to this coordinate system, as in EPSG:28407."), strName},
        {strSourceCrs,
         QStringLiteral("Coordinate system of the input, instead of the one that it names. Without either, "
                        "coordinates that can be longitude and latitude are taken for those (EPSG:4326)."),
         strName},
        {strSwap, QStringLiteral("Exchanges the two coordinates.")},
        {strSymbols,
         QStringLiteral(
             "What becomes of small circles and inserted blocks of a drawing on a corner of a closed outline "
             "or beside a number: points, or objects like all others."),
         QStringLiteral("points|objects"), strPoints},
        {strLayer,
         QStringLiteral(
             "Takes only this layer (of a drawing: its entities on this layer). Can be given several times."),
         strName},
        {strWhere, QStringLiteral("Takes only features that meet this SQL condition."), QStringLiteral("condition")},
        {strForce, QStringLiteral("Overwrites an existing output.")},
        {strJson, QStringLiteral("Prints the report as a line of JSON.")},
    };
}

} // namespace

ConvertCommandLine::ConvertCommandLine()
{
    m_parser.setApplicationDescription(QStringLiteral(
        "Converts any vector source that GDAL reads to a MIF/MID pair that the import reads completely.\n\n"
        "A feature with areas or lines becomes an object, points become points with numbers. What\n"
        "cannot be taken is listed. At the end the output is imported and compared with what was\n"
        "written.\n\n"
        "Exit status: 0 the output is complete, also when the report lists what was left out; 1 nothing\n"
        "was written: there is nothing to import, the import does not read the same back, the output\n"
        "cannot be saved, or the work was interrupted; 2 wrong usage, the output exists or is the input,\n"
        "or the report cannot be printed; 3 the input cannot be read."));
    m_parser.addOptions(::options());
    m_parser.addPositionalArgument(QStringLiteral("input"), QStringLiteral("File to convert."));
    m_parser.addPositionalArgument(QStringLiteral("output"),
                                   QStringLiteral("MIF file to write, with the suffix .mif."));
}

bool ConvertCommandLine::fail(const QString &text)
{
    m_error = text;
    return false;
}

bool ConvertCommandLine::read(const QStringList &arguments)
{
    if (!m_parser.parse(QStringList{QStringLiteral("importprepare convert")} + arguments))
        return fail(m_parser.errorText());
    if (m_parser.isSet(strHelp)) {
        // The parser knows the name of the program, but not that of the sub-command.
        m_options.help = m_parser.helpText();
        m_options.help.replace(0, m_options.help.indexOf(QLatin1Char('\n')),
                               QStringLiteral("Usage: importprepare convert [options] input output"));
        return true;
    }
    m_options.designation = m_parser.value(strDesignation);
    m_options.number = m_parser.value(strNumber);
    m_options.crs = m_parser.value(strCrs);
    m_options.sourceCrs = m_parser.value(strSourceCrs);
    m_options.swapXY = m_parser.isSet(strSwap);
    m_options.layers = m_parser.values(strLayer);
    m_options.where = m_parser.value(strWhere);
    m_options.force = m_parser.isSet(strForce);
    m_options.json = m_parser.isSet(strJson);
    return readFiles() && readSymbols() && readLength(strReach, true, m_options.reach) &&
           readLength(strDeviation, false, m_options.deviation) && readEncoding(strEncoding, m_options.encoding) &&
           readEncoding(strSourceEncoding, m_options.sourceEncoding);
}

// The import looks for the MID file under the name of the MIF file with the last letter replaced by a small d.
bool ConvertCommandLine::readFiles()
{
    const QStringList files = m_parser.positionalArguments();
    if (files.size() != 2)
        return fail(QStringLiteral("An input and an output are needed."));
    m_options.input = files.at(0);
    m_options.output = files.at(1);
    return m_options.output.endsWith(QLatin1String(".mif")) ||
           fail(QStringLiteral("The name of the output must end in .mif, not \"%1\".").arg(m_options.output));
}

bool ConvertCommandLine::readLength(const QString &name, bool isZeroAllowed, double &length)
{
    const QString value = m_parser.value(name);
    bool ok = false;
    length = value.toDouble(&ok);
    if (ok && std::isfinite(length) && (length > 0 || (isZeroAllowed && length >= 0)))
        return true;
    if (value.contains(QLatin1Char(',')))
        return fail(QStringLiteral("--%1 takes a number with a decimal point, not \"%2\".").arg(name, value));
    return fail(QStringLiteral("--%1 takes a positive number, not \"%2\".").arg(name, value));
}

bool ConvertCommandLine::readSymbols()
{
    const QString value = m_parser.value(strSymbols);
    m_options.takesSymbols = value == strPoints;
    return m_options.takesSymbols || value == strObjects ||
           fail(QStringLiteral("--%1 takes %2 or %3, not \"%4\".").arg(strSymbols, strPoints, strObjects, value));
}

// The output is read as lines and fields, so its encoding must contain ASCII.
bool ConvertCommandLine::readEncoding(const QString &name, QString &encoding)
{
    const QString value = m_parser.value(name);
    if (value.isEmpty() && name == strSourceEncoding)
        return true;
    const QTextCodec *const codec = QTextCodec::codecForName(value.toLatin1());
    if (codec == nullptr)
        return fail(QStringLiteral("--%1 does not know the encoding \"%2\".").arg(name, value));
    encoding = QString::fromLatin1(codec->name());
    QTextCodec::ConverterState noHeader(QTextCodec::IgnoreHeader);
    const QString ascii = QStringLiteral("\n ,\"09AZaz");
    if (codec->fromUnicode(ascii.constData(), ascii.size(), &noHeader) != ascii.toLatin1())
        return fail(QStringLiteral("--%1 takes an encoding that contains ASCII, not \"%2\".").arg(name, value));
    return true;
}
