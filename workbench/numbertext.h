#pragma once

#include <QString>

/// The Russian forms of a noun: 1 объект, 2 объекта, 5 объектов.
struct NounForms
{
    QString one;
    QString few;
    QString many;
};

/// The form for \a count, which must not be negative.
const QString &nounForm(int count, const NounForms &forms);

/// \a count with its digits in groups of three, separated by no-break spaces.
QString groupedText(int count);

/// \a count and its noun: «5 120 вершин».
QString countText(int count, const NounForms &forms);

/// \a value with two decimals and groups of three digits; empty for NaN and infinity.
QString metresText(double value);
