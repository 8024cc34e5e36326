#pragma once

#include "pages/nettools/pagenettools.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QTemporaryDir>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QRadioButton;
class QSpinBox;
class QTextEdit;

inline QString text(const char *latin1)
{
    return QString::fromLatin1(latin1);
}

/// A person at the "Net Tools" tab: finds everything by what is written on it.
class NetToolsUser {
public:
    explicit NetToolsUser(QWidget &page);

    QAbstractButton *button(const char *text) const;
    /// The button that starts and stops, whatever it says at the moment.
    QAbstractButton *processButton() const;
    QTextEdit *log() const;

    void click(const char *buttonText) const;
    void pressProcessButton() const;
    void clickIntoLog(int position) const;

    /// The option panel that can be seen.
    QWidget *panel() const;
    QCheckBox *checkBox(const char *text) const;
    /// The value widgets, which stand to the right of the check box or label with the text.
    QWidget *valueOf(const char *text) const;
    QSpinBox *number(const char *text) const;
    QLineEdit *lineEdit(const char *text) const;
    QComboBox *comboBox(const char *text) const;
    void type(const char *text, const QString &typed) const;

    /// The log without regard to its looks.
    QString logText() const;
    /// The log with demi-bold text in angle quotes; text that is neither demi-bold nor light is marked.
    QString logWithNotices() const;

    bool waitForLog(const QString &ending, int milliseconds = 10000) const;
    /// Waits until the button says "Start Process".
    bool waitUntilFinished(int milliseconds = 10000) const;

private:
    QWidget &m_page;
};

/// A folder of programs that is the whole search path while it lives.
class SearchPath {
public:
    SearchPath();
    ~SearchPath();

    void install(const char *name, const QByteArray &shellScript);
    void link(const char *name, const QString &target);
    QString path(const char *name) const;

private:
    QTemporaryDir m_folder;
    QByteArray m_before;
};

/// The process ids of the children of this program, dead ones that were not waited for included.
QList<qint64> childProcesses();

/// Whether the process exists.
bool isAlive(qint64 processId);

/// The number of open file descriptors of this program.
int openDescriptors();
