#pragma once

#include "findingrules.h"

/// Detects names that the chosen encoding misreads. The details are the encoding in the header, that of the bytes
/// and the chosen one.
Detection detectEncoding(const Evidence &evidence);
