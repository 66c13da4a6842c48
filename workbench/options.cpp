#include "options.h"

#include "pictureexport.h"
#include "pluginpath.h"
#include "preparepath.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <algorithm>

namespace {

const QString strPlugin = QStringLiteral("plugin");
const QString strList = QStringLiteral("list");
const QString strHelp = QStringLiteral("help");
const QString strVersion = QStringLiteral("version");
const QString strOperation = QStringLiteral("operation");
const QString strFormName = QStringLiteral("form-name");
const QString strObjectTable = QStringLiteral("object-table");
const QString strPointTable = QStringLiteral("point-table");
const QString strColumns = QStringLiteral("columns");
const QString strObjects = QStringLiteral("objects");
const QString strPoints = QStringLiteral("points");
const QString strEncoding = QStringLiteral("encoding");
const QString strNoSearchPoints = QStringLiteral("no-search-points");
const QString strNoSearchObjects = QStringLiteral("no-search-objects");
const QString strPointPrefix = QStringLiteral("point-prefix");
const QString strObjectPrefix = QStringLiteral("object-prefix");
const QString strPointStart = QStringLiteral("point-start");
const QString strObjectStart = QStringLiteral("object-start");
const QString strField = QStringLiteral("field");
const QString strSort = QStringLiteral("sort");
const QString strUpdate = QStringLiteral("update");
const QString strOutput = QStringLiteral("output");
const QString strCatalogue = QStringLiteral("catalogue");
const QString strPicture = QStringLiteral("picture");
const QString strScreenshot = QStringLiteral("screenshot");

const QString strNumber = QStringLiteral("number");
const QString strText = QStringLiteral("text");
const QString strFile = QStringLiteral("file");
const QString strName = QStringLiteral("name");
const QString strOne = QStringLiteral("1");
const QString strDefaultEncoding = QStringLiteral("Default"); // as the dialog calls the encoding of the system

constexpr int maxColumn = 999;
constexpr int maxField = 20;
constexpr int maxStart = 999999999;

/// An option with its default in the help.
QCommandLineOption withDefault(const QString &name, const QString &description, const QString &valueName,
                               const QString &value)
{
    return {name, QStringLiteral("%1 Default: %2").arg(description, value), valueName, value};
}

QList<QCommandLineOption> callOptions()
{
    return {
        {{QStringLiteral("h"), strHelp}, QStringLiteral("Prints this help and exits.")},
        {strVersion, QStringLiteral("Prints the version and exits.")},
        {strPlugin, QStringLiteral("Path of the plug-in. The default is the one built or installed with this program."),
         strFile, defaultPlugin()},
        {strList, QStringLiteral("Lists the operations of the plug-in and exits.")},
        {strOperation,
         QStringLiteral("Operation to call: mif, dxf or a name that --list prints. The window calls it at startup."),
         strName},
        withDefault(strFormName, QStringLiteral("Name of the form in the host."), strName, QStringLiteral("Форма")),
        withDefault(strObjectTable, QStringLiteral("Name of the object table in the host."), strName,
                    QStringLiteral("Участки")),
        withDefault(strPointTable, QStringLiteral("Name of the point table in the host."), strName,
                    QStringLiteral("Координаты")),
        withDefault(strColumns,
                    QStringLiteral("Columns of point number, X, Y and object designation in the host's tables, counted "
                                   "from 0, at most 999."),
                    QStringLiteral("n,x,y,def"), QStringLiteral("0,1,2,0")),
    };
}

QList<QCommandLineOption> dialogOptions()
{
    return {
        {strObjects, QStringLiteral("Imports this file unattended, without a window."), strFile},
        {strPoints, QStringLiteral("Separate file with the points."), strFile},
        {strEncoding,
         QStringLiteral("Encoding of the input files, such as Windows-1251, IBM866 or UTF-8. Default: Default, that of "
                        "the system"),
         strName, strDefaultEncoding},
        {strNoSearchPoints, QStringLiteral("Renumbers all points.")},
        {strNoSearchObjects, QStringLiteral("Renames all objects.")},
        withDefault(strPointPrefix, QStringLiteral("Prefix of new point numbers."), strText, QStringLiteral("н")),
        withDefault(strObjectPrefix, QStringLiteral("Prefix of new object designations."), strText,
                    QStringLiteral(":ЗУ")),
        withDefault(strPointStart, QStringLiteral("First new point number."), strNumber, strOne),
        withDefault(strObjectStart, QStringLiteral("First number of the new object designations."), strNumber, strOne),
        {strField,
         QStringLiteral("Fills a column, counted from 1 as in the dialog, at most 20, with a text for each vertex. Can "
                        "be given up to 5 times."),
         QStringLiteral("column=text")},
        {strSort, QStringLiteral("Sorts the objects.")},
        {strUpdate, QStringLiteral("Asks the host to update existing objects.")},
        {strOutput, QStringLiteral("Saves the result to this file instead of printing it."), strFile},
        {strCatalogue, QStringLiteral("Saves a catalogue of coordinates to this file, as CSV."), strFile},
        {strPicture, QStringLiteral("Saves a picture of the contours to this file: .png, .svg or .pdf."), strFile},
        {strScreenshot, QStringLiteral("Saves a picture of the dialog after the import to this file."), strFile},
    };
}

QString operationName(const QString &text)
{
    if (text == QLatin1String("mif"))
        return QStringLiteral("Объекты из MIF");
    return text == QLatin1String("dxf") ? QStringLiteral("Объекты из DXF") : text;
}

bool isEncoding(const QString &name)
{
    return name == strDefaultEncoding || QTextCodec::codecForName(name.toLatin1()) != nullptr;
}

bool toNumber(const QString &text, int min, int max, int &number)
{
    bool ok = false;
    number = text.toInt(&ok);
    return ok && number >= min && number <= max;
}

} // namespace

