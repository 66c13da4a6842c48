#pragma once

#include "imported.h"
#include "testing.h"

/// The three lines that begin every MIF file.
const QString mifHeader = QStringLiteral("VERSION 300\nCHARSET \"WindowsCyrillic\"\nDELIMITER \",\"\n");

/// An import of plan.mif that numbers points from «н1» and objects from «ЗУ1».
struct MifFixture
{
    MifFixture()
    {
        import.setEncoding("UTF-8");
        import.pointPref = QStringLiteral("н");
        import.pointStartNum = 1;
        import.objectPref = QStringLiteral("ЗУ");
        import.objectStartNum = 1;
        import.objectFileName = files.path(QStringLiteral("plan.mif"));
        import.objects = &objects;
    }

    /// Looks up the designations of points and objects in MID files.
    void searchDefs() { import.searchPointDefs = import.searchObjectDefs = true; }

    /// Writes a MIF file whose header has four lines, so that \a data begins in line 5.
    void writeMif(const QString &data, const QString &name = QStringLiteral("plan.mif")) const
    {
        files.write(name, {mifHeader + QStringLiteral("DATA"), data});
    }

    void writeMid(const QString &records, const QString &name = QStringLiteral("plan.mid")) const
    {
        files.write(name, {records});
    }

    QString objectText() const { return described(objects).join(QLatin1Char('\n')); }
    QString pointText() const { return described(knownPoints(import)).join(QLatin1Char('\n')); }

    const StatusRecorder host;
    const TextFixture files;
    QVector<DefPolygon> objects;
    MifImport import;
};
