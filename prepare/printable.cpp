#include "printable.h"

#include <utility>

namespace {

QString withoutControls(QString text, bool keepsLineEnds)
{
    for (QChar &c : text) {
        if (c.category() == QChar::Other_Control && !(keepsLineEnds && c == QLatin1Char('\n')))
            c = QChar(QChar::ReplacementCharacter);
    }
    return text;
}

} // namespace

QString printable(QString text)
{
    return withoutControls(std::move(text), false);
}

QString printableLines(QString text)
{
    return withoutControls(std::move(text), true);
}
