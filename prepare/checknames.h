#pragma once

#include "checkimport.h"

#include <QString>
#include <QVector>

/// Objects that are named by a text although another text is nearer.
struct MisplacedNames
{
    qint64 count = 0;
    QString firstName;
};

/// Compares the designations in \a outcome with the nearest of \a texts, the texts of the drawing in any order.
///
/// When the import looks up point numbers in a drawing that has no points, it does not sort the texts, and its search
/// for the nearest one depends on their order in the file.
MisplacedNames findMisplacedNames(const ImportOutcome &outcome, const QVector<DefPoint> &texts);
