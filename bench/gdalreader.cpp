#include "gdalreader.h"

#ifdef WITH_GDAL

#include "machine.h"

#include <QFile>

#include <ogrsf_frmts.h>

#include <vector>

namespace {

std::vector<OGRFeatureUniquePtr> featuresOf(GDALDataset &dataset)
{
    std::vector<OGRFeatureUniquePtr> features;
    for (OGRLayer *const layer : dataset.GetLayers()) {
        layer->ResetReading();
        while (OGRFeature *const feature = layer->GetNextFeature())
            features.emplace_back(feature);
    }
    return features;
}

} // namespace

bool hasGdal()
{
    return true;
}

double secondsOfGdal(const QString &path)
{
    GDALAllRegister();
    CPLSetErrorHandler(CPLQuietErrorHandler);
    const double begin = processorSeconds();
    const GDALDatasetUniquePtr dataset(
        GDALDataset::Open(QFile::encodeName(path).constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
    if (!dataset)
        qFatal("GDAL cannot read %s", qPrintable(path));
    const std::vector<OGRFeatureUniquePtr> features = featuresOf(*dataset);
    const double seconds = processorSeconds() - begin;
    if (features.empty())
        qFatal("GDAL finds nothing in %s", qPrintable(path));
    return seconds;
}

#else

bool hasGdal()
{
    return false;
}

double secondsOfGdal(const QString & /*path*/)
{
    return 0;
}

#endif
