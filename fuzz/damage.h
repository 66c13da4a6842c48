#pragma once

#include <QByteArray>
#include <QRandomGenerator>

/// Returns \a bytes with one to four kinds of damage, some of it by pieces of \a other.
QByteArray damaged(QByteArray bytes, const QByteArray &other, QRandomGenerator &random);

/// Replaces the radii, scales and bulges in \a drawing that are out of all proportion: GDAL draws such an arc with
/// millions of chords, which takes minutes under the sanitizers.
QByteArray withPlausibleRadii(const QByteArray &drawing);
