#include "tests/markingtranslator.h"
#include "tests/unit/nettoolsuser.h"

#include <QAbstractItemView>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFontInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QScrollBar>
#include <QSpinBox>
#include <QStackedLayout>
#include <QTest>
#include <QTextDocument>
#include <QTextEdit>

#include <memory>
#include <utility>

Q_DECLARE_METATYPE(QValidator::State)

namespace {

/// What stands in a layout, widgets by what is written on them; rows in brackets.
QString content(const QLayout *layout)
{
    QStringList parts;
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem *item = layout->itemAt(i);
        if (item->layout())
            parts << QLatin1Char('[') + content(item->layout()) + QLatin1Char(']');
        else if (auto *label = qobject_cast<QLabel *>(item->widget()))
            parts << label->text();
        else if (auto *button = qobject_cast<QAbstractButton *>(item->widget()))
            parts << button->text();
        else
            parts << (item->widget()->layout() ? text("panel")
                                               : text(item->widget()->metaObject()->className()));
    }
    return parts.join(QLatin1String(", "));
}

QString cell(const QGridLayout *grid, int row, int column)
{
    QLayoutItem *item = grid->itemAtPosition(row, column);
    if (!item)
        return QStringLiteral("(empty)");
    if (item->layout())
        return content(item->layout());
    return qobject_cast<QCheckBox *>(item->widget())->text();
}

QList<int> stretches(const QLayout *layout)
{
    const auto *box = qobject_cast<const QBoxLayout *>(layout);
    QList<int> result;
    for (int i = 0; i < box->count(); ++i)
        result << box->stretch(i);
    return result;
}

/// Without those that are there for screen readers only.
QList<QLabel *> shownLabels(const QWidget &widget)
{
    QList<QLabel *> labels;
    const QList<QLabel *> all = widget.findChildren<QLabel *>();
    for (QLabel *label : all) {
        if (!label->isHidden())
            labels << label;
    }
    return labels;
}

/// A tool that prints its name and its arguments, each in brackets.
const QByteArray printingItsArguments = "printf '[%s]' \"${0##*/}\" \"$@\"\n";

} // namespace

class tst_PageNetTools : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void opensWithPing();
    void hasItsSlotsInOrder();
    void isLaidOut();
    void stretchesTheLogAndThePanel();
    void showsALogOfPlainUnwrappedText();
    void laysTheLogOutWhenItIsShown();
    void choosesTheTool_data();
    void choosesTheTool();
    void growsInTheLogAndThePanel();
    void namesTheFieldsOfEachPanel();
    void translatesEveryText();

    void panelIsLaidOut_data();
    void panelIsLaidOut();
    void noBoxIsCheckedAndEveryFieldCanBeEdited_data();
    void noBoxIsCheckedAndEveryFieldCanBeEdited();
    void numbers_data();
    void numbers();
    void numbersClampToTheirRange();
    void packetDataSizeStepsByTen();
    void textsAtFirst();
    void judgesAddressesByThePattern_data();
    void judgesAddressesByThePattern();
    void addressesAreDigitsAndDots_data();
    void addressesAreDigitsAndDots();
    void ports_data();
    void ports();
    void portsAreTheSameInEveryLanguage();
    void targetsAreNotRestricted();
    void nameServerThatWasTypedIsNotListed();
    void nameServerIsChosenFromTheList();

    void checkBoxAloneDecides_data();
    void checkBoxAloneDecides();
    void passesSeveralSettingsInTheToolsOrder_data();
    void passesSeveralSettingsInTheToolsOrder();
    void keepsWhatWasSetBetweenRuns();

private:
    QString printedByTheTool();

    std::unique_ptr<QWidget> m_page;
    std::unique_ptr<NetToolsUser> m_user;
};

void tst_PageNetTools::init()
{
    m_page = std::make_unique<pageNetTools>(nullptr);
    m_user = std::make_unique<NetToolsUser>(*m_page);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
}

