#pragma once

#include "checkgdal.h"
#include "checkimport.h"
#include "checknumbers.h"
#include "checkscan.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// Severities, the most important first.
enum class Severity { Error, Warning, Note };

/// One thing that an import of a file would lose or get wrong. The texts are for the user.
struct Finding
{
    QString id;
    Severity severity = Severity::Note;
    qint64 count = 0;
    QString place; ///< of the first case
    QString text;
    QString cure;
};

/// The input of the rules.
struct Evidence
{
    const QString &fileName;
    const CheckOptions &options;
    const FileFacts &facts;
    const ImportOutcome &outcome;
    const ImportStatistics &statistics;
    const FoundContent &found;
};

/// Applies all rules to \a evidence. The findings are in order of importance.
QVector<Finding> findProblems(const Evidence &evidence);

/// True if converting the file cures \a finding. The text of the cure decides, so that a report and the command that it
/// prints agree.
bool conversionCures(const Finding &finding);
/// True if the conversion has to transform the coordinates.
bool needsCoordinateSystem(const Finding &finding);

/// The ids of all findings.
QStringList findingIds();

/// The finding \a id, without a place, for a file that could not be examined. The id must be in the table.
Finding findingWithoutEvidence(const QString &id);
