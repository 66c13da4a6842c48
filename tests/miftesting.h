#pragma once

#include "imported.h"
#include "testing.h"

/// A run over plan.mif, unless told otherwise, that numbers points from «н1» and objects from «ЗУ1».
struct MifRun
{
    MifRun()
    {
        import.setEncoding("UTF-8");
        import.pointPref = QStringLiteral("н");
        import.pointStartNum = 1;
        import.objectPref = QStringLiteral("ЗУ");
        import.objectStartNum = 1;
        import.objectFileName = files.path(QStringLiteral("plan.mif"));
        import.objects = &objects;
    }

    /// Writes a header of four lines, so that \a data begins in line 5.
    void writeMif(const QString &data, const QString &name = QStringLiteral("plan.mif")) const
    {
        const QString header = QStringLiteral("VERSION 300\nCHARSET \"WindowsCyrillic\"\nDELIMITER \",\"\nDATA\n");
        files.writeBytes(name, (header + data + QLatin1Char('\n')).toUtf8());
    }

    void writeMid(const QString &records, const QString &name = QStringLiteral("plan.mid")) const
    {
        files.writeBytes(name, (records + QLatin1Char('\n')).toUtf8());
    }

    QString objectText() const { return described(objects).join(QLatin1Char('\n')); }
    QString pointText() const { return described(knownPoints(import)).join(QLatin1Char('\n')); }

    const StatusRecorder host;
    const TextFixture files;
    QVector<DefPolygon> objects;
    MifImport import;
};
