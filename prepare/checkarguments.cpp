// The command line of the sub-command check.

#include "checkcommand.h"
#include "checkfolder.h"

#include <QDir>
#include <QFileInfo>
#include <QTextCodec>
#include <QThread>

namespace {

const QString strHelp = QStringLiteral("help");
const QString strJson = QStringLiteral("json");
const QString strHtml = QStringLiteral("html");
const QString strEncoding = QStringLiteral("encoding");
const QString strPoints = QStringLiteral("points");
const QString strNoSearchPoints = QStringLiteral("no-search-points");
const QString strNoSearchObjects = QStringLiteral("no-search-objects");
const QString strJobs = QStringLiteral("jobs");
const QString strTimeout = QStringLiteral("timeout");
const QString strPicture = QStringLiteral("picture");

const QString strNumber = QStringLiteral("number");
const QString strFile = QStringLiteral("file");

constexpr int maxJobs = 1000;
constexpr int maxTimeout = 1000000; // seconds; as milliseconds they fit an int

QList<QCommandLineOption> allOptions()
{
    QCommandLineOption picture(strPicture, QStringLiteral("Saves the picture of the only file."), strFile);
    picture.setFlags(QCommandLineOption::HiddenFromHelp);
    return {
        picture,
        {{QStringLiteral("h"), strHelp}, QStringLiteral("Prints this help and exits.")},
        {strJson, QStringLiteral("Prints one JSON object per file, each on its own line.")},
        {strHtml, QStringLiteral("Saves a page with pictures to this file."), strFile},
        {strEncoding, QStringLiteral("Encoding of the input files."), QStringLiteral("name"),
         QStringLiteral("Default")},
        {strPoints, QStringLiteral("Separate file with the points."), strFile},
        {strNoSearchPoints, QStringLiteral("Renumbers all points.")},
        {strNoSearchObjects, QStringLiteral("Renames all objects.")},
        {strJobs,
         QStringLiteral("Number of files to check in parallel, each in its own process. The default for "
                        "several files is the number of cores."),
         strNumber},
        {strTimeout, QStringLiteral("Greatest time for each file, which is then checked in its own process."),
         QStringLiteral("seconds"), QStringLiteral("60")},
    };
}

/// Returns why \a page must not be written; empty if it may be.
QString pageError(const QString &page, const CheckOptions &options)
{
    if (page.isEmpty())
        return QStringLiteral("--html needs the name of a file.");
    const QFileInfo file(page);
    const auto isInput = [](const QString &name) {
        return formatOf(name) != Format::Unknown || name.endsWith(QLatin1String(".mid"), Qt::CaseInsensitive);
    };
    // A link is replaced at its target.
    if (isInput(page) || isInput(file.symLinkTarget()) || isInput(file.canonicalFilePath()))
        return QStringLiteral("--html names the page to write, and \"%1\" is a name of a MIF or DXF file.").arg(page);
    if (!options.pointFile.isEmpty() && file == QFileInfo(options.pointFile))
        return QStringLiteral("\"%1\" is the file of points, so --html would overwrite it.").arg(page);
    if (file.exists() && !file.isFile())
        return QStringLiteral("\"%1\" is not a regular file, so --html would destroy it.").arg(page);
    if (!file.dir().exists())
        return QStringLiteral("The folder of \"%1\" is missing.").arg(page);
    return {};
}

} // namespace

CheckCommandLine::CheckCommandLine()
{
    m_parser.setApplicationDescription(QStringLiteral(
        "Reports what an import of MIF and DXF files would lose or get wrong.\n\n"
        "Exit status: 0 if everything comes in, 1 if something would be lost or wrong or the work was\n"
        "interrupted, 2 for wrong usage or if the report could not be written, 3 if a file could not be\n"
        "read at all."));
    m_parser.addOptions(allOptions());
    m_parser.addPositionalArgument(strFile, QStringLiteral("Files, and folders to search for MIF and DXF files."),
                                   QStringLiteral("file..."));
}

QString CheckCommandLine::helpText() const
{
    return m_parser.helpText().replace(QLatin1String("[options]"), QLatin1String("check [options]"));
}

bool CheckCommandLine::fail(const QString &text)
{
    m_error = text;
    return false;
}

// A missing file is not an error here: it gets its report like all others.
bool CheckCommandLine::addFiles(const QString &path)
{
    if (QFileInfo(path).isDir()) {
        const QStringList files = filesIn(path);
        m_command.files += files;
        return !files.isEmpty() || fail(QStringLiteral("No MIF or DXF files in \"%1\".").arg(path));
    }
    if (formatOf(path) == Format::Unknown)
        return fail(
            QStringLiteral("\"%1\" has neither the suffix .mif nor .dxf. The command convert reads other formats.")
                .arg(path));
    m_command.files.append(path);
    return true;
}

bool CheckCommandLine::readOptions()
{
    CheckOptions &options = m_command.options;
    options.encoding = m_parser.value(strEncoding);
    options.pointFile = m_parser.value(strPoints);
    options.searchPoints = !m_parser.isSet(strNoSearchPoints);
    options.searchObjects = !m_parser.isSet(strNoSearchObjects);
    m_command.json = m_parser.isSet(strJson);
    m_command.page = m_parser.value(strHtml);
    m_command.picture = m_parser.value(strPicture);
    const bool isKnown = options.encoding == QLatin1String("Default") ||
                         QTextCodec::codecForName(options.encoding.toLatin1()) != nullptr;
    if (!isKnown)
        return fail(QStringLiteral("Unknown encoding \"%1\".").arg(options.encoding));
    if (!options.pointFile.isEmpty() && !QFileInfo(options.pointFile).isReadable())
        return fail(QStringLiteral("Cannot read the file of points \"%1\".").arg(options.pointFile));
    if (!m_parser.isSet(strHtml))
        return true;
    const QString error = pageError(m_command.page, options);
    return error.isEmpty() || fail(error);
}

// A single file needs its own process only for its timeout.
bool CheckCommandLine::readProcesses()
{
    const auto readNumber = [this](const QString &name, int max, int &number) {
        bool ok = false;
        number = m_parser.value(name).toInt(&ok);
        return (ok && number >= 1 && number <= max) ||
               fail(QStringLiteral("--%1 takes a number from 1 to %2.").arg(name).arg(max));
    };
    int seconds = 0;
    if (!readNumber(strTimeout, maxTimeout, seconds))
        return false;
    m_command.timeoutMilliseconds = 1000 * seconds;
    if (m_parser.isSet(strJobs))
        return readNumber(strJobs, maxJobs, m_command.jobs);
    const bool needsProcesses = m_command.files.size() > 1 || m_parser.isSet(strTimeout);
    m_command.jobs = needsProcesses ? QThread::idealThreadCount() : 0;
    return true;
}

bool CheckCommandLine::read(const QStringList &arguments)
{
    if (!m_parser.parse(QStringList{QStringLiteral("importprepare")} + arguments))
        return fail(m_parser.errorText());
    m_command.help = m_parser.isSet(strHelp);
    if (m_command.help)
        return true;
    const QStringList paths = m_parser.positionalArguments();
    if (paths.isEmpty())
        return fail(QStringLiteral("No files to check."));
    if (!readOptions())
        return false;
    for (const QString &path : paths) {
        if (!addFiles(path))
            return false;
    }
    return readProcesses();
}
