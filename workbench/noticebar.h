#pragma once

#include <QFrame>

class StatusLabel;

/// A line above the picture which says that a file brought nothing, and offers to check or prepare the file.
///
/// It is hidden until showFor().
class NoticeBar : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget *parent = nullptr);

    void showFor(const QString &fileName);

Q_SIGNALS:
    void checkRequested();
    void prepareRequested();

private:
    StatusLabel *m_label;
};
