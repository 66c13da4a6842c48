#pragma once

#include "findingrules.h"

/// The cases of \a trait that the scan has counted.
Detection detectTrait(const Evidence &evidence, Trait trait);

/// The same for cases that stop the import.
Detection detectStop(const Evidence &evidence, Trait trait, Stop::Kind kind);

/// A \a fault of the header of a file in \a format.
Detection detectHeader(const Evidence &evidence, Format format, HeaderFault fault);

// The following detect the cases of one rule.

template <Trait trait>
Detection detectTrait(const Evidence &evidence)
{
    return detectTrait(evidence, trait);
}

template <Trait trait, Stop::Kind kind>
Detection detectStop(const Evidence &evidence)
{
    return detectStop(evidence, trait, kind);
}

template <Format format, HeaderFault fault>
Detection detectHeader(const Evidence &evidence)
{
    return detectHeader(evidence, format, fault);
}

Detection detectUnreadable(const Evidence &evidence);
Detection detectMidMissing(const Evidence &evidence);
Detection detectMidNameCase(const Evidence &evidence);
Detection detectMidOutOfStep(const Evidence &evidence);
Detection detectBlankLine(const Evidence &evidence);
Detection detectTruncated(const Evidence &evidence);
Detection detectTooManyCopies(const Evidence &evidence);
Detection detectUnreadEntities(const Evidence &evidence);
Detection detectUnreadTexts(const Evidence &evidence);
Detection detectMifTexts(const Evidence &evidence);
Detection detectBulges(const Evidence &evidence);
Detection detectTransform(const Evidence &evidence);
Detection detectDegrees(const Evidence &evidence);
Detection detectMergedNumbers(const Evidence &evidence);
Detection detectUnnumbered(const Evidence &evidence);
Detection detectNotFinite(const Evidence &evidence);
Detection detectHeights(const Evidence &evidence);
Detection detectEscapedNames(const Evidence &evidence);
Detection detectMisplacedNames(const Evidence &evidence);
Detection detectSharedNames(const Evidence &evidence);

/// Detects nothing: the cases prevent a check.
Detection detectNothing(const Evidence &evidence);
