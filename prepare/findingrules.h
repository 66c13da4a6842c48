#pragma once

#include "finding.h"

/// What a rule detects in a file.
struct Detection
{
    qint64 count = 0;
    QString place;
    QStringList details = {};  ///< replace %1, %2 and so on in the texts of the rule
    Stop stop = {};            ///< where the cases stop the import, if they do
    bool isConvertible = true; ///< false: conversion does not cure these cases
    bool isInDegrees = false;  ///< conversion has to transform the coordinates
};

/// Whether converting the file cures the cases of a rule.
enum class Conversion { Useless, Cures };

/// What a finding accounts for, so that general findings need not repeat it.
enum class Accounts {
    Nothing,
    Loss,     ///< objects that do not come in
    Rejection ///< the import reads nothing at all
};

/// A row of the table of findings.
struct FindingRule
{
    const char *id;
    Severity severity;
    Accounts accounts;
    Conversion conversion;
    Detection (*detect)(const Evidence &evidence);
    QString text;
    QString cure; ///< without its full stop; that conversion cures is added
};

/// The table, most important rules first within each severity. General rules, which look at what the others have
/// found, are not in it.
const QVector<FindingRule> &findingRules();
