#include "unattendedoutput.h"

#include "catalogue.h"
#include "options.h"
#include "pictureexport.h"
#include "resultreader.h"
#include "savefile.h"
#include "unattendedimport.h"

#include <QBuffer>
#include <QFileInfo>

namespace {

bool saveText(const QString &text, const QString &fileName, QString &error)
{
    return saveFile(fileName, text.toUtf8(), error);
}

bool saveContours(const ImportResult &result, const QString &fileName, QString &error)
{
    return savePicture(result, true, fileName, error);
}

bool saveScreenshot(const QPixmap &screenshot, const QString &fileName, QString &error)
{
    const QByteArray format = QFileInfo(fileName).suffix().toLatin1();
    QBuffer buffer;
    if (screenshot.isNull())
        error = QStringLiteral("the plug-in opened no dialog");
    else if (!buffer.open(QIODevice::WriteOnly) || !screenshot.save(&buffer, format.constData()))
        error = QStringLiteral("unknown picture format \"%1\"").arg(QString::fromLatin1(format));
    return error.isEmpty() && saveFile(fileName, buffer.data(), error);
}

/// Saves \a content with \a function unless \a fileName is empty. Returns false after a failure, which has been
/// printed.
template <typename Content>
bool save(const char *name, bool (*function)(const Content &, const QString &, QString &), const Content &content,
          const QString &fileName)
{
    QString error;
    if (fileName.isEmpty() || function(content, fileName, error))
        return true;
    fail(QStringLiteral("Cannot save the %1 \"%2\": %3.").arg(QLatin1String(name), fileName, error));
    return false;
}

bool outputText(const QString &text, const QString &fileName)
{
    if (!fileName.isEmpty())
        return save("result", saveText, text, fileName);
    const bool ok = printLine(stdout, text);
    if (!ok)
        fail(QStringLiteral("Cannot print the result."));
    return ok;
}

QString counted(int count, const char *one, const char *several)
{
    return QStringLiteral("%1 %2").arg(count).arg(QLatin1String(count == 1 ? one : several));
}

void printSummary(const ImportResult &result, int messageCount)
{
    const QStringList counts{counted(result.objects.size(), "object", "objects"),
                             counted(result.vertices.size(), "vertex", "vertices"),
                             counted(messageCount, "message", "messages")};
    printLine(stderr, counts.join(QStringLiteral(", ")));
}

} // namespace

ExitStatus outputImport(const UnattendedImport &import, const HostOptions &options)
{
    bool ok = save("screenshot", saveScreenshot, import.screenshot(), options.dialog->screenshot);
    ResultReader reader(options.columns);
    if (!import.result().isEmpty()) {
        ok = outputText(import.result(), options.output) && ok;
        if (!reader.read(import.result()))
            return fail(QStringLiteral("Cannot read the result of the plug-in. %1").arg(reader.error()));
        ok = save("catalogue", saveCatalogue, reader.result(), options.catalogue) && ok;
        ok = save("picture", saveContours, reader.result(), options.picture) && ok;
    }
    printSummary(reader.result(), import.messageCount());
    if (!ok)
        return Failed;
    if (reader.result().objects.isEmpty())
        return NothingImported;
    return import.messageCount() == 0 ? Imported : ImportedWithMessages;
}
