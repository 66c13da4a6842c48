#include "pictureexport.h"

#include "pictureview.h"

#include <QSaveFile>

bool savePicture(const ImportResult &result, bool hasSurveyAxes, const QString &fileName, QString &error)
{
    PictureView view;
    view.resize(2000, 1400);
    view.setHasSurveyAxes(hasSurveyAxes);
    view.setResult(result);
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && view.grab().save(&file, "PNG") && file.commit())
        return true;
    error = QStringLiteral("Файл %1 не записан: %2").arg(fileName, file.errorString());
    return false;
}
