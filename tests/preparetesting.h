#pragma once

#include "checkfile.h"
#include "dxftesting.h"
#include "miftesting.h"

#include <QTest>

/// A finding as "id count @ place", or as "id count" if it has no place.
inline QString described(const Finding &finding)
{
    const QString text = QStringLiteral("%1 %2").arg(finding.id).arg(finding.count);
    return finding.place.isEmpty() ? text : text + QStringLiteral(" @ ") + finding.place;
}

inline QString described(const QVector<Finding> &findings)
{
    QStringList texts;
    for (const Finding &finding : findings)
        texts.append(described(finding));
    return texts.join(QLatin1String("; "));
}

/// Checks files that the test writes.
struct CheckFixture
{
    CheckFixture() { options.encoding = QStringLiteral("UTF-8"); }

    /// Checks a drawing of \a lines.
    FileReport checkDxf(const QStringList &lines) const
    {
        return checkFile(files.write(QStringLiteral("plan.dxf"), lines), options, false);
    }

    /// Checks a MIF file, whose line 5 is the first of \a data. If \a records is null, there is no MID file.
    FileReport checkMif(const QString &data, const QString &records) const
    {
        return checkMifText(mifHeader + QStringLiteral("DATA\n") + data, records);
    }

    FileReport checkMifText(const QString &text, const QString &records) const
    {
        if (!records.isNull())
            files.write(QStringLiteral("plan.mid"), {records});
        return checkFile(files.write(QStringLiteral("plan.mif"), {text}), options, false);
    }

    CheckOptions options;
    const TextFixture files;
};
