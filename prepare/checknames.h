#pragma once

#include "checkscan.h"

#include <QStringList>

/// The designations that the nearest texts of a drawing give to its objects, for a drawing without known points. Empty
/// for all other files.
///
/// When the import looks up point numbers in a drawing that has no points, it does not sort the texts, and its search
/// for the nearest one depends on their order in the file.
QStringList namesByNearestText(const QString &fileName, const CheckOptions &options, const FileFacts &facts);