void tst_PageNetTools::cleanup()
{
    m_user.reset();
    m_page.reset();
}

void tst_PageNetTools::opensWithPing()
{
    QVERIFY(m_user->button("Ping")->isChecked());
    QVERIFY(!m_user->button("DNS Lookup")->isChecked());
    QVERIFY(!m_user->button("Trace Route")->isChecked());
    QVERIFY(m_user->checkBox("Adaptive ping")->isVisible());
    QCOMPARE(m_user->logText(), QString());
    QCOMPARE(m_user->processButton()->text(), text("Start Process"));
}

void tst_PageNetTools::hasItsSlotsInOrder()
{
    const QMetaObject *meta = m_page->metaObject();
    QCOMPARE(text(meta->className()), text("pageNetTools"));
    QVERIFY(m_page->qt_metacast("pageNetTools"));
    QVERIFY(m_page->qt_metacast("QWidget"));
    QStringList slotsInOrder;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        QCOMPARE(meta->method(i).methodType(), QMetaMethod::Slot);
        slotsInOrder << QString::fromLatin1(meta->method(i).methodSignature());
    }
    QCOMPARE(
        slotsInOrder,
        (QStringList{text("handleProcessAction()"), text("readStandardError()"), text("readStandardOutput()"),
                     text("handleProcessFinished(int,QProcess::ExitStatus)"), text("diagnosticDialog()")}));
}

void tst_PageNetTools::isLaidOut()
{
    const QLayout *layout = m_page->layout();
    QVERIFY(qobject_cast<const QVBoxLayout *>(layout));
    QCOMPARE(content(layout),
             text("[Generate a diagnostic:, Diagnostic], "
                  "[[Select Tool:, Ping, DNS Lookup, Trace Route], QFrame, [panel, panel, panel]], "
                  "QTextEdit, [Start Process, Clear Log]"));
    for (int row : {0, 1, 3})
        QVERIFY(qobject_cast<QHBoxLayout *>(layout->itemAt(row)->layout()));
    QCOMPARE(layout->itemAt(0)->layout()->itemAt(1)->alignment(), Qt::AlignLeft);
    QCOMPARE(layout->itemAt(3)->layout()->spacing(), 30);

    const auto *separator = qobject_cast<QFrame *>(layout->itemAt(1)->layout()->itemAt(1)->widget());
    QCOMPARE(separator->frameShape(), QFrame::VLine);
    QCOMPARE(separator->frameShadow(), QFrame::Sunken);
}

void tst_PageNetTools::stretchesTheLogAndThePanel()
{
    const QLayout *layout = m_page->layout();
    QCOMPARE(stretches(layout), (QList<int>{0, 0, 1, 0}));
    QCOMPARE(stretches(layout->itemAt(0)->layout()), (QList<int>{0, 0}));
    const QLayout *tools = layout->itemAt(1)->layout();
    QCOMPARE(stretches(tools), (QList<int>{0, 0, 1}));
    QCOMPARE(stretches(tools->itemAt(0)->layout()), (QList<int>{0, 1, 1, 1}));
    QCOMPARE(stretches(layout->itemAt(3)->layout()), (QList<int>{0, 0}));
}

void tst_PageNetTools::showsALogOfPlainUnwrappedText()
{
    const QTextEdit *log = m_user->log();
    QVERIFY(log->isReadOnly());
    QVERIFY(!log->isUndoRedoEnabled());
    QCOMPARE(log->lineWrapMode(), QTextEdit::NoWrap);
    QCOMPARE(log->frameShape(), QFrame::Box);
    QCOMPARE(log->frameShadow(), QFrame::Sunken);
    QCOMPARE(log->font().family(), text("Courier"));
    QCOMPARE(log->font().pointSize(), 10);
    QCOMPARE(log->font().weight(), QFont::Normal);
    QVERIFY(!log->font().italic());
    QVERIFY(log->font().fixedPitch());
    QCOMPARE(log->fontWeight(), static_cast<int>(QFont::Light));
}

