#pragma once

#include <QFrame>

class QPushButton;
class StatusLabel;

/// A line above the picture about a file that is not imported, with buttons to check or prepare the file.
///
/// It is hidden until a notice is shown.
class NoticeBar : public QFrame
{
    Q_OBJECT

public:
    explicit NoticeBar(QWidget *parent = nullptr);

    /// The import of \a fileName gave no objects.
    void showNoObjects(const QString &fileName);

    /// No operation imports the format of \a fileName, which can only be prepared.
    void showOtherFormat(const QString &fileName);

Q_SIGNALS:
    void checkRequested();
    void prepareRequested();

private:
    StatusLabel *m_label;
    QPushButton *m_checkButton;
};
