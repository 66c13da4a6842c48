#include "checkcharset.h"

#include "encodingguess.h"

#include <QHash>
#include <QTextCodec>

namespace {

/// The digits of \a name: the number of a code page.
QString digitsOf(const QString &name)
{
    QString digits;
    for (const QChar c : name) {
        if (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
            digits += c;
    }
    return digits;
}

} // namespace

QTextCodec *codecOfCharset(const QString &charset)
{
    static const QHash<QString, QByteArray> names{
        {QStringLiteral("WINDOWSARABIC"), "windows-1256"},
        {QStringLiteral("WINDOWSBALTICRIM"), "windows-1257"},
        {QStringLiteral("WINDOWSCYRILLIC"), "windows-1251"},
        {QStringLiteral("WINDOWSGREEK"), "windows-1253"},
        {QStringLiteral("WINDOWSHEBREW"), "windows-1255"},
        {QStringLiteral("WINDOWSLATIN1"), "windows-1252"},
        {QStringLiteral("WINDOWSLATIN2"), "windows-1250"},
        {QStringLiteral("WINDOWSTURKISH"), "windows-1254"},
        {QStringLiteral("UTF-8"), "UTF-8"},
    };
    const QString upper = charset.toUpper();
    if (names.contains(upper))
        return QTextCodec::codecForName(names.value(upper));
    const QByteArray page = digitsOf(upper).toLatin1();
    if (upper.startsWith(QLatin1String("ANSI_")))
        return QTextCodec::codecForName("windows-" + page);
    if (upper.startsWith(QLatin1String("CODEPAGE")) || upper.startsWith(QLatin1String("DOS")))
        return QTextCodec::codecForName("IBM" + page);
    return nullptr;
}

QTextCodec *readableCodec(const QByteArray &bytes, QTextCodec *chosen, QTextCodec *declared)
{
    if (isUtf8(bytes))
        return QTextCodec::codecForName("UTF-8");
    if (declared != nullptr)
        return declared;
    QTextCodec::ConverterState state;
    chosen->toUnicode(bytes.constData(), bytes.size(), &state);
    const bool isValid = state.invalidChars == 0 && state.remainingChars == 0;
    return isValid ? chosen : QTextCodec::codecForName("windows-1251");
}
