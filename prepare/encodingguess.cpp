#include "encodingguess.h"

#include <QTextCodec>

#include <uchardet.h>

#include <algorithm>
#include <memory>

namespace {

QByteArray detected(const QByteArray &bytes)
{
    const std::unique_ptr<uchardet, decltype(&uchardet_delete)> detector(uchardet_new(), &uchardet_delete);
    if (detector == nullptr ||
        uchardet_handle_data(detector.get(), bytes.constData(), static_cast<std::size_t>(bytes.size())) != 0)
        return {};
    uchardet_data_end(detector.get());
    return {uchardet_get_charset(detector.get())};
}

QByteArray codecName(const QByteArray &name)
{
    const QTextCodec *const codec = name.isEmpty() ? nullptr : QTextCodec::codecForName(name);
    return codec == nullptr ? QByteArray() : codec->name();
}

// For a few words the detector often returns an unrelated encoding with the same byte range.
bool isPlausible(const QByteArray &name)
{
    static const QList<QByteArray> names{"windows-1251", "IBM866", "KOI8-R", "ISO-8859-5", "UTF-16LE", "UTF-16BE"};
    return names.contains(name);
}

// Programs often name the encoding of Western Europe whatever the texts are. In its languages letters beyond ASCII
// stand alone, in Cyrillic they follow each other.
bool isRatherCyrillic(const QByteArray &bytes)
{
    constexpr uchar firstLetter = 0xC0;
    int alone = 0;
    int inRow = 0;
    for (int i = 0; i < bytes.size(); ++i) {
        const auto isLetter = [&bytes](int at) { return static_cast<uchar>(bytes.at(at)) >= firstLetter; };
        if (isLetter(i))
            ++((i > 0 && isLetter(i - 1)) || (i + 1 < bytes.size() && isLetter(i + 1)) ? inRow : alone);
    }
    return inRow > alone;
}

bool isFew(const QByteArray &bytes)
{
    constexpr int enough = 60;
    return std::count_if(bytes.begin(), bytes.end(), [](char c) { return static_cast<uchar>(c) >= 0x80; }) < enough;
}

bool isRussianLetter(QChar c)
{
    return (c >= QChar(u'А') && c <= QChar(u'я')) || c == QChar(u'Ё') || c == QChar(u'ё');
}

// In a wrong encoding other characters appear, or capital letters within words.
bool isRussian(const QString &text)
{
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.unicode() >= 0x80 && !isRussianLetter(c))
            return false;
        if (i > 0 && isRussianLetter(c) && c.isUpper() && isRussianLetter(text.at(i - 1)) && text.at(i - 1).isLower())
            return false;
    }
    return true;
}

} // namespace

bool isAscii(const QByteArray &bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<uchar>(c) < 0x80; });
}

bool isUtf8(const QByteArray &bytes)
{
    static const QTextCodec *const utf8 = QTextCodec::codecForName("UTF-8");
    QTextCodec::ConverterState state;
    utf8->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

QByteArray guessEncoding(const QByteArray &bytes, const QByteArray &declared)
{
    if (isAscii(bytes))
        return {};
    if (isUtf8(bytes))
        return "UTF-8";
    QByteArray named = codecName(declared);
    // Of «кв» the detector is often wrong.
    if (!named.isEmpty() && isFew(bytes) && isRussian(QTextCodec::codecForName(named)->toUnicode(bytes)))
        return named;
    QByteArray guess = codecName(detected(bytes));
    if (isPlausible(guess))
        return guess;
    const bool isWestern = named == "windows-1252" || named == "ISO-8859-1";
    const bool isWrong = named.isEmpty() || named == "UTF-8" || (isWestern && isRatherCyrillic(bytes));
    return isWrong ? QByteArray("windows-1251") : named;
}

SourceEncoding sourceEncoding(const QByteArray &bytes, const QByteArray &declared)
{
    const QByteArray name = guessEncoding(bytes, declared);
    return {name, name != codecName(declared)};
}
