#include "noticebar.h"

#include "statuslabel.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

NoticeBar::NoticeBar(QWidget *parent)
    : QFrame(parent),
      m_label(new StatusLabel(this)),
      m_checkButton(new QPushButton(QStringLiteral("Проверить"), this))
{
    setObjectName(QStringLiteral("noticeBar"));
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setAutoFillBackground(true);
    m_label->setObjectName(QStringLiteral("noticeLabel"));
    m_label->setForegroundRole(QPalette::ToolTipText);
    m_label->setMinimumWidth(24 * fontMetrics().averageCharWidth()); // else wide docks leave no room for it
    m_checkButton->setObjectName(QStringLiteral("noticeCheckButton"));
    m_checkButton->setToolTip(QStringLiteral("Показать, что в файле и почему оно не импортируется"));
    connect(m_checkButton, &QPushButton::clicked, this, &NoticeBar::checkRequested);
    auto *const prepare = new QPushButton(QStringLiteral("Подготовить…"), this);
    prepare->setObjectName(QStringLiteral("noticePrepareButton"));
    prepare->setToolTip(QStringLiteral("Записать рядом файл MIF, который импортируется полностью"));
    connect(prepare, &QPushButton::clicked, this, &NoticeBar::prepareRequested);
    auto *const close = new QToolButton(this);
    close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    close->setAutoRaise(true);
    close->setToolTip(QStringLiteral("Скрыть"));
    close->setAccessibleName(close->toolTip());
    connect(close, &QToolButton::clicked, this, &QWidget::hide);

    auto *const layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 4, 4);
    layout->addWidget(m_label, 1);
    layout->addWidget(m_checkButton);
    layout->addWidget(prepare);
    layout->addWidget(close);
    hide();
}

void NoticeBar::showNoObjects(const QString &fileName)
{
    m_checkButton->show();
    m_label->setStatus(
        QStringLiteral("Из файла %1 не пришло ни одного объекта. Проверьте, что в нём, или подготовьте его к импорту.")
            .arg(QFileInfo(fileName).fileName()));
    show();
}

void NoticeBar::showOtherFormat(const QString &fileName)
{
    m_checkButton->hide();
    m_label->setStatus(
        QStringLiteral("Файл %1 — не MIF и не DXF. Сначала подготовьте его.").arg(QFileInfo(fileName).fileName()));
    show();
}
