#pragma once

#include "defpolygontablemodel.h"

#include <QAbstractItemModelTester>
#include <QBrush>
#include <QStringList>

constexpr auto failTest = QAbstractItemModelTester::FailureReportingMode::QtTest;

/// Every role that a view asks for but display, edit and background.
inline QVector<int> otherRoles()
{
    return {Qt::DecorationRole,    Qt::ToolTipRole,    Qt::StatusTipRole,  Qt::WhatsThisRole, Qt::FontRole,
            Qt::TextAlignmentRole, Qt::ForegroundRole, Qt::CheckStateRole, Qt::SizeHintRole,  Qt::UserRole};
}

/// Makes indexes that a model would not give out: those which a view kept too long.
template <class Model>
class OpenModel : public Model
{
public:
    using Model::createIndex;
};

/// Notes what a model tells its views, in order: "about to reset 3 rows", "reset 2 rows" and, for the roles display
/// and edit of a cell in row 1 and column 0, "changed 1,0 to 1,0 roles 0 2".
class ModelLog
{
public:
    explicit ModelLog(const QAbstractItemModel &model)
    {
        const auto note = [this](const QString &text) { m_texts.append(text); };
        const auto noteRows = [note, &model](const QString &text) { note(text.arg(model.rowCount())); };
        QObject::connect(&model, &QAbstractItemModel::modelAboutToBeReset, &m_context,
                         [noteRows] { noteRows(QStringLiteral("about to reset %1 rows")); });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &m_context,
                         [noteRows] { noteRows(QStringLiteral("reset %1 rows")); });
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &m_context,
                         [note](const QModelIndex &from, const QModelIndex &to, const QVector<int> &roles) {
                             note(QStringLiteral("changed %1 to %2 roles %3").arg(cell(from), cell(to), joined(roles)));
                         });
        QObject::connect(&model, &QAbstractItemModel::layoutChanged, &m_context,
                         [note] { note(QStringLiteral("layout")); });
        QObject::connect(&model, &QAbstractItemModel::headerDataChanged, &m_context,
                         [note] { note(QStringLiteral("header")); });
    }
    ModelLog(const ModelLog &) = delete;
    ModelLog &operator=(const ModelLog &) = delete;

    QStringList texts() const { return m_texts; }

private:
    static QString cell(const QModelIndex &index)
    {
        return index.isValid() ? QStringLiteral("%1,%2").arg(index.row()).arg(index.column())
                               : QStringLiteral("nowhere");
    }
    static QString joined(const QVector<int> &numbers)
    {
        QStringList texts;
        for (int number : numbers)
            texts.append(QString::number(number));
        return texts.join(QLatin1Char(' '));
    }

    QStringList m_texts;
    QObject m_context;
};

/// A solid background as "#ffdcdc"; "none" for an invalid value, "other" for whatever else.
inline QString backgroundOf(const QModelIndex &index)
{
    const QVariant value = index.data(Qt::BackgroundRole);
    if (!value.isValid())
        return QStringLiteral("none");
    const auto brush = value.value<QBrush>();
    const bool solid = value.userType() == QMetaType::QBrush && brush.style() == Qt::SolidPattern;
    return solid ? brush.color().name() : QStringLiteral("other");
}

/// The backgrounds of one column from the first row to the last.
inline QStringList backgroundsOf(const QAbstractItemModel &model, int column = 0)
{
    QStringList colours;
    for (int row = 0; row < model.rowCount(); ++row)
        colours.append(backgroundOf(model.index(row, column)));
    return colours;
}

/// An object from "н1 0 0, н2 5 5 | - 9 9": vertices apart by commas, contours by bars, "-" for no designation.
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

/// A cell's text; "invalid" and "null" for values that are.
inline QString textOf(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("invalid");
    return value.isNull() ? QStringLiteral("null") : value.toString();
}

/// The first column as it is shown: designations and, for the separators, "|".
inline QString shownBy(const QAbstractItemModel &model)
{
    QStringList texts;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, 0);
        const bool separator = backgroundOf(index) == QStringLiteral("#f0f0f0");
        texts.append(separator ? QStringLiteral("|") : textOf(index.data()));
    }
    return texts.join(QLatin1Char(' '));
}
