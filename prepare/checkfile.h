#pragma once

#include "checkimport.h"
#include "report.h"

/// Checks \a fileName, whose suffix must be .mif or .dxf. With \a withPicture the report has a picture.
FileReport checkFile(const QString &fileName, const CheckOptions &options, bool withPicture);

/// A report with the finding \a id alone, for a file whose check did not end.
FileReport reportWithFinding(const QString &fileName, const CheckOptions &options, const QString &id);