void tst_PageNetTools::laysTheLogOutWhenItIsShown()
{
    m_page = std::make_unique<pageNetTools>(nullptr);
    m_user = std::make_unique<NetToolsUser>(*m_page);
    QTextEdit *log = m_user->log();
    QVERIFY(log->document()->pageSize().isNull());
    QCOMPARE(log->document()->pageSize(), QTextEdit().document()->pageSize());
    for (int line = 1; line <= 100; ++line)
        log->append(QStringLiteral("%1 ").arg(line) + QString(300, QLatin1Char('x')));
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
    const QFontMetricsF metrics(log->font());
    const QSizeF size = log->document()->size();
    QVERIFY(size.height() > 95 * metrics.height());
    QVERIFY(size.width() > 295 * metrics.horizontalAdvance(QLatin1Char('x')));
    QVERIFY(log->verticalScrollBar()->maximum() > 0);
    QVERIFY(log->horizontalScrollBar()->maximum() > 0);
}

void tst_PageNetTools::choosesTheTool_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("box");
    QTest::newRow("ping") << "Ping" << 0 << "Adaptive ping";
    QTest::newRow("DNS lookup") << "DNS Lookup" << 1 << "Use this nameserver:";
    QTest::newRow("trace route") << "Trace Route" << 2 << "Max hops";
}

void tst_PageNetTools::choosesTheTool()
{
    QFETCH(QString, tool);
    m_user->click(tool == QLatin1String("Ping") ? "DNS Lookup" : "Ping");

    const QByteArray name = tool.toLatin1();
    m_user->click(name.constData());
    const auto *tools = qobject_cast<QRadioButton *>(m_user->button(name.constData()))->group();
    QVERIFY(tools->exclusive());
    QTEST(tools->checkedId(), "number");
    QFETCH(QString, box);
    QVERIFY(m_user->checkBox(box.toLatin1().constData())->isVisible());
    QTEST(m_page->findChild<QStackedLayout *>()->currentIndex(), "number");
}

void tst_PageNetTools::growsInTheLogAndThePanel()
{
    m_page->resize(m_page->sizeHint());
    QCoreApplication::processEvents();
    const QSize log = m_user->log()->size();
    const QSize panel = m_user->panel()->size();

    m_page->resize(m_page->size() + QSize(170, 130));
    QCoreApplication::processEvents();
    QCOMPARE(m_user->log()->size(), log + QSize(170, 130));
    QCOMPARE(m_user->panel()->size(), panel + QSize(170, 0));
}

void tst_PageNetTools::namesTheFieldsOfEachPanel()
{
    for (const char *tool : {"Ping", "DNS Lookup", "Trace Route"}) {
        m_user->click(tool);
        const QList<QLabel *> labels = shownLabels(*m_user->panel());
        QCOMPARE(labels.size(), 1);
        const QLabel *label = labels.constFirst();
        QCOMPARE(label->buddy(), m_user->lineEdit(label->text().toLatin1().constData()));
        // A setting is named by its check box.
        const QList<QWidget *> inputs = m_user->panel()->findChildren<QWidget *>();
        for (const QWidget *input : inputs) {
            const bool isSetting = input->inherits("QSpinBox") || input->inherits("QComboBox")
                || (input->inherits("QLineEdit") && input->parentWidget() == m_user->panel());
            if (!isSetting || input == label->buddy())
                continue;
            const QByteArray name = input->accessibleName().toLatin1();
            QVERIFY(!name.isEmpty());
            QCOMPARE(m_user->valueOf(name.constData()), input);
        }
    }
}

