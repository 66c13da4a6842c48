#pragma once

#include "objectsmodel.h"

#include <QWidget>

class QLineEdit;
class QTableView;

/// The list of objects with its search field.
class ObjectsPane : public QWidget
{
    Q_OBJECT

public:
    explicit ObjectsPane(QWidget *parent = nullptr);

    /// Removes the filter and makes the first row current.
    void setResult(const ImportResult &result);

    /// Makes \a object, or none with -1, current and scrolls to it. A filter that hides it is removed.
    void setCurrentObject(int object);
    int currentObject() const { return m_currentObject; }

    /// The width of all columns.
    int fullWidth() const;

    int duplicateCount() const { return m_model->duplicateCount(); }
    QLineEdit *searchEdit() const { return m_searchEdit; }

    /// Restores the order of the result.
    void removeSorting();

    QByteArray saveState() const;
    void restoreState(const QByteArray &state);

Q_SIGNALS:
    /// The user, or setCurrentObject(), chose \a object; -1: none.
    void currentObjectChanged(int object);

protected:
    void changeEvent(QEvent *event) override;

private:
    void setUpView();
    void setUpColumns();
    void applyFilter(const QString &text);
    void selectCurrentRow();
    void changeCurrent(int object);

    ObjectsModel *m_model;
    QLineEdit *m_searchEdit;
    QTableView *m_view;
    int m_currentObject = -1;
};
