#pragma once

#include "importgeometryinterface.h"

#include <QObject>

/// The plug-in object that the host loads; offers the imports from MIF and DXF.
class ImportPlugin : public QObject, public ImportGeometryInterface
{
    Q_OBJECT
    // Unlike the interface identifier, the IID has no version suffix. Hosts compare both literally.
    Q_PLUGIN_METADATA(IID "zelmarq.Orvindal.ImportGeometryInterface")
    Q_INTERFACES(ImportGeometryInterface)

public:
    QList<QString> operations() const override;
    QString operation(const QString &op, const QString &formName, const QString &objectTableName,
                      const QString &pointTableName, const GeometryInfo &info,
                      void (*statusFunc)(const QString &)) override;
};
