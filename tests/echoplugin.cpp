// An import plug-in whose result is the name of the operation and whose message is the name of the form. The operation
// "dialog" opens a dialog without any of the expected widgets.

#include "importgeometryinterface.h"

#include <QDialog>

class EchoPlugin : public QObject, public ImportGeometryInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "zelmarq.Orvindal.ImportGeometryInterface")
    Q_INTERFACES(ImportGeometryInterface)

public:
    QList<QString> operations() const override { return {}; }

    QString operation(const QString &op, const QString &formName, const QString & /*objectTableName*/,
                      const QString & /*pointTableName*/, const GeometryInfo & /*info*/,
                      void (*statusFunc)(const QString &)) override
    {
        if (!formName.isEmpty())
            statusFunc(formName);
        if (op == QLatin1String("dialog"))
            QDialog().exec();
        return op;
    }
};

#include "echoplugin.moc"
