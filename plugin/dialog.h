#pragma once

#include "defpolygon.h"
#include "defpolygontablemodel.h"
#include "dialog_elidingdelegate.h"

#include <QDialog>
#include <QMap>
#include <QString>
#include <QVector>

#include <memory>

class MapImport;
class QLineEdit;
class QSettings;

namespace Ui {
class Dialog;
}

/// The import dialog: the user chooses files and options, processes them and checks the objects.
///
/// The choices are read from the settings by the constructor and saved by the destructor.
class Dialog : public QDialog
{
    Q_OBJECT

public:
    explicit Dialog(QWidget *parent = nullptr);
    ~Dialog() override;

    /// Sets the zero-based columns of the host's tables, here and in polygonModel.
    void setColumns(int n, int x, int y, int def);

    /// Returns the objects as the XML text for the host, with the extra fields of the last processing run.
    ///
    /// Throws std::bad_alloc if the text exceeds memory or the size limit of QString.
    QString stringResult();

    /// Loads the window layout, options and extra fields from the settings and shows them.
    void readSettings();
    /// Reads the extra fields from the form, then saves everything that readSettings() loads.
    void writeSettings();
    /// Rebuilds fieldNumValueMap from the rows of extra fields on the form; rows without a text are skipped.
    void readFields();
    /// Shows the first five entries of fieldNumValueMap on the form, adding rows as needed.
    void writeFields();

    bool isDxf = false; ///< imports DXF drawings instead of MIF files

    // Published defaults: X comes after Y here and before it in polygonModel. They have no effect, because setColumns()
    // replaces both before the dialog opens.
    int nColNum = 0;
    int xColNum = 2;
    int yColNum = 1;
    int defColNum = 0;

    QString formName; ///< published but unused here
    QString objectTableName;
    QString pointTableName;

    QVector<DefPolygon> objects;
    DefPolygonTableModel polygonModel; ///< vertices of the current object
    DefMapTableModel mapModel;         ///< list of objects

    QMap<int, QString> fieldNumValueMap; ///< texts of the extra columns by zero-based column
    int fieldCount = 1;                  ///< number of rows of extra fields on the form

private Q_SLOTS:
    void on_objectFileButton_clicked();
    void on_pointFileButton_clicked();
    void on_startButton_clicked();
    void on_usePointFileCheck_toggled(bool checked);
    void on_plusToolButton_clicked();
    void on_minusToolButton_clicked();
    void procCurrentChanged(const QModelIndex &current, const QModelIndex &previous);
    void on_sortButton_clicked();
    void on_objectFileNameEdit_textChanged(const QString &text);

private:
    void chooseFile(QLineEdit *edit);
    void applyOptions(MapImport &importer);
    void clearObjects();
    void runImport();
    void showObjects();

    std::unique_ptr<Ui::Dialog> ui;
    QString lastPath;             ///< the last file chosen; where the next file dialog opens
    ElidingDelegate listDelegate; // a delegate must not be shared between views
    ElidingDelegate tableDelegate;
    std::unique_ptr<MapImport> importer; ///< kept after a run without objects, until the next run
    bool isProcessing = false;           ///< a run is active; the host's callback may run an event loop during it
};

/// Reads the extra fields from the subgroup "FieldNumValueMap" of the open group of \a settings into \a map.
void loadFieldMap(QSettings &settings, QMap<int, QString> &map);

/// Replaces the extra fields in the settings by \a map; entries with an empty text are not stored.
void saveFieldMap(QSettings &settings, const QMap<int, QString> &map);
