#pragma once

#include <QByteArray>
#include <QRandomGenerator>

/// Returns \a bytes with one to four kinds of damage, some of it by pieces of \a other.
QByteArray damaged(QByteArray bytes, const QByteArray &other, QRandomGenerator &random);
