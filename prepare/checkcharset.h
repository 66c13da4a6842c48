#pragma once

#include <QByteArray>
#include <QString>

class QTextCodec;

/// The codec of a CHARSET line or of $DWGCODEPAGE; null if \a charset says nothing.
QTextCodec *codecOfCharset(const QString &charset);

/// The codec with which a person can read \a bytes, so that a place in the file is found: UTF-8 if they are that,
/// otherwise \a declared, unless null, or \a chosen, if it takes all bytes.
QTextCodec *readableCodec(const QByteArray &bytes, QTextCodec *chosen, QTextCodec *declared);
