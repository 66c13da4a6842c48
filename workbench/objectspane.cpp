#include "objectspane.h"

#include "colors.h"
#include "shorttext.h"
#include "tablerows.h"

#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

ObjectsPane::ObjectsPane(QWidget *parent)
    : QWidget(parent),
      m_model(new ObjectsModel(this)),
      m_searchEdit(new QLineEdit(this)),
      m_view(new QTableView(this))
{
    m_searchEdit->setObjectName(QStringLiteral("searchEdit"));
    m_searchEdit->setAccessibleName(QStringLiteral("Поиск по обозначению"));
    m_searchEdit->setPlaceholderText(QStringLiteral("Поиск по обозначению"));
    m_searchEdit->setClearButtonEnabled(true);
    m_searchEdit->setAcceptDrops(false);
    connect(m_searchEdit, &QLineEdit::textChanged, this, &ObjectsPane::applyFilter);
    m_model->setDuplicateBrush(duplicateColor(palette()));
    setUpView();

    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_searchEdit);
    layout->addWidget(m_view);
}

void ObjectsPane::setUpView()
{
    m_view->setObjectName(QStringLiteral("objectsView"));
    m_view->setAccessibleName(QStringLiteral("Объекты"));
    m_view->setModel(m_model);
    m_view->setItemDelegate(new ShortTextDelegate(m_view));
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setShowGrid(false);
    m_view->setAlternatingRowColors(true);
    setUpRows(m_view);
    setUpColumns();
    connect(m_view->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) { changeCurrent(m_model->objectAt(current.row())); });
}

// Columns fit their headings and a sample: measuring the cells would take seconds for 100,000 objects.
void ObjectsPane::setUpColumns()
{
    QHeaderView *const columns = m_view->horizontalHeader();
    columns->setSortIndicator(-1, Qt::AscendingOrder);
    m_view->setSortingEnabled(true);
    columns->setStretchLastSection(true);
    for (int column = 0; column < ObjectsModel::ColumnCount; ++column)
        m_view->setColumnWidth(column, columns->sectionSizeHint(column));
    m_view->setColumnWidth(ObjectsModel::Def, fontMetrics().horizontalAdvance(QStringLiteral("50:27:0020806:1234")));
}

void ObjectsPane::setResult(const ImportResult &result)
{
    changeCurrent(-1);
    m_searchEdit->clear();
    m_model->setResult(result);
    m_view->scrollToTop();
    setCurrentObject(m_model->objectAt(0));
}

void ObjectsPane::setCurrentObject(int object)
{
    changeCurrent(object);
    if (object >= 0 && m_model->rowOf(object) < 0)
        m_searchEdit->clear();
    selectCurrentRow();
}

int ObjectsPane::fullWidth() const
{
    return m_view->horizontalHeader()->length() + m_view->verticalScrollBar()->sizeHint().width() +
           2 * m_view->frameWidth();
}

void ObjectsPane::removeSorting()
{
    m_view->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
}

QByteArray ObjectsPane::saveState() const
{
    return m_view->horizontalHeader()->saveState();
}

void ObjectsPane::restoreState(const QByteArray &state)
{
    QHeaderView *const header = m_view->horizontalHeader();
    if (header->restoreState(state))
        m_model->sort(header->sortIndicatorSection(), header->sortIndicatorOrder());
}

void ObjectsPane::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::PaletteChange)
        m_model->setDuplicateBrush(duplicateColor(palette()));
    QWidget::changeEvent(event);
}

// The object stays current while the filter hides it: a model's reset clears the selection without a signal.
void ObjectsPane::applyFilter(const QString &text)
{
    m_model->setFilter(text);
    selectCurrentRow();
}

void ObjectsPane::selectCurrentRow()
{
    const QModelIndex cell = m_model->index(m_model->rowOf(m_currentObject), 0);
    m_view->selectionModel()->setCurrentIndex(cell, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (cell.isValid())
        m_view->scrollTo(cell);
}

void ObjectsPane::changeCurrent(int object)
{
    if (object == m_currentObject)
        return;
    m_currentObject = object;
    Q_EMIT currentObjectChanged(object);
}
