#include "statuslabel.h"

#include "colors.h"

#include <QResizeEvent>
#include <QTextDocument>

StatusLabel::StatusLabel(QWidget *parent) : QLabel(parent)
{
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    setTextFormat(Qt::PlainText); // a message may contain markup
    setTextInteractionFlags(Qt::TextSelectableByMouse);
}

void StatusLabel::setStatus(const QString &status, bool isError)
{
    m_status = status;
    m_isError = isError;
    QPalette colors;
    if (isError)
        colors.setColor(QPalette::WindowText, errorColor(colors));
    setPalette(colors);
    setAccessibleName(status);
    setToolTip(Qt::convertFromPlainText(status, Qt::WhiteSpaceNormal));
    elide();
}

void StatusLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    elide();
}

void StatusLabel::elide()
{
    setText(fontMetrics().elidedText(m_status, Qt::ElideRight, width() - 2 * margin()));
}
