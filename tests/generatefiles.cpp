// Writes generated files for a comparison of two builds of importhost: generatefiles FOLDER COUNT
//
// Each run has a folder, FOLDER/1 and so on, with its files and with the arguments of importhost, one a line.

#include "filegenerator.h"

#include <QByteArrayList>
#include <QCoreApplication>
#include <QDir>
#include <QTextCodec>

namespace {

bool writeFile(const QDir &dir, const QString &name, const QByteArray &bytes)
{
    QFile file(dir.filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

// Some results depend on the system or on Qt: an unknown encoding means that of the system, and East Asian ones are
// decoded by ICU or, where Qt is built without it, by Qt's own tables, which differ in invalid bytes.
QString encodingName(const QByteArray &name)
{
    static const QByteArrayList asian{"Big5", "EUC-JP", "GB18030", "ISO-2022-JP", "Shift_JIS"};
    const bool isPortable = QTextCodec::codecForName(name) != nullptr && !asian.contains(name);
    return isPortable ? QString::fromLatin1(name) : QStringLiteral("Windows-1251");
}

QStringList arguments(const ImportOptions &options)
{
    QStringList list{QStringLiteral("--operation"), options.dxf ? QStringLiteral("dxf") : QStringLiteral("mif"),
                     QStringLiteral("--objects"),   options.objectFileName,
                     QStringLiteral("--encoding"),  encodingName(options.encoding)};
    if (!options.pointFileName.isEmpty())
        list << QStringLiteral("--points") << options.pointFileName;
    if (!options.searchPointDefs)
        list << QStringLiteral("--no-search-points");
    if (!options.searchObjectDefs)
        list << QStringLiteral("--no-search-objects");
    return list << QStringLiteral("--point-prefix") << options.pointPref << QStringLiteral("--object-prefix")
                << options.objectPref;
}

bool writeRun(const QDir &dir, const GeneratedRun &run)
{
    const QString lines = arguments(run.options).join(QLatin1Char('\n')) + QLatin1Char('\n');
    bool ok = dir.mkpath(QStringLiteral(".")) && writeFile(dir, QStringLiteral("arguments"), lines.toUtf8());
    for (const GeneratedFile &file : run.files)
        ok = ok && writeFile(dir, file.name, file.bytes);
    return ok;
}

// All kinds in turn.
RunKind kindOf(int number)
{
    return {(number & 1) != 0, (number & 2) == 0, (number & 4) == 0, (number & 8) != 0};
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() != 3)
        qFatal("usage: generatefiles FOLDER COUNT");
    for (int number = 1; number <= words.at(2).toInt(); ++number) {
        const QDir dir(words.at(1) + QLatin1Char('/') + QString::number(number));
        if (!writeRun(dir, FileGenerator(static_cast<quint32>(number)).run(kindOf(number))))
            qFatal("cannot write %s", qPrintable(dir.path()));
    }
    return 0;
}
