#include "findingencoding.h"

#include "checkcharset.h"
#include "encodingguess.h"

#include <QTextCodec>

#include <algorithm>

namespace {

/// Drawings of this version or later are in UTF-8, whatever code page they name.
bool isUtf8Drawing(const QString &version)
{
    return version.startsWith(QLatin1String("AC")) && version.mid(2).toInt() >= 1021;
}

/// The encoding that the names are in; a null codec leaves it open.
struct ActualEncoding
{
    const QTextCodec *codec = nullptr;
    bool isByBytes = false; ///< false: there are too few bytes for a guess, and the header decides
};

ActualEncoding actualEncoding(const FileFacts &facts)
{
    constexpr int enough = 60;
    if (facts.namesAreUtf8)
        return {QTextCodec::codecForName("UTF-8"), true};
    QTextCodec *const declared = isUtf8Drawing(facts.drawingVersion) ? nullptr : codecOfCharset(facts.declaredEncoding);
    const auto nonAsciiBytes = std::count_if(facts.nonAsciiNames.begin(), facts.nonAsciiNames.end(),
                                             [](char c) { return static_cast<uchar>(c) >= 0x80; });
    if (nonAsciiBytes < enough && declared == nullptr)
        return {};
    // A conversion guesses the same.
    const QByteArray guess = guessEncoding(facts.nonAsciiNames, declared != nullptr ? declared->name() : QByteArray());
    const QTextCodec *const codec = QTextCodec::codecForName(guess);
    return {codec, nonAsciiBytes >= enough || codec != declared};
}

QString nameOf(const QTextCodec *codec)
{
    return codec != nullptr ? QString::fromLatin1(codec->name()) : QStringLiteral("windows-1251");
}

} // namespace

// If neither bytes nor header name an encoding, any single-byte one may be right, but UTF-8 cannot be.
Detection detectEncoding(const Evidence &evidence)
{
    const FileFacts &facts = evidence.facts;
    const Tally &names = facts.tally(Trait::NonAsciiName);
    const bool readsNames = evidence.options.searchPoints || evidence.options.searchObjects;
    if (names.count == 0 || facts.isUnicode || !readsNames)
        return {};
    const QTextCodec *const chosen = evidence.options.codec();
    const ActualEncoding actual = actualEncoding(facts);
    const bool isChosenUtf8 = chosen->name() == "UTF-8";
    if (actual.codec == chosen || (actual.codec == nullptr && !isChosenUtf8))
        return {};
    const QString declared = facts.declaredEncoding.isEmpty() ? QStringLiteral("не названа") : facts.declaredEncoding;
    const QString byBytes = actual.isByBytes          ? nameOf(actual.codec)
                            : actual.codec != nullptr ? QStringLiteral("похоже, она же (букв мало)")
                                                      : QStringLiteral("не UTF-8, а какая — не определить (мало букв)");
    const QString doubt = actual.codec != nullptr ? QString() : QStringLiteral("; если буквы неверны, другую");
    return {names.count, names.place, {declared, byBytes, nameOf(chosen), nameOf(actual.codec), doubt}};
}
