#pragma once

#include "console.h"

class UnattendedImport;
struct HostOptions;

/// Prints or saves the result of \a import as \a options say, then prints a line with the number of objects, vertices
/// and messages. An output that fails is reported and does not affect the others.
ExitStatus outputImport(const UnattendedImport &import, const HostOptions &options);
