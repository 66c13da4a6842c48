#pragma once

#include "convertmif.h"

/// A MIF file as GDAL is to read it: a corrected copy in memory, for as long as the view exists.
class MifView
{
public:
    MifView() = default;
    ~MifView();
    MifView(const MifView &) = delete;
    MifView &operator=(const MifView &) = delete;

    /// Makes \a copy, which must outlive the view, the file that GDAL opens.
    void show(const MifCopy &copy);

    /// The path of GDAL to open.
    const char *fileName() const;
};
