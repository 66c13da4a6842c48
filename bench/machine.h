#pragma once

#include <QString>

/// Processor, operating system, Qt, compiler and build type in one line.
QString machineLine();

/// Seconds of processor time used so far. Unlike wall-clock time it does not depend on other processes.
double processorSeconds();

/// Peak memory of this process in bytes; 0 where the system does not report it.
double peakMemory();

/// Resident memory of this process in bytes; 0 where the system does not report it.
double residentMemory();
