#pragma once

#include <QColor>
#include <QPalette>

/// The colours of a picture.
struct PictureColors
{
    QColor paper;
    QColor line;
    QColor fill; ///< translucent
    QColor text; ///< numbers of vertices
    QColor name; ///< designations of objects
    QColor currentLine;
    QColor currentFill; ///< translucent

    /// Colours that fit \a palette, which may be dark.
    static PictureColors of(const QPalette &palette);

    /// Colours for white paper.
    static PictureColors ofPaper();
};
