#pragma once

#include "imported.h"
#include "testing.h"

#include <QDir>

#include <memory>

/// Lines 1 to 4 of a MIF file.
const QByteArray mifHead("VERSION 300\nCHARSET \"Neutral\"\nDELIMITER \",\"\nDATA\n");

/// Lines 1 to 10 of a drawing.
const QByteArray dxfHead("0\nSECTION\n2\nHEADER\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n");

/// The same object in both formats.
const QByteArray mifLine("LINE 0 0 1 1\n");
const QByteArray dxfLine("0\nLINE\n10\n0\n20\n0\n11\n1\n21\n1\n");
const QString readLine = QStringLiteral("ЗУ1 [н1 0 0, н2 1 1]");

/// A value of this process's status in megabytes; 0 where the system does not tell.
inline int statusMegabytes(const QByteArray &key)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    const QByteArray text = status.readAll();
    const int begin = text.indexOf(key) + key.size();
    return text.mid(begin, text.indexOf("kB", begin) - begin).trimmed().toInt() / 1024;
}

/// Makes the peak begin anew.
inline void forgetPeak()
{
    QFile references(QStringLiteral("/proc/self/clear_refs"));
    if (references.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        references.write("5");
}

/// A run over a file of its folder, in the format that its name tells; numbers from «н1» and «ЗУ1».
struct BadInputFixture
{
    explicit BadInputFixture(const QString &objectFile)
    {
        if (objectFile.endsWith(QLatin1String(".dxf")))
            import = std::make_unique<DxfImport>();
        else
            import = std::make_unique<MifImport>();
        import->setEncoding("UTF-8");
        import->pointPref = QStringLiteral("н");
        import->pointStartNum = 1;
        import->objectPref = QStringLiteral("ЗУ");
        import->objectStartNum = 1;
        import->objectFileName = files.path(objectFile);
        import->objects = &objects;
    }

    QString objectText() const { return described(objects).join(QLatin1Char('\n')); }

    /// The messages, with the names of files without their folder.
    QStringList messages() const
    {
        QStringList texts = host.messages();
        texts.replaceInStrings(QDir::toNativeSeparators(files.path(QString()) + QLatin1Char('/')), QString());
        return texts;
    }

    const StatusRecorder host;
    const TextFixture files;
    QVector<DefPolygon> objects;
    std::unique_ptr<MapImport> import;
};
