#include "tablerows.h"

#include <QHeaderView>
#include <QTableView>

void setUpRows(QTableView *view)
{
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setTabKeyNavigation(false);
    view->setWordWrap(false);
    view->horizontalHeader()->setHighlightSections(false);
    view->verticalHeader()->hide();
    view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 6);
}