void tst_PageNetTools::translatesEveryText()
{
    const MarkingTranslator translator;
    pageNetTools page(nullptr);
    const NetToolsUser user(page);
    const SearchPath path;
    QStringList texts;
    const QList<QLabel *> labels = shownLabels(page);
    for (const QLabel *label : labels)
        texts << label->text();
    const QList<QAbstractButton *> buttons = page.findChildren<QAbstractButton *>();
    for (const QAbstractButton *button : buttons) {
        if (!button->inherits("QToolButton"))
            texts << button->text();
    }
    // Five labels; six buttons beside the panels, and eight, one and seven check boxes in them.
    QCOMPARE(texts.size(), 5 + 6 + 16);
    for (const QString &shown : std::as_const(texts))
        QVERIFY2(shown.startsWith(QLatin1String("[pageNetTools]")), qPrintable(shown));
    user.pressProcessButton();
    QCOMPARE(user.logText(), text("\n> [pageNetTools]Executing: \"ping \"\n\n"));
    QCOMPARE(user.processButton()->text(), text("[pageNetTools]Stop Process"));
}

void tst_PageNetTools::panelIsLaidOut_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("firstRow");
    QTest::addColumn<QStringList>("cells");

    QTest::newRow("ping") << "Ping"
                          << "Target Host:, QLineEdit"
                          << QStringList{text("Verbose output"),
                                         text("Adaptive ping"),
                                         text("Display address numerically"),
                                         text("Display user-to-user latency"),
                                         text("Number of pings, QSpinBox"),
                                         text("Packet data size, QSpinBox"),
                                         text("Interval ( sec ), QSpinBox"),
                                         text("Time-to-live, QSpinBox")};
    QTest::newRow("trace route") << "Trace Route"
                                 << "Target Host:, QLineEdit"
                                 << QStringList{text("Datagram size, QSpinBox"),
                                                text("Display addresses numerically"),
                                                text("UDP port, QLineEdit"),
                                                text("Max hops, QSpinBox"),
                                                text("Response wait time ( sec ), QSpinBox"),
                                                text("Queries/hop, QSpinBox"),
                                                text("Set source IP, QLineEdit"),
                                                text("(empty)")};
    QTest::newRow("DNS lookup") << "DNS Lookup"
                                << "Hostname:, QLineEdit" << QStringList{};
}

void tst_PageNetTools::panelIsLaidOut()
{
    QFETCH(QString, tool);
    QFETCH(QStringList, cells);
    m_user->click(tool.toLatin1().constData());
    const QLayout *layout = m_user->panel()->layout();
    QVERIFY(qobject_cast<const QVBoxLayout *>(layout));
    QCOMPARE(layout->count(), 2);
    QTEST(content(layout->itemAt(0)->layout()), "firstRow");
    QCOMPARE(stretches(layout->itemAt(0)->layout()), (QList<int>{0, 1}));

    if (cells.isEmpty()) {
        QCOMPARE(content(layout->itemAt(1)->layout()), text("Use this nameserver:, QComboBox"));
        QCOMPARE(stretches(layout->itemAt(1)->layout()), (QList<int>{0, 1}));
        return;
    }
    const auto *grid = qobject_cast<QGridLayout *>(layout->itemAt(1)->layout());
    QCOMPARE(grid->rowCount(), 4);
    QCOMPARE(grid->columnCount(), 2);
    for (int i = 0; i < cells.size(); ++i) {
        QCOMPARE(cell(grid, i / 2, i % 2), cells.at(i));
        const QLayoutItem *item = grid->itemAtPosition(i / 2, i % 2);
        if (item && const_cast<QLayoutItem *>(item)->layout())
            QCOMPARE(stretches(const_cast<QLayoutItem *>(item)->layout()), (QList<int>{0, 0}));
    }
}

void tst_PageNetTools::noBoxIsCheckedAndEveryFieldCanBeEdited_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<int>("boxes");
    QTest::newRow("ping") << "Ping" << 8;
    QTest::newRow("DNS lookup") << "DNS Lookup" << 1;
    QTest::newRow("trace route") << "Trace Route" << 7;
}

