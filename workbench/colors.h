#pragma once

#include <QColor>
#include <QPalette>

/// True if \a palette has light text on a dark background.
bool isDark(const QPalette &palette);

/// \a color, which is dark, or a light variant of it on a dark background.
QColor readable(const QColor &color, const QPalette &palette);

/// The text colour of errors.
QColor errorColor(const QPalette &palette);

/// The background of designations that occur more than once.
QColor duplicateColor(const QPalette &palette);
