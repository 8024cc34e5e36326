#include "tests/unit/nettoolsuser.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSpinBox>
#include <QStackedLayout>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>

#include <csignal>
#include <unistd.h>

namespace {

/// The layout among the given one and its parts that holds the widget itself.
QLayout *layoutOf(QLayout *layout, QWidget *widget)
{
    if (!layout || layout->indexOf(widget) >= 0)
        return layout;
    for (int i = 0; i < layout->count(); ++i) {
        QLayout *part = layout->itemAt(i)->layout();
        QLayout *found = part ? layoutOf(part, widget) : nullptr;
        if (found)
            return found;
    }
    return nullptr;
}

} // namespace

NetToolsUser::NetToolsUser(QWidget &page)
    : m_page(page)
{
}

QAbstractButton *NetToolsUser::button(const char *buttonText) const
{
    const QList<QAbstractButton *> buttons = m_page.findChildren<QAbstractButton *>();
    for (QAbstractButton *candidate : buttons) {
        if (candidate->text() == text(buttonText))
            return candidate;
    }
    qFatal("There is no button '%s'", buttonText);
}

QAbstractButton *NetToolsUser::processButton() const
{
    const QList<QPushButton *> buttons = m_page.findChildren<QPushButton *>();
    for (QPushButton *candidate : buttons) {
        if (candidate->text().endsWith(QLatin1String(" Process")))
            return candidate;
    }
    qFatal("There is no button to start or stop with");
}

QTextEdit *NetToolsUser::log() const
{
    return m_page.findChild<QTextEdit *>();
}

void NetToolsUser::click(const char *buttonText) const
{
    QAbstractButton *target = button(buttonText);
    // Of a radio button or a check box only the indicator and the text can be clicked, not the rest.
    QTest::mouseClick(target, Qt::LeftButton, Qt::NoModifier, QPoint(8, target->height() / 2));
}

void NetToolsUser::pressProcessButton() const
{
    QTest::mouseClick(processButton(), Qt::LeftButton);
}

void NetToolsUser::clickIntoLog(int position) const
{
    QTextCursor cursor(log()->document());
    cursor.setPosition(position);
    const QPoint corner = log()->cursorRect(cursor).topLeft();
    for (QScrollBar *bar : {log()->verticalScrollBar(), log()->horizontalScrollBar()})
        bar->setValue(bar->value() + (bar->orientation() == Qt::Vertical ? corner.y() : corner.x() - 5));
    const QPoint place = log()->cursorRect(cursor).center();
    QVERIFY2(log()->viewport()->rect().contains(place), "the place in the log cannot be seen");
    QTest::mouseClick(log()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QCOMPARE(log()->textCursor().position(), position);
}

QWidget *NetToolsUser::panel() const
{
    return m_page.findChild<QStackedLayout *>()->currentWidget();
}

QCheckBox *NetToolsUser::checkBox(const char *boxText) const
{
    const QList<QCheckBox *> boxes = panel()->findChildren<QCheckBox *>();
    for (QCheckBox *candidate : boxes) {
        if (candidate->text() == text(boxText))
            return candidate;
    }
    qFatal("There is no check box '%s'", boxText);
}

QWidget *NetToolsUser::valueOf(const char *caption) const
{
    QWidget *left = nullptr;
    const QList<QLabel *> labels = panel()->findChildren<QLabel *>();
    for (QLabel *label : labels) {
        if (!label->isHidden() && label->text() == text(caption))
            left = label;
    }
    if (!left)
        left = checkBox(caption);
    QLayout *row = layoutOf(panel()->layout(), left);
    return row->itemAt(row->indexOf(left) + 1)->widget();
}

QSpinBox *NetToolsUser::number(const char *caption) const
{
    return qobject_cast<QSpinBox *>(valueOf(caption));
}

QLineEdit *NetToolsUser::lineEdit(const char *caption) const
{
    return qobject_cast<QLineEdit *>(valueOf(caption));
}

QComboBox *NetToolsUser::comboBox(const char *caption) const
{
    return qobject_cast<QComboBox *>(valueOf(caption));
}

void NetToolsUser::type(const char *caption, const QString &typed) const
{
    QWidget *value = valueOf(caption);
    QTest::keySequence(value, QKeySequence::SelectAll);
    QTest::keyClick(value, Qt::Key_Delete);
    // What no key of an American keyboard types comes from an input method.
    for (const QChar character : typed) {
        QInputMethodEvent event;
        event.setCommitString(character);
        if (character.unicode() < 0x80)
            QTest::keyClick(value, character.toLatin1());
        else
            QCoreApplication::sendEvent(value, &event);
    }
}

QString NetToolsUser::logText() const
{
    const QTextDocument *document = log()->document();
    QString result;
    // toPlainText() would turn no-break spaces into blanks.
    for (int i = 0; i < document->characterCount() - 1; ++i) {
        const QChar character = document->characterAt(i);
        result += character == QChar::ParagraphSeparator ? QLatin1Char('\n') : character;
    }
    return result;
}

QString NetToolsUser::logWithNotices() const
{
    const QString all = logText();
    QTextCursor cursor(log()->document());
    QString result;
    int weightBefore = QFont::Light;
    const auto change = [&](int weight) {
        if (weight == weightBefore)
            return;
        if (weightBefore != QFont::Light)
            result += QChar(0xBB);
        if (weight == QFont::DemiBold)
            result += QChar(0xAB);
        else if (weight != QFont::Light)
            result += QStringLiteral("(weight %1)").arg(weight) + QChar(0xAB);
        weightBefore = weight;
    };
    for (int i = 0; i < all.size(); ++i) {
        cursor.setPosition(i + 1);
        // The format at a position is that of the character before it, except at the start of a line.
        if (all.at(i) != QLatin1Char('\n'))
            change(cursor.charFormat().fontWeight());
        else
            change(cursor.blockCharFormat().fontWeight());
        result += all.at(i);
    }
    change(QFont::Light);
    return result;
}

bool NetToolsUser::waitForLog(const QString &ending, int milliseconds) const
{
    return QTest::qWaitFor([&] { return logText().endsWith(ending); }, milliseconds);
}

bool NetToolsUser::waitUntilFinished(int milliseconds) const
{
    return QTest::qWaitFor([&] { return processButton()->text() == QLatin1String("Start Process"); },
                           milliseconds);
}

SearchPath::SearchPath()
    : m_before(qgetenv("PATH"))
{
    qputenv("PATH", QFile::encodeName(m_folder.path()));
}

SearchPath::~SearchPath()
{
    qputenv("PATH", m_before);
}

void SearchPath::install(const char *name, const QByteArray &shellScript)
{
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\n" + shellScript);
    file.close();
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void SearchPath::link(const char *name, const QString &target)
{
    QFile::remove(path(name));
    QVERIFY(QFile::link(target, path(name)));
}

QString SearchPath::path(const char *name) const
{
    return m_folder.filePath(text(name));
}

QList<qint64> childProcesses()
{
    QList<qint64> children;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &entry : entries) {
        QFile stat(QStringLiteral("/proc/%1/stat").arg(entry));
        if (!stat.open(QIODevice::ReadOnly))
            continue;
        const QByteArray line = stat.readAll();
        // Behind the program's name, in brackets: state, then the parent.
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        if (fields.value(1).toLongLong() == getpid())
            children << entry.toLongLong();
    }
    return children;
}

bool isAlive(qint64 processId)
{
    return kill(static_cast<pid_t>(processId), 0) == 0;
}

int openDescriptors()
{
    return QDir(QStringLiteral("/proc/self/fd"))
        .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
        .size();
}