void tst_PageNetTools::noBoxIsCheckedAndEveryFieldCanBeEdited()
{
    QFETCH(QString, tool);
    m_user->click(tool.toLatin1().constData());
    const QList<QCheckBox *> boxes = m_user->panel()->findChildren<QCheckBox *>();
    QTEST(static_cast<int>(boxes.size()), "boxes");
    for (bool checked : {false, true, false}) {
        for (QCheckBox *box : boxes) {
            if (checked)
                box->click();
            QCOMPARE(box->isChecked(), checked);
        }
        const QList<QWidget *> fields = m_user->panel()->findChildren<QWidget *>();
        for (const QWidget *field : fields)
            QVERIFY(field->isEnabled());
        for (QCheckBox *box : boxes)
            box->setChecked(false);
    }
}

void tst_PageNetTools::numbers_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("initial");
    QTest::addColumn<int>("step");
    QTest::newRow("Number of pings") << "Ping" << 1 << 99 << 10 << 1;
    QTest::newRow("Interval ( sec )") << "Ping" << 1 << 99 << 1 << 1;
    QTest::newRow("Packet data size") << "Ping" << 1 << 2000 << 56 << 10;
    QTest::newRow("Time-to-live") << "Ping" << 0 << 99 << 30 << 1;
    QTest::newRow("Max hops") << "Trace Route" << 0 << 99 << 30 << 1;
    QTest::newRow("Queries/hop") << "Trace Route" << 1 << 99 << 3 << 1;
    QTest::newRow("Response wait time ( sec )") << "Trace Route" << 1 << 99 << 3 << 1;
    QTest::newRow("Datagram size") << "Trace Route" << 0 << 2000 << 40 << 10;
}

void tst_PageNetTools::numbers()
{
    QFETCH(QString, tool);
    m_user->click(tool.toLatin1().constData());
    const QSpinBox *number = m_user->number(QTest::currentDataTag());
    QTEST(number->minimum(), "minimum");
    QTEST(number->maximum(), "maximum");
    QTEST(number->value(), "initial");
    QTEST(number->singleStep(), "step");
}

void tst_PageNetTools::numbersClampToTheirRange()
{
    QSpinBox *number = m_user->number("Number of pings");
    for (int i = 0; i < 20; ++i)
        QTest::keyClick(number, Qt::Key_Down);
    QCOMPARE(number->value(), 1);
    m_user->type("Number of pings", text("100"));
    QCOMPARE(number->value(), 10);
    m_user->type("Number of pings", text("99"));
    QTest::keyClick(number, Qt::Key_Up);
    QCOMPARE(number->value(), 99);
}

void tst_PageNetTools::packetDataSizeStepsByTen()
{
    QSpinBox *number = m_user->number("Packet data size");
    QTest::keyClick(number, Qt::Key_Up);
    QCOMPARE(number->value(), 66);
    m_user->type("Packet data size", text("1995"));
    QTest::keyClick(number, Qt::Key_Up);
    QCOMPARE(number->value(), 2000);
    QTest::keyClick(number, Qt::Key_Up);
    QCOMPARE(number->value(), 2000);
}

void tst_PageNetTools::textsAtFirst()
{
    QCOMPARE(m_user->lineEdit("Target Host:")->text(), QString());
    m_user->click("DNS Lookup");
    QCOMPARE(m_user->lineEdit("Hostname:")->text(), QString());
    m_user->click("Trace Route");
    QCOMPARE(m_user->lineEdit("Target Host:")->text(), QString());
    QCOMPARE(m_user->lineEdit("Set source IP")->text(), text("0.0.0.0"));
    QCOMPARE(m_user->lineEdit("UDP port")->text(), text("33434"));
}

