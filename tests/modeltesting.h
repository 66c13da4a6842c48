#pragma once

#include "defpolygontablemodel.h"

#include <QAbstractItemModelTester>
#include <QBrush>
#include <QStringList>

#include <algorithm>

constexpr auto failTest = QAbstractItemModelTester::FailureReportingMode::QtTest;

/// All roles up to Qt::UserRole except \a excluded.
inline QVector<int> rolesExcept(const QVector<int> &excluded)
{
    QVector<int> roles;
    for (int role = 0; role <= Qt::UserRole; ++role) {
        if (!excluded.contains(role))
            roles.append(role);
    }
    return roles;
}

/// True if a cell has no value for any of \a roles and cannot be edited.
inline bool isEmptyCell(QAbstractItemModel &model, const QModelIndex &index,
                        const QVector<int> &roles = rolesExcept({}))
{
    const auto hasValue = [&](int role) { return model.data(index, role).isValid(); };
    return std::none_of(roles.begin(), roles.end(), hasValue) && !model.setData(index, QStringLiteral("new"));
}

/// True if the headers of the first row and column have no value except for display.
inline bool headersAreTextOnly(const QAbstractItemModel &model)
{
    const auto hasValue = [&](int role) {
        return model.headerData(0, Qt::Horizontal, role).isValid() || model.headerData(0, Qt::Vertical, role).isValid();
    };
    const QVector<int> roles = rolesExcept({Qt::DisplayRole});
    return std::none_of(roles.begin(), roles.end(), hasValue);
}

/// Makes createIndex() public, for indexes that the model itself does not return, such as stale ones.
template <class Model>
class OpenModel : public Model
{
public:
    using Model::createIndex;
};

/// The text of a cell; "invalid" for an invalid value and "null" for a null string.
inline QString textOf(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("invalid");
    return value.isNull() ? QStringLiteral("null") : value.toString();
}

/// The backgrounds of one column: the colour of a solid brush ("#ffdcdc"), "none" for an invalid value, "other" for
/// anything else.
inline QStringList backgroundsOf(const QAbstractItemModel &model, int column = 0)
{
    QStringList colours;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QVariant value = model.index(row, column).data(Qt::BackgroundRole);
        const auto brush = value.value<QBrush>();
        if (value.userType() == QMetaType::QBrush && brush.style() == Qt::SolidPattern)
            colours.append(brush.color().name());
        else
            colours.append(value.isValid() ? QStringLiteral("other") : QStringLiteral("none"));
    }
    return colours;
}

/// The backgrounds of one column, a character per row: "x" for light red, "|" for grey, "." for none and
/// "?" for any other.
inline QString rowMarks(const QAbstractItemModel &model, int column = 0)
{
    QString marks;
    for (const QString &colour : backgroundsOf(model, column)) {
        const int mark =
            QStringList{QStringLiteral("none"), QStringLiteral("#ffdcdc"), QStringLiteral("#f0f0f0")}.indexOf(colour);
        marks += QStringLiteral("?.x|").at(mark + 1);
    }
    return marks;
}

/// The texts of the first column, with "|" for grey rows.
inline QString shownBy(const QAbstractItemModel &model)
{
    QStringList texts;
    const QString marks = rowMarks(model);
    for (int row = 0; row < model.rowCount(); ++row)
        texts.append(marks.at(row) == QLatin1Char('|') ? QStringLiteral("|") : textOf(model.index(row, 0).data()));
    return texts.join(QLatin1Char(' '));
}

/// Logs the signals of a model and the texts that it shows at each of them. A reset is logged as
/// "reset [н1] to [н5 | н6]", a new display and edit text of one cell as "changed 1,0 to 1,0 roles 0 2 [н5 | н6]".
class ModelLog
{
public:
    explicit ModelLog(const QAbstractItemModel &model)
    {
        using Model = QAbstractItemModel;
        const auto note = [this, &model](const QString &text) {
            m_texts.append(text + QStringLiteral(" [%1]").arg(shownBy(model)));
        };
        QObject::connect(&model, &Model::modelAboutToBeReset, &m_context, [note] { note(QStringLiteral("reset")); });
        QObject::connect(&model, &Model::modelReset, &m_context, [note] { note(QStringLiteral("to")); });
        QObject::connect(&model, &Model::dataChanged, &m_context,
                         [note](const QModelIndex &from, const QModelIndex &to, const QVector<int> &roles) {
                             QString text = QStringLiteral("changed %1 to %2 roles").arg(cell(from), cell(to));
                             for (int role : roles)
                                 text += QStringLiteral(" %1").arg(role);
                             note(text);
                         });
    }
    ModelLog(const ModelLog &) = delete;
    ModelLog &operator=(const ModelLog &) = delete;

    QString text() const { return m_texts.join(QLatin1Char(' ')); }

private:
    static QString cell(const QModelIndex &index)
    {
        return QStringLiteral("%1,%2").arg(index.row()).arg(index.column());
    }

    QStringList m_texts;
    QObject m_context;
};

/// An object from "н1 0 0, н2 5 5 | - 9 9": commas separate vertices, bars contours; "-" is a null designation.
inline DefPolygon objectOf(const QString &text)
{
    DefPolygon object;
    const QStringList contours = text.isEmpty() ? QStringList() : text.split(QLatin1Char('|'));
    for (const QString &contour : contours) {
        object.contours.append(QVector<DefPoint>());
        for (const QString &vertex : contour.split(QLatin1Char(','))) {
            const QStringList words = vertex.simplified().split(QLatin1Char(' '));
            const QString def = words.first() == QStringLiteral("-") ? QString() : words.first();
            if (words.size() == 3)
                object.contours.last().append(DefPoint{def, words.at(1).toDouble(), words.at(2).toDouble()});
        }
    }
    return object;
}

/// A vertex table that shows the object of objectOf().
struct Table
{
    explicit Table(const QString &text) : object(objectOf(text)) { model.setPolygon(&object); }

    QModelIndex cell(int row, int column = 0) const { return model.index(row, column); }

    DefPolygon object;
    OpenModel<DefPolygonTableModel> model;
};

/// Objects with the given designations, separated by spaces; "-" is a null designation.
inline QVector<DefPolygon> objectsOf(const QString &defs)
{
    QVector<DefPolygon> objects;
    for (const QString &def : defs.split(QLatin1Char(' ')))
        objects.append(DefPolygon{def == QStringLiteral("-") ? QString() : def, {}});
    return objects;
}

/// A list that shows the objects of objectsOf().
struct List
{
    explicit List(const QString &defs) : objects(objectsOf(defs)) { model.setMap(&objects); }

    QModelIndex row(int row) const { return model.index(row, 0); }

    QVector<DefPolygon> objects;
    OpenModel<DefMapTableModel> model;
};
