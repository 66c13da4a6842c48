#pragma once

#include <QString>

/// The processor, Qt, the compiler and the kind of build, in a line.
QString machineLine();

/// The processor time that the program has used, in seconds. Unlike the time on the wall it does not count what other
/// programs do meanwhile.
double processorSeconds();

/// The most memory that the program has held so far, in bytes; 0 where the system does not say.
double peakMemory();

/// How much memory this process has now, in bytes; 0 where the system does not tell.
double presentMemory();