void tst_PageNetTools::judgesAddressesByThePattern_data()
{
    QTest::addColumn<QString>("input");
    QTest::newRow("nothing") << "";
    QTest::newRow("an address") << "192.0.2.250";
    QTest::newRow("colons") << "2001:db8::1";
    QTest::newRow("a newline at the end") << "192.0.2.1\n";
    QTest::newRow("a letter between") << "192.x.2.1";
    QTest::newRow("two addresses") << "192.0.2.1 192.0.2.2";
    QTest::newRow("digits of another script") << QStringLiteral(u"\u0661\u0662");
    for (char16_t character = 0; character <= 255; ++character)
        QTest::addRow("character 0x%02x", static_cast<unsigned>(character)) << QString(QChar(character));
}

void tst_PageNetTools::judgesAddressesByThePattern()
{
    QFETCH(QString, input);
    m_user->click("DNS Lookup");
    const QValidator *validator = m_user->comboBox("Use this nameserver:")->validator();
    const auto *pattern = qobject_cast<const QRegularExpressionValidator *>(validator);
    QVERIFY(pattern);
    QCOMPARE(pattern->regularExpression().pattern(), QStringLiteral("[0-9.]+"));
    const QRegularExpressionValidator plain{QRegularExpression(QStringLiteral("[0-9.]+"))};
    QString text = input;
    QString plainText = input;
    int position = 1;
    int plainPosition = 1;
    QCOMPARE(validator->validate(text, position), plain.validate(plainText, plainPosition));
    QCOMPARE(text, plainText);
    QCOMPARE(position, plainPosition);
}

void tst_PageNetTools::addressesAreDigitsAndDots_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("accepted");
    QTest::newRow("address") << "10.0.0.1"
                             << "10.0.0.1";
    QTest::newRow("too many parts") << "1.2.3.4.5"
                                    << "1.2.3.4.5";
    QTest::newRow("too few and too large") << "999.1"
                                           << "999.1";
    QTest::newRow("dots") << "..."
                          << "...";
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("letters") << "a1b.c2"
                             << "1.2";
    QTest::newRow("blanks") << " 1 . 2 "
                            << "1.2";
    QTest::newRow("colons") << "fe80::1"
                            << "801";
    QTest::newRow("a flag") << "-s"
                            << "";
    QTest::newRow("digits of another script") << QStringLiteral(u"1\u0662.3") << "1.3";
}

void tst_PageNetTools::addressesAreDigitsAndDots()
{
    QFETCH(QString, typed);
    m_user->click("Trace Route");
    m_user->type("Set source IP", typed);
    QTEST(m_user->lineEdit("Set source IP")->text(), "accepted");
    m_user->click("DNS Lookup");
    m_user->type("Use this nameserver:", typed);
    QTEST(m_user->comboBox("Use this nameserver:")->currentText(), "accepted");
}

void tst_PageNetTools::ports_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("accepted");
    QTest::newRow("smallest") << "1"
                              << "1";
    QTest::newRow("largest") << "65535"
                             << "65535";
    QTest::newRow("too large") << "65536"
                               << "6553";
    QTest::newRow("too small") << "0"
                               << "0";
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("letters") << "5x3"
                             << "53";
    QTest::newRow("negative") << "-53"
                              << "53";
    QTest::newRow("fraction") << "5.3"
                              << "53";
    QTest::newRow("thousands separator") << "1,000"
                                         << "1000";
}

void tst_PageNetTools::ports()
{
    QFETCH(QString, typed);
    m_user->click("Trace Route");
    m_user->type("UDP port", typed);
    QTEST(m_user->lineEdit("UDP port")->text(), "accepted");
}

void tst_PageNetTools::portsAreTheSameInEveryLanguage()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const pageNetTools page(nullptr);
    const NetToolsUser user(const_cast<pageNetTools &>(page));
    user.click("Trace Route");
    user.type("UDP port", text("1.000"));
    QLocale::setDefault(before);
    QCOMPARE(user.lineEdit("UDP port")->text(), text("1000"));
}