CommandLine::CommandLine()
{
    m_parser.setApplicationDescription(
        QStringLiteral("Stand-in host: calls an operation of the import plug-in.\n\n"
                       "With --objects, the program fills in the plug-in's dialog, prints messages to standard error\n"
                       "and the result to standard output. Without it, the program opens a window."));
    m_parser.addOptions(callOptions());
    m_parser.addOptions(dialogOptions());
}

QString CommandLine::help() const
{
    return m_parser.helpText() +
           QStringLiteral("\nExit status of an unattended import:\n"
                          "  0  objects were imported, without a message\n"
                          "  1  no objects were imported\n"
                          "  2  wrong usage, or something could not be loaded, read or saved\n"
                          "  3  objects were imported, but with messages: some may be missing\n\n"
                          "Example:\n"
                          "  importhost --operation mif --objects plan.mif --encoding Windows-1251 --output plan.xml");
}

bool CommandLine::fail(const QString &text)
{
    m_error = text;
    return false;
}

bool CommandLine::read(const QStringList &arguments)
{
    if (!m_parser.parse(arguments))
        return fail(m_parser.errorText());
    if (m_parser.isSet(strHelp))
        m_options.information = help();
    else if (m_parser.isSet(strVersion))
        m_options.information = QStringLiteral("importhost " IMPORT_VERSION);
    return !m_options.information.isEmpty() || (checkCombination() && checkFileNames() && readCall() && readDialog());
}

bool CommandLine::readCall()
{
    m_options.list = m_parser.isSet(strList);
    m_options.plugin = m_parser.value(strPlugin);
    m_options.prepare = findPrepareProgram(QCoreApplication::applicationDirPath());
    m_options.operation = operationName(m_parser.value(strOperation));
    m_options.formName = m_parser.value(strFormName);
    m_options.objectTable = m_parser.value(strObjectTable);
    m_options.pointTable = m_parser.value(strPointTable);
    m_options.output = m_parser.value(strOutput);
    m_options.catalogue = m_parser.value(strCatalogue);
    m_options.picture = m_parser.value(strPicture);
    return readColumns();
}

