#include "convertcontent.h"

#include <QByteArray>

#include <cpl_string.h>

// Qt rounds a digit 5 at the end differently.
double asWritten(double coordinate)
{
    char text[32];
    CPLsnprintf(text, sizeof text, "%.15g", coordinate);
    return QByteArray(text).toDouble();
}