void tst_PageNetTools::targetsAreNotRestricted()
{
    const QString typed = text("<b> -f %1 \"x\" ; $(id)");
    for (const char *tool : {"Ping", "Trace Route"}) {
        m_user->click(tool);
        m_user->type("Target Host:", typed);
        QCOMPARE(m_user->lineEdit("Target Host:")->text(), typed);
    }
    m_user->click("DNS Lookup");
    m_user->type("Hostname:", typed);
    QCOMPARE(m_user->lineEdit("Hostname:")->text(), typed);
}

void tst_PageNetTools::nameServerThatWasTypedIsNotListed()
{
    m_user->click("DNS Lookup");
    QComboBox *nameServer = m_user->comboBox("Use this nameserver:");
    QVERIFY(nameServer->isEditable());
    QCOMPARE(nameServer->insertPolicy(), QComboBox::NoInsert);
    const int listed = nameServer->count();
    m_user->type("Use this nameserver:", text("203.0.113.253"));
    QTest::keyClick(nameServer, Qt::Key_Return);
    QCOMPARE(nameServer->currentText(), text("203.0.113.253"));
    QCOMPARE(nameServer->count(), listed);
}

void tst_PageNetTools::nameServerIsChosenFromTheList()
{
    m_user->click("DNS Lookup");
    QComboBox *nameServer = m_user->comboBox("Use this nameserver:");
    nameServer->addItem(text("203.0.113.253"));
    nameServer->showPopup();
    const QList<QAbstractItemView *> lists = nameServer->findChildren<QAbstractItemView *>();
    QCOMPARE(lists.size(), 1);
    lists.constFirst()->setCurrentIndex(nameServer->model()->index(nameServer->count() - 1, 0));
    QTest::keyClick(lists.constFirst(), Qt::Key_Return);
    QCOMPARE(nameServer->currentText(), text("203.0.113.253"));
}

void tst_PageNetTools::checkBoxAloneDecides_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("atFirst");
    QTest::addColumn<QString>("changed");

    const auto row = [](const char *tool, const char *box, const char *value, const char *atFirst,
                        const char *changed) { QTest::newRow(box) << tool << value << atFirst << changed; };
    row("Ping", "Display user-to-user latency", "", "[ping][-U][gw]", "");
    row("Ping", "Display address numerically", "", "[ping][-n][gw]", "");
    row("Ping", "Verbose output", "", "[ping][-v][gw]", "");
    row("Ping", "Adaptive ping", "", "[ping][-A][gw]", "");
    row("Ping", "Number of pings", "8", "[ping][-c][10][gw]", "[ping][-c][8][gw]");
    row("Ping", "Interval ( sec )", "7", "[ping][-i][1][gw]", "[ping][-i][7][gw]");
    row("Ping", "Packet data size", "2000", "[ping][-s][56][gw]", "[ping][-s][2000][gw]");
    row("Ping", "Time-to-live", "0", "[ping][-t][30][gw]", "[ping][-t][0][gw]");
    row("DNS Lookup", "Use this nameserver:", "192.0.2.53", "", "[host][gw][192.0.2.53]");
    row("Trace Route", "Display addresses numerically", "", "[traceroute][-n][gw]", "");
    row("Trace Route", "Max hops", "6", "[traceroute][-m][30][gw]", "[traceroute][-m][6][gw]");
    row("Trace Route", "Queries/hop", "5", "[traceroute][-q][3][gw]", "[traceroute][-q][5][gw]");
    row("Trace Route", "Set source IP", "192.0.2.1", "[traceroute][-s][0.0.0.0][gw]",
        "[traceroute][-s][192.0.2.1][gw]");
    row("Trace Route", "Response wait time ( sec )", "4", "[traceroute][-w][3][gw]",
        "[traceroute][-w][4][gw]");
    row("Trace Route", "UDP port", "", "[traceroute][-p][33434][gw]", "[traceroute][-p][][gw]");
    row("Trace Route", "Datagram size", "1000", "[traceroute][gw][40]", "[traceroute][gw][1000]");
}

