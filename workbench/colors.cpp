#include "colors.h"

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Base).lightness() < palette.color(QPalette::Text).lightness();
}

QColor readable(const QColor &color, const QPalette &palette)
{
    return isDark(palette) ? QColor::fromHsl(color.hslHue(), color.hslSaturation() * 3 / 4, 185) : color;
}

QColor errorColor(const QPalette &palette)
{
    return readable(QColor(0xb0, 0x00, 0x20), palette);
}

QColor duplicateColor(const QPalette &palette)
{
    return isDark(palette) ? QColor(100, 45, 45) : QColor(255, 220, 220);
}
