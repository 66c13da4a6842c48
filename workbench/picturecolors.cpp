#include "picturecolors.h"

#include "colors.h"

namespace {

QColor between(const QColor &from, const QColor &to, double part)
{
    const auto channel = [part](int a, int b) { return qRound(a + (b - a) * part); };
    return {channel(from.red(), to.red()), channel(from.green(), to.green()), channel(from.blue(), to.blue())};
}

QColor translucent(QColor color, double alpha)
{
    color.setAlphaF(alpha);
    return color;
}

} // namespace

PictureColors PictureColors::of(const QPalette &palette)
{
    const QColor &paper = palette.color(QPalette::Active, QPalette::Base);
    const QColor &ink = palette.color(QPalette::Active, QPalette::Text);
    const QColor &accent = palette.color(QPalette::Active, QPalette::Highlight);
    const bool hasDarkPaper = isDark(palette);
    // Orange differs from the usual blue accents and from ink, on light and on dark paper.
    const QColor current = hasDarkPaper ? QColor(255, 170, 60) : QColor(214, 92, 0);
    PictureColors colors;
    colors.paper = paper;
    colors.line = between(ink, accent, 0.35);
    colors.fill = translucent(accent, hasDarkPaper ? 0.22 : 0.13);
    colors.text = between(ink, paper, 0.25);
    colors.name = ink;
    colors.currentLine = current;
    colors.currentFill = translucent(current, 0.25);
    return colors;
}

PictureColors PictureColors::ofPaper()
{
    QPalette paper;
    paper.setColor(QPalette::Base, Qt::white);
    paper.setColor(QPalette::Text, Qt::black);
    paper.setColor(QPalette::Highlight, QColor(48, 140, 198));
    return of(paper);
}