void tst_PageNetTools::checkBoxAloneDecides()
{
    QFETCH(QString, tool);
    QFETCH(QString, value);
    QFETCH(QString, atFirst);
    QFETCH(QString, changed);
    const char *setting = QTest::currentDataTag();
    const char *program = tool == QLatin1String("Ping") ? "ping"
        : tool == QLatin1String("DNS Lookup")           ? "host"
                                                        : "traceroute";
    SearchPath path;
    path.install(program, printingItsArguments);

    m_user->click(tool.toLatin1().constData());
    m_user->type(tool == QLatin1String("DNS Lookup") ? "Hostname:" : "Target Host:", text("gw"));
    const QString without = QStringLiteral("[%1][gw]").arg(text(program));
    QCOMPARE(printedByTheTool(), without);

    m_user->checkBox(setting)->click();
    if (!atFirst.isEmpty())
        QCOMPARE(printedByTheTool(), atFirst);
    if (changed.isEmpty())
        return;
    m_user->type(setting, value);
    QCOMPARE(printedByTheTool(), changed);
    m_user->checkBox(setting)->click();
    QCOMPARE(printedByTheTool(), without);
}

QString tst_PageNetTools::printedByTheTool()
{
    m_user->click("Clear Log");
    m_user->pressProcessButton();
    if (!m_user->waitUntilFinished())
        return text("not finished");
    // Between the notices.
    return m_user->logText().section(QLatin1String("\n\n"), 1).section(QLatin1Char('>'), 0, 0);
}

void tst_PageNetTools::passesSeveralSettingsInTheToolsOrder_data()
{
    QTest::addColumn<QByteArray>("tool");
    QTest::addColumn<QByteArrayList>("boxes");
    QTest::addColumn<QString>("call");

    QTest::newRow("all of ping") << QByteArray("Ping")
                                 << QByteArrayList{"Time-to-live",
                                                   "Packet data size",
                                                   "Interval ( sec )",
                                                   "Number of pings",
                                                   "Adaptive ping",
                                                   "Verbose output",
                                                   "Display address numerically",
                                                   "Display user-to-user latency"}
                                 << "[ping][-U][-n][-v][-A][-c][10][-i][1][-s][56][-t][30][gw]";
    QTest::newRow("all of traceroute")
        << QByteArray("Trace Route")
        << QByteArrayList{"Datagram size", "UDP port", "Response wait time ( sec )",   "Set source IP",
                          "Queries/hop",   "Max hops", "Display addresses numerically"}
        << "[traceroute][-n][-m][30][-q][3][-s][0.0.0.0][-w][3][-p][33434][gw][40]";
    QTest::newRow("datagram size and hops")
        << QByteArray("Trace Route") << QByteArrayList{"Datagram size", "Max hops"}
        << "[traceroute][-m][30][gw][40]";
}

void tst_PageNetTools::passesSeveralSettingsInTheToolsOrder()
{
    QFETCH(QByteArray, tool);
    QFETCH(QByteArrayList, boxes);
    SearchPath path;
    path.install("ping", printingItsArguments);
    path.install("traceroute", printingItsArguments);
    m_user->click(tool.constData());
    m_user->type("Target Host:", text("gw"));
    for (const QByteArray &box : boxes)
        m_user->checkBox(box.constData())->click();
    QTEST(printedByTheTool(), "call");
}

void tst_PageNetTools::keepsWhatWasSetBetweenRuns()
{
    SearchPath path;
    path.install("ping", "exit 0\n");
    m_user->type("Target Host:", text("gw"));
    m_user->type("Number of pings", text("8"));
    m_user->checkBox("Verbose output")->click();
    m_user->pressProcessButton();
    QVERIFY(m_user->waitUntilFinished());
    QCOMPARE(m_user->lineEdit("Target Host:")->text(), text("gw"));
    QCOMPARE(m_user->number("Number of pings")->value(), 8);
    QVERIFY(m_user->checkBox("Verbose output")->isChecked());
}

QTEST_MAIN(tst_PageNetTools)
#include "tst_pagenettools.moc"
