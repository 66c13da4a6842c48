#pragma once

#include "pluginhost.h"

const QStringList mifHeader{QStringLiteral("VERSION 300"), QStringLiteral("CHARSET \"WindowsCyrillic\""),
                            QStringLiteral("DELIMITER \",\""), QStringLiteral("DATA")};

/// Writes a pair of files with a header of four lines, so that \a data begins in line 5. Gives the path of the MIF
/// file.
inline QString writePair(const PluginHost &host, const QString &name, const QStringList &data,
                         const QStringList &records)
{
    if (!records.isEmpty())
        host.write(name + QStringLiteral(".mid"), records);
    return host.write(name + QStringLiteral(".mif"), mifHeader + data);
}

/// Two lines, of which the second begins where the first ends; without MID file.
inline QString writeLines(const PluginHost &host)
{
    return writePair(host, QStringLiteral("lines"), {QStringLiteral("LINE 1 2 3 4"), QStringLiteral("LINE 3 4 5 6")},
                     {});
}

/// Turns off what needs points or a MID file.
inline void searchNothing(const DialogDriver &driver)
{
    driver.setChecked("searchPointDefsCheck", false);
    driver.setChecked("searchObjectDefsCheck", false);
}
