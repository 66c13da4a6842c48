#include "convertcontent.h"

#include <QByteArray>

#include <cpl_string.h>

// Prints with GDAL, because Qt rounds a final digit 5 differently.
double asWritten(double coordinate)
{
    char text[32];
    CPLsnprintf(text, sizeof text, "%.15g", coordinate);
    return QByteArray(text).toDouble();
}
