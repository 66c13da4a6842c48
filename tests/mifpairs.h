#pragma once

#include "pluginhost.h"

const QStringList mifHeader{QStringLiteral("VERSION 300"), QStringLiteral("CHARSET \"WindowsCyrillic\""),
                            QStringLiteral("DELIMITER \",\""), QStringLiteral("DATA")};

/// Writes a MIF file, in which \a data begins in line 5, and a MID file unless there are no \a records. Returns the
/// path of the MIF file.
inline QString writePair(const PluginHost &host, const QString &name, const QStringList &data,
                         const QStringList &records)
{
    if (!records.isEmpty())
        host.write(name + QStringLiteral(".mid"), records);
    return host.write(name + QStringLiteral(".mif"), mifHeader + data);
}

/// Writes a MIF file of two lines with a common point, without MID file. Returns its path.
inline QString writeLines(const PluginHost &host)
{
    return writePair(host, QStringLiteral("lines"), {QStringLiteral("LINE 1 2 3 4"), QStringLiteral("LINE 3 4 5 6")},
                     {});
}

/// Switches off both searches, so that no MID file is needed.
inline void searchNothing(const DialogDriver &driver)
{
    driver.setChecked("searchPointDefsCheck", false);
    driver.setChecked("searchObjectDefsCheck", false);
}