bool CommandLine::readColumns()
{
    const QString value = m_parser.value(strColumns);
    const QStringList texts = value.split(QLatin1Char(','));
    GeometryInfo &info = m_options.columns;
    const QVector<qint32 *> columns{&info.nColNum, &info.xColNum, &info.yColNum, &info.defColNum};
    bool ok = texts.size() == columns.size();
    for (int i = 0; ok && i < columns.size(); ++i)
        ok = toNumber(texts.at(i), 0, maxColumn, *columns.at(i));
    return ok ||
           fail(QStringLiteral("--columns takes four numbers from 0 to %1, not \"%2\".").arg(maxColumn).arg(value));
}

// The choices of the dialog require --objects: otherwise the user makes them in the dialog.
bool CommandLine::checkCombination()
{
    const QStringList positional = m_parser.positionalArguments();
    if (!positional.isEmpty())
        return fail(QStringLiteral("Unexpected argument \"%1\".").arg(positional.first()));
    if (m_parser.isSet(strObjects))
        return m_parser.isSet(strOperation) || fail(QStringLiteral("--objects needs --operation."));
    const QList<QCommandLineOption> options = dialogOptions();
    for (const QCommandLineOption &option : options) {
        const QString name = option.names().first();
        if (m_parser.isSet(name))
            return fail(QStringLiteral("--%1 needs --objects.").arg(name));
    }
    return true;
}

bool CommandLine::checkFileNames()
{
    for (const QString &name : {strPlugin, strObjects, strPoints, strOutput, strCatalogue, strPicture, strScreenshot}) {
        if (m_parser.isSet(name) && m_parser.value(name).isEmpty())
            return fail(QStringLiteral("--%1 needs the name of a file.").arg(name));
    }
    const QString picture = m_parser.value(strPicture);
    return picture.isEmpty() || hasPictureSuffix(picture) ||
           fail(QStringLiteral("--picture needs a file that ends in .png, .svg or .pdf, not \"%1\".").arg(picture));
}

bool CommandLine::readDialog()
{
    if (!m_parser.isSet(strObjects))
        return true;
    DialogChoices &choices = m_options.dialog.emplace();
    choices.objectFile = m_parser.value(strObjects);
    choices.pointFile = m_parser.value(strPoints);
    choices.encoding = m_parser.value(strEncoding);
    if (!isEncoding(choices.encoding))
        return fail(QStringLiteral("--encoding: unknown encoding \"%1\".").arg(choices.encoding));
    choices.searchPoints = !m_parser.isSet(strNoSearchPoints);
    choices.searchObjects = !m_parser.isSet(strNoSearchObjects);
    choices.pointPrefix = m_parser.value(strPointPrefix);
    choices.objectPrefix = m_parser.value(strObjectPrefix);
    choices.sort = m_parser.isSet(strSort);
    choices.update = m_parser.isSet(strUpdate);
    choices.screenshot = m_parser.value(strScreenshot);
    return readStart(strPointStart, choices.pointStart) && readStart(strObjectStart, choices.objectStart) &&
           readFields(choices.fields);
}

bool CommandLine::readStart(const QString &name, int &number)
{
    const QString value = m_parser.value(name);
    return toNumber(value, 1, maxStart, number) ||
           fail(QStringLiteral("--%1 takes a number from 1 to %2, not \"%3\".").arg(name).arg(maxStart).arg(value));
}

bool CommandLine::readFields(QVector<QPair<int, QString>> &fields)
{
    const QStringList values = m_parser.values(strField);
    if (values.size() > DialogChoices::maxFieldCount)
        return fail(QStringLiteral("--field can be given at most %1 times.").arg(DialogChoices::maxFieldCount));
    for (const QString &value : values) {
        const int equals = value.indexOf(QLatin1Char('='));
        const QString text = value.mid(equals + 1);
        int column = 0;
        if (!toNumber(value.left(std::max(equals, 0)), 1, maxField, column) || text.isEmpty())
            return fail(QStringLiteral("--field takes a column from 1 to %1 and a text, as in 4=text, not \"%2\".")
                            .arg(maxField)
                            .arg(value));
        fields.append({column, text});
    }
    return true;
}
