#include "pages/network/pagenetwork.h"
#include "tests/device/device.h"
#include "tests/device/network.h"
#include "tests/markingtranslator.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QMetaMethod>
#include <QTableWidget>
#include <QTest>
#include <QTimerEvent>

#include <cstdarg>
#include <cstdio>
#include <utility>

#include <dlfcn.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// What the page asked, in order: command lines and, for the kernel's answers, "address", "netmask", "flags".
QStringList questions;

} // namespace

// The page's questions come by here on their way.
extern "C" FILE *popen(const char *command, const char *mode)
{
    questions.append(QString::fromLatin1(command));
    static const auto next =
        reinterpret_cast<FILE *(*)(const char *, const char *)>(dlsym(RTLD_NEXT, "popen"));
    return next(command, mode);
}

extern "C" int ioctl(int descriptor, unsigned long request, ...)
{
    va_list arguments;
    va_start(arguments, request);
    void *record = va_arg(arguments, void *);
    va_end(arguments);
    if (request == SIOCGIFADDR)
        questions.append(QStringLiteral("address"));
    else if (request == SIOCGIFNETMASK)
        questions.append(QStringLiteral("netmask"));
    else if (request == SIOCGIFFLAGS)
        questions.append(QStringLiteral("flags"));
    return static_cast<int>(syscall(SYS_ioctl, descriptor, request, record));
}

namespace {

QLabel *caption(const QWidget &page, const QString &text)
{
    const QList<QLabel *> labels = page.findChildren<QLabel *>();
    for (QLabel *label : labels) {
        if (label->text() == text)
            return label;
    }
    qFatal("no caption %s", qPrintable(text));
}

QLabel *valueLabel(const QWidget &page, const QString &captionText)
{
    return qobject_cast<QLabel *>(caption(page, captionText)->buddy());
}

QString shown(const QWidget &page, const char *captionText)
{
    return valueLabel(page, QString::fromLatin1(captionText))->text();
}

QComboBox &combo(const QWidget &page)
{
    return *page.findChild<QComboBox *>();
}

QString offered(const QWidget &page)
{
    QStringList names;
    for (int i = 0; i < combo(page).count(); ++i)
        names.append(combo(page).itemText(i));
    return names.join(QLatin1Char(' '));
}

QTableWidget &statistics(const QWidget &page)
{
    return *page.findChild<QTableWidget *>();
}

QString shownCounter(const QWidget &page, int row)
{
    return statistics(page).item(row, 1)->text();
}

QString nameservers(const QWidget &page)
{
    const auto *list = page.findChild<QListWidget *>();
    QStringList texts;
    for (int row = 0; row < list->count(); ++row)
        texts.append(list->item(row)->text());
    return texts.join(QLatin1Char('|'));
}

QGroupBox *group(const QWidget &page, const QString &title)
{
    const QList<QGroupBox *> groups = page.findChildren<QGroupBox *>();
    for (QGroupBox *box : groups) {
        if (box->title() == title)
            return box;
    }
    qFatal("no group box %s", qPrintable(title));
}

QList<QAbstractEventDispatcher::TimerInfo> timers(pageNetwork &page)
{
    return QAbstractEventDispatcher::instance()->registeredTimers(&page);
}

void tick(pageNetwork &page)
{
    QTimerEvent event(timers(page).constFirst().timerId);
    QCoreApplication::sendEvent(&page, &event);
}

QString counterCommand(const char *name)
{
    return QStringLiteral("awk '/%1/ { split($0,aa,\":\"); print aa[2] }' /proc/net/dev")
        .arg(QLatin1String(name));
}

const char routeCommand[] = "/sbin/route -n | awk '/^0.0.0.0/ { print $2 }'";
const char nameserverCommand[] = "awk '/nameserver/ { printf \"%s \", $2 }' /etc/resolv.conf";

/// The questions of one refresh of the selected interface.
QStringList deviceQuestions()
{
    return {QStringLiteral("address"), QStringLiteral("netmask"), QStringLiteral("flags"),
            counterCommand("eth0")};
}

QStringList gatheringQuestions()
{
    return {QLatin1String(routeCommand), QLatin1String(nameserverCommand)};
}

/// The size of the application's font, in pixels, while it lives.
class TextSize {
public:
    explicit TextSize(int pixelSize)
        : m_original(QApplication::font())
    {
        QFont font = m_original;
        font.setPixelSize(pixelSize);
        QApplication::setFont(font);
    }
    ~TextSize() { QApplication::setFont(m_original); }
    Q_DISABLE_COPY(TextSize)

private:
    QFont m_original;
};

QStringList commandsAmong(const QStringList &asked)
{
    return asked.filter(QLatin1String(" "));
}

QString describe(const QString &state, const QString &address, const QString &netmask, const QString &mac)
{
    return QStringList({state, address, netmask, mac}).join(QLatin1Char(' '));
}

QString shownFacts(const QWidget &page)
{
    return describe(shown(page, "State:"), shown(page, "IP Address:"), shown(page, "Network Mask:"),
                    shown(page, "MAC Address:"));
}

QString kernelFacts(const char *name)
{
    const Network::InterfaceFacts facts = Network::facts(QString::fromLatin1(name));
    return describe(facts.state, facts.address, facts.netmask, facts.macAddress);
}

bool isArm()
{
    return Device::name() == QLatin1String("arm");
}

} // namespace

class tst_pageNetwork : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void showsTheDevice();
    void metaObject();
    void layout();
    void distances();
    void valueBoxes();
    void captionsNameTheirValues();
    void sharesOutTheRoom_data();
    void sharesOutTheRoom();
    void nothingIsCutOff_data();
    void nothingIsCutOff();
    void translationContext();
    void plainText();

    void offeredInterfaces_data();
    void offeredInterfaces();
    void longestOfferedName();
    void asksInOrderWhenBuilt();
    void choosingAnInterface();
    void choosingTheSameInterfaceAgain();
    void choosingAsksForThatInterfaceOnly();
    void selectionByProgramRefreshesNothing();
    void slotTakesAnyName();

    void timer();
    void asksInOrderOnEachTick();
    void tickShowsChangesOfTheInterface_data();
    void tickShowsChangesOfTheInterface();
    void tickShowsChangesOfTheSettings();
    void tickKeepsTheSelection();
    void vanishedInterfaceStaysListed();
    void newInterfaceIsNotListed();
    void hiddenDhcpRowComesBack();

    void withoutAnyInterface();
    void longerNameIsOffered();
    void countersAreThoseOfEth0();
    void nameserverList_data();
    void nameserverList();
    void withoutAnything();
};

void tst_pageNetwork::init()
{
    questions.clear();
    Device::clearCalls();
}

void tst_pageNetwork::cleanup()
{
    Device::restore();
    Network::reset();
}

void tst_pageNetwork::showsTheDevice()
{
    const pageNetwork page(nullptr);
    QCOMPARE(offered(page), QStringLiteral("eth0 wlan0"));
    QCOMPARE(combo(page).currentText(), QStringLiteral("eth0"));
    QCOMPARE(shownFacts(page), kernelFacts("eth0"));
    if (isArm()) {
        QCOMPARE(shownFacts(page), QStringLiteral("Enabled 192.168.1.20 255.255.255.0 00:1a:2b:3c:4d:5e"));
        QCOMPARE(shown(page, "DHCP Server Address:"), QStringLiteral("192.168.1.1"));
        QCOMPARE(shown(page, "Default Gateway:"), QStringLiteral("192.168.1.1"));
        QCOMPARE(shown(page, "Hostname:"), QStringLiteral("tc-arm-01"));
        QCOMPARE(shown(page, "Default Domain:"), QStringLiteral("corp.example"));
        QCOMPARE(nameservers(page), QStringLiteral("192.168.1.1|192.168.1.2"));
    } else {
        QCOMPARE(shownFacts(page), QStringLiteral("Enabled 10.1.1.70 255.255.255.0 02:00:5e:70:00:01"));
        QCOMPARE(shown(page, "DHCP Server Address:"), QStringLiteral("none"));
        QCOMPARE(shown(page, "Default Gateway:"), QStringLiteral("10.1.1.1"));
        QCOMPARE(shown(page, "Hostname:"), QStringLiteral("tc-x86-02"));
        QCOMPARE(shown(page, "Default Domain:"), QStringLiteral("branch.example"));
        QCOMPARE(nameservers(page), QStringLiteral("10.1.1.1"));
    }
}

void tst_pageNetwork::metaObject()
{
    const QMetaObject &page = pageNetwork::staticMetaObject;
    QCOMPARE(page.className(), "pageNetwork");
    QCOMPARE(page.superClass(), &QWidget::staticMetaObject);
    QCOMPARE(page.methodCount() - page.methodOffset(), 1);
    const QMetaMethod slot = page.method(page.methodOffset());
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);
    QCOMPARE(slot.access(), QMetaMethod::Public);
    QCOMPARE(slot.methodSignature(), QByteArray("deviceSelected(QString)"));
    QCOMPARE(slot.parameterNames(), QList<QByteArray>{"label"});
    QCOMPARE(page.propertyCount(), page.propertyOffset());
    QCOMPARE(page.classInfoCount(), page.classInfoOffset());
}

void tst_pageNetwork::layout()
{
    const pageNetwork page(nullptr);
    QCOMPARE(page.size(), QSize(600, 360));
    QCOMPARE(page.minimumSize(), QSize(0, 0));

    const auto *sides = qobject_cast<QHBoxLayout *>(page.layout());
    QVERIFY(sides);
    QCOMPARE(sides->count(), 2);
    QCOMPARE(sides->stretch(0), 3);
    QCOMPARE(sides->stretch(1), 2);
    const QGroupBox *interfaceGroup = group(page, QStringLiteral("Interface"));
    QCOMPARE(sides->itemAt(0)->widget(), interfaceGroup);

    const auto *grid = qobject_cast<QGridLayout *>(interfaceGroup->layout());
    QVERIFY(grid);
    const QStringList captions = {QStringLiteral("Name:"),
                                  QStringLiteral("State:"),
                                  QString(),
                                  QStringLiteral("IP Address:"),
                                  QStringLiteral("Network Mask:"),
                                  QStringLiteral("MAC Address:"),
                                  QStringLiteral("DHCP Server Address:")};
    for (int row = 0; row < captions.size(); ++row) {
        QLayoutItem *item = grid->itemAtPosition(row, 0);
        QLayoutItem *value = grid->itemAtPosition(row, 1);
        if (captions.at(row).isEmpty()) {
            QVERIFY(!item);
            QVERIFY(!value);
            continue;
        }
        const auto *label = qobject_cast<QLabel *>(item->widget());
        QCOMPARE(label->text(), captions.at(row));
        QCOMPARE(value->widget(), label->buddy());
        QCOMPARE(value->alignment(), Qt::Alignment());
        QCOMPARE(grid->rowStretch(row), 0);
    }
    QCOMPARE(grid->itemAtPosition(0, 1)->widget(), &combo(page));
    int row = 0;
    int column = 0;
    int rowSpan = 0;
    int columnSpan = 0;
    grid->getItemPosition(grid->indexOf(&statistics(page)), &row, &column, &rowSpan, &columnSpan);
    QCOMPARE(QList<int>({row, column, rowSpan, columnSpan}), QList<int>({7, 0, 1, 2}));
    QCOMPARE(grid->rowStretch(7), 1);
    QCOMPARE(grid->rowCount(), 8);
    QCOMPARE(grid->columnCount(), 2);
    QCOMPARE(grid->columnStretch(0), 0);
    QCOMPARE(grid->columnStretch(1), 0);

    const auto *right = qobject_cast<QVBoxLayout *>(sides->itemAt(1)->layout());
    QVERIFY(right);
    QCOMPARE(right->count(), 2);
    QCOMPARE(right->stretch(0), 0);
    QCOMPARE(right->stretch(1), 0);
    const QGroupBox *networkGroup = group(page, QStringLiteral("Network"));
    const QGroupBox *dnsGroup = group(page, QStringLiteral("DNS Settings"));
    QCOMPARE(right->itemAt(0)->widget(), networkGroup);
    QCOMPARE(right->itemAt(1)->widget(), dnsGroup);
    QVERIFY(qobject_cast<QVBoxLayout *>(networkGroup->layout()));
    QCOMPARE(networkGroup->layout()->count(), 2);
    QCOMPARE(networkGroup->layout()->itemAt(0)->widget(), caption(page, QStringLiteral("Default Gateway:")));
    QCOMPARE(networkGroup->layout()->itemAt(1)->widget(),
             valueLabel(page, QStringLiteral("Default Gateway:")));

    const auto *dns = qobject_cast<QVBoxLayout *>(dnsGroup->layout());
    QVERIFY(dns);
    QCOMPARE(dns->count(), 6);
    QCOMPARE(dns->itemAt(0)->widget(), caption(page, QStringLiteral("Hostname:")));
    QCOMPARE(dns->itemAt(1)->widget(), valueLabel(page, QStringLiteral("Hostname:")));
    QCOMPARE(dns->itemAt(2)->widget(), caption(page, QStringLiteral("Default Domain:")));
    QCOMPARE(dns->itemAt(3)->widget(), valueLabel(page, QStringLiteral("Default Domain:")));
    QCOMPARE(dns->itemAt(4)->widget(), caption(page, QStringLiteral("Nameservers:")));
    QCOMPARE(dns->itemAt(5)->widget(), page.findChild<QListWidget *>());
    for (int item = 0; item < 5; ++item)
        QCOMPARE(dns->stretch(item), 0);
    QCOMPARE(dns->stretch(5), 1);
}

void tst_pageNetwork::distances()
{
    const pageNetwork page(nullptr);
    QWidget untouchedPage;
    auto *untouchedGroup = new QGroupBox(&untouchedPage);
    const QGroupBox *interfaceGroup = group(page, QStringLiteral("Interface"));
    const auto *grid = qobject_cast<QGridLayout *>(interfaceGroup->layout());
    const QGridLayout untouchedGrid(untouchedGroup);
    QCOMPARE(grid->horizontalSpacing(), untouchedGrid.horizontalSpacing());
    QCOMPARE(grid->verticalSpacing(), untouchedGrid.verticalSpacing());
    QCOMPARE(grid->contentsMargins(), untouchedGrid.contentsMargins());

    const QHBoxLayout untouchedSides(&untouchedPage);
    QCOMPARE(page.layout()->spacing(), untouchedSides.spacing());
    QCOMPARE(page.layout()->contentsMargins(), untouchedSides.contentsMargins());

    const QVBoxLayout untouchedBox(new QGroupBox(&untouchedPage));
    for (const char *title : {"Network", "DNS Settings"}) {
        const QLayout *box = group(page, QString::fromLatin1(title))->layout();
        QCOMPARE(box->spacing(), untouchedBox.spacing());
        QCOMPARE(box->contentsMargins(), untouchedBox.contentsMargins());
    }
    const QLayout *right = page.layout()->itemAt(1)->layout();
    QCOMPARE(right->spacing(), untouchedBox.spacing());
    QCOMPARE(right->contentsMargins(), QMargins());
}

void tst_pageNetwork::valueBoxes()
{
    const pageNetwork page(nullptr);
    QCOMPARE(page.findChildren<QFrame *>(QStringLiteral("valueBox")).size(), 10);
    for (const char *text : {"State:", "IP Address:", "Network Mask:", "MAC Address:", "DHCP Server Address:",
                             "Hostname:", "Default Domain:", "Default Gateway:"}) {
        const QLabel *value = valueLabel(page, QString::fromLatin1(text));
        QCOMPARE(value->objectName(), QStringLiteral("valueBox"));
        QCOMPARE(int(value->alignment()), 130);
        QCOMPARE(value->minimumHeight(), 25);
        QCOMPARE(value->frameStyle(), 0x21);
        QCOMPARE(value->textFormat(), Qt::PlainText);
    }
    const QList<const QFrame *> frames = {&statistics(page), page.findChild<QListWidget *>()};
    for (const QFrame *frame : frames) {
        QCOMPARE(frame->objectName(), QStringLiteral("valueBox"));
        QCOMPARE(frame->frameStyle(), 0x21);
        QCOMPARE(frame->lineWidth(), 1);
        QCOMPARE(frame->midLineWidth(), 1);
        QCOMPARE(frame->minimumHeight(), 0);
    }
}

void tst_pageNetwork::captionsNameTheirValues()
{
    const pageNetwork page(nullptr);
    QCOMPARE(caption(page, QStringLiteral("Name:"))->buddy(), &combo(page));
    QCOMPARE(caption(page, QStringLiteral("Nameservers:"))->buddy(), page.findChild<QListWidget *>());
}

void tst_pageNetwork::sharesOutTheRoom_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("its own size") << QSize(600, 360);
    QTest::newRow("wide") << QSize(1000, 600);
    QTest::newRow("wide and high") << QSize(1500, 1200);
}

void tst_pageNetwork::sharesOutTheRoom()
{
    QFETCH(QSize, size);
    // At the page's own size a large font would need more than its share.
    const TextSize textSize(13);
    pageNetwork page(nullptr);
    page.resize(size);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QCOMPARE(page.width(), size.width());
    const int left = group(page, QStringLiteral("Interface"))->width();
    const int right = group(page, QStringLiteral("Network"))->width();
    QVERIFY2(qAbs(2 * left - 3 * right) <= 5, qPrintable(QStringLiteral("%1:%2").arg(left).arg(right)));

    // More height goes to the table and to the list of nameservers.
    const int tableHeight = statistics(page).height();
    const int listHeight = page.findChild<QListWidget *>()->height();
    const int stateHeight = valueLabel(page, QStringLiteral("State:"))->height();
    const int hostHeight = valueLabel(page, QStringLiteral("Hostname:"))->height();
    page.resize(page.width(), page.height() + 100);
    QCoreApplication::processEvents();
    QCOMPARE(statistics(page).height(), tableHeight + 100);
    QVERIFY(page.findChild<QListWidget *>()->height() > listHeight);
    QCOMPARE(valueLabel(page, QStringLiteral("State:"))->height(), stateHeight);
    QCOMPARE(valueLabel(page, QStringLiteral("Hostname:"))->height(), hostHeight);
}

void tst_pageNetwork::nothingIsCutOff_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("pixelSize");
    QTest::newRow("its own size") << QSize(600, 360) << 13;
    QTest::newRow("enlarged") << QSize(1200, 800) << 13;
    QTest::newRow("large font, little room") << QSize(600, 100) << 24;
}

void tst_pageNetwork::nothingIsCutOff()
{
    QFETCH(QSize, size);
    QFETCH(int, pixelSize);
    const TextSize textSize(pixelSize);
    pageNetwork page(nullptr);
    page.resize(size);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    const QList<QLabel *> labels = page.findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        const QSize needed = label->minimumSizeHint();
        QVERIFY2(label->width() >= needed.width() && label->height() >= needed.height(),
                 qPrintable(label->text()));
    }
    QTableWidget &table = statistics(page);
    for (int row = 0; row < table.rowCount(); ++row) {
        QCOMPARE(table.rowHeight(row), 20);
        const int textWidth = table.fontMetrics().horizontalAdvance(table.item(row, 0)->text());
        QVERIFY(textWidth < table.columnWidth(0));
    }
    QCOMPARE(table.horizontalHeader()->height(), 23);
    QVERIFY(table.columnWidth(0) + table.columnWidth(1) <= table.viewport()->width());
    // The first column keeps its width, which is made for the usual size of text.
    for (int column = 0; pixelSize <= 13 && column < table.columnCount(); ++column) {
        const QString text = table.horizontalHeaderItem(column)->text();
        QVERIFY2(table.horizontalHeader()->fontMetrics().horizontalAdvance(text) < table.columnWidth(column),
                 qPrintable(text));
    }
    QVERIFY(combo(page).width() >= combo(page).minimumSizeHint().width());
    QVERIFY(combo(page).height() >= combo(page).minimumSizeHint().height());
    const QList<QGroupBox *> groups = page.findChildren<QGroupBox *>();
    for (const QGroupBox *box : groups) {
        const int titleWidth = box->fontMetrics().horizontalAdvance(box->title());
        QVERIFY2(box->width() > titleWidth && box->width() >= box->minimumSizeHint().width(),
                 qPrintable(box->title()));
    }
}

void tst_pageNetwork::translationContext()
{
    const MarkingTranslator translator;
    Device::remove(isArm() ? QStringLiteral("/var/lib/dhcp3/vars/eth0/dhcp_server_identifier")
                           : QStringLiteral("/var/lib/dhcp3/vars/wlan0/dhcp_server_identifier"));
    Network::ip("link set wlan0 down");
    pageNetwork page(nullptr);
    const QString enabled = shown(page, "[QObject]State:");
    const QString none = shown(page, "[QObject]DHCP Server Address:");
    page.deviceSelected(QStringLiteral("wlan0"));
    const QString disabled = shown(page, "[QObject]State:");

    QCOMPARE(enabled, QStringLiteral("[QObject]Enabled"));
    QCOMPARE(disabled, QStringLiteral("[QObject]Disabled"));
    QCOMPARE(none, QStringLiteral("[QObject]none"));
    QStringList texts;
    const QList<QGroupBox *> groups = page.findChildren<QGroupBox *>();
    for (const QGroupBox *box : groups)
        texts.append(box->title());
    const QList<QLabel *> labels = page.findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        if (label->buddy())
            texts.append(label->text());
    }
    texts.sort();
    QCOMPARE(texts,
             QStringList({QStringLiteral("[QObject]DHCP Server Address:"),
                          QStringLiteral("[QObject]DNS Settings"), QStringLiteral("[QObject]Default Domain:"),
                          QStringLiteral("[QObject]Default Gateway:"), QStringLiteral("[QObject]Hostname:"),
                          QStringLiteral("[QObject]IP Address:"), QStringLiteral("[QObject]Interface"),
                          QStringLiteral("[QObject]MAC Address:"), QStringLiteral("[QObject]Name:"),
                          QStringLiteral("[QObject]Nameservers:"), QStringLiteral("[QObject]Network"),
                          QStringLiteral("[QObject]Network Mask:"), QStringLiteral("[QObject]State:")}));
    QCOMPARE(statistics(page).item(0, 0)->text(), QStringLiteral("[QObject]Received"));
}

void tst_pageNetwork::plainText()
{
    Device::write(QStringLiteral("/etc/hostname"), "<b>thin</b>&amp;\n");
    Device::write(QStringLiteral("/etc/resolv.conf"), "search <i>x</i>\nnameserver <u>y</u>\n");
    pageNetwork page(nullptr);
    QCOMPARE(shown(page, "Hostname:"), QStringLiteral("<b>thin</b>&amp;"));
    QCOMPARE(shown(page, "Default Domain:"), QStringLiteral("<i>x</i>"));
    QCOMPARE(nameservers(page), QStringLiteral("<u>y</u>"));
    // Bold text or a swallowed tag would take up less room than the characters themselves.
    const QLabel *host = valueLabel(page, QStringLiteral("Hostname:"));
    QVERIFY(host->sizeHint().width() > host->fontMetrics().horizontalAdvance(host->text()));
}

void tst_pageNetwork::offeredInterfaces_data()
{
    QTest::addColumn<QString>("interfaces");
    QTest::addColumn<QString>("offer");

    QTest::newRow("one") << "wlan0"
                         << "wlan0";
    QTest::newRow("in the order of the offer") << "athath_pci0 wlan1 wlan0 eth0"
                                               << "eth0 wlan0 wlan1 athath_pci0";
    QTest::newRow("others are never offered") << "usb0 eth0 br0"
                                              << "eth0";
}

void tst_pageNetwork::offeredInterfaces()
{
    QFETCH(QString, interfaces);
    Network::ip("link delete eth0");
    Network::ip("link delete wlan0");
    const QStringList names = interfaces.split(QLatin1Char(' '));
    for (const QString &name : names)
        Network::addInterface(name);
    const pageNetwork page(nullptr);
    QTEST(offered(page), "offer");
    QCOMPARE(combo(page).currentIndex(), 0);
    for (int i = 0; i < combo(page).count(); ++i) {
        QVERIFY(combo(page).itemIcon(i).isNull());
        QVERIFY(!combo(page).itemData(i).isValid());
    }
}

void tst_pageNetwork::longestOfferedName()
{
    Network::ip("link delete eth0");
    Network::ip("link delete wlan0");
    Network::addInterface(QStringLiteral("athath_pci0"));
    Network::ip("address add 10.20.30.42/22 dev athath_pci0");
    Network::ip("link set athath_pci0 address 02:00:00:00:00:42");
    Network::ip("link set athath_pci0 up");
    const pageNetwork page(nullptr);
    QCOMPARE(offered(page), QStringLiteral("athath_pci0"));
    QCOMPARE(shownFacts(page), QStringLiteral("Enabled 10.20.30.42 255.255.252.0 02:00:00:00:00:42"));
}

void tst_pageNetwork::asksInOrderWhenBuilt()
{
    const pageNetwork page(nullptr);
    QStringList expected;
    for (const char *name : {"eth0", "eth1", "wlan0", "wlan1", "via0", "athath_pci0"})
        expected.append(counterCommand(name));
    expected += gatheringQuestions() + deviceQuestions();
    QCOMPARE(questions, expected);
    QCOMPARE(Device::shellCommands(), commandsAmong(expected));
}

void tst_pageNetwork::choosingAnInterface()
{
    Network::ip("link set wlan0 down");
    Network::ip("link set wlan0 up");
    Network::ip("address flush dev wlan0");
    Network::ip("address add 10.20.30.41/20 dev wlan0");
    Device::write(QStringLiteral("/var/lib/dhcp3/vars/wlan0/dhcp_server_identifier"),
                  "dhcp_server_identifier= 10.20.30.1 \n");
    pageNetwork page(nullptr);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    combo(page).setFocus();
    Network::sendFrames("cable0", 300, 1000);
    QTRY_VERIFY(Network::counter(QStringLiteral("eth0"), "rx_bytes").toInt() >= 300000);
    const int bytesBefore = Network::counter(QStringLiteral("eth0"), "rx_bytes").toInt();
    QTest::keyClick(&combo(page), Qt::Key_Down);
    const int bytesAfter = Network::counter(QStringLiteral("eth0"), "rx_bytes").toInt();
    QCOMPARE(combo(page).currentText(), QStringLiteral("wlan0"));
    QCOMPARE(shownFacts(page), kernelFacts("wlan0"));
    QVERIFY(shownFacts(page).startsWith(QLatin1String("Enabled 10.20.30.41 255.255.240.0 ")));
    QCOMPARE(shown(page, "DHCP Server Address:"), QStringLiteral("10.20.30.1"));
    // The kernel sends packets of its own now and then.
    QVERIFY(shownCounter(page, 2).toInt() >= bytesBefore);
    QVERIFY(shownCounter(page, 2).toInt() <= bytesAfter);
    QVERIFY(Network::counter(QStringLiteral("wlan0"), "rx_bytes").toInt() < bytesBefore);

    QTest::keyClick(&combo(page), Qt::Key_Up);
    QCOMPARE(shownFacts(page), kernelFacts("eth0"));
}

void tst_pageNetwork::choosingTheSameInterfaceAgain()
{
    pageNetwork page(nullptr);
    Network::ip("link set eth0 down");
    QCOMPARE(shown(page, "State:"), QStringLiteral("Enabled"));
    QVERIFY(QMetaObject::invokeMethod(&combo(page), "textActivated", Q_ARG(QString, QStringLiteral("eth0"))));
    QCOMPARE(shown(page, "State:"), QStringLiteral("Disabled"));
}

void tst_pageNetwork::choosingAsksForThatInterfaceOnly()
{
    pageNetwork page(nullptr);
    Device::write(QStringLiteral("/etc/hostname"), "changed\n");
    questions.clear();
    page.deviceSelected(QStringLiteral("wlan0"));
    QCOMPARE(questions, deviceQuestions());
    QVERIFY(shown(page, "Hostname:") != QLatin1String("changed"));
}

void tst_pageNetwork::selectionByProgramRefreshesNothing()
{
    pageNetwork page(nullptr);
    questions.clear();
    combo(page).setCurrentIndex(1);
    QCOMPARE(questions, QStringList());
    QCOMPARE(shownFacts(page), kernelFacts("eth0"));
}

void tst_pageNetwork::slotTakesAnyName()
{
    pageNetwork page(nullptr);
    QVERIFY(QMetaObject::invokeMethod(&page, "deviceSelected", Q_ARG(QString, QStringLiteral("cable0"))));
    QCOMPARE(shownFacts(page), kernelFacts("cable0"));
    QCOMPARE(shown(page, "DHCP Server Address:"), QStringLiteral("none"));
    page.deviceSelected(QStringLiteral("nosuch0"));
    QCOMPARE(shownFacts(page), QStringLiteral("Disabled 0.0.0.0 0.0.0.0 "));
    QCOMPARE(offered(page), QStringLiteral("eth0 wlan0"));
}

void tst_pageNetwork::timer()
{
    QElapsedTimer clock;
    clock.start();
    pageNetwork page(nullptr);
    QCOMPARE(timers(page).size(), 1);
    QCOMPARE(timers(page).constFirst().interval, 3000);
    // Hidden, as while another tab is shown, the page goes on.
    questions.clear();
    QTRY_VERIFY_WITH_TIMEOUT(questions.contains(QLatin1String(routeCommand)), 5000);
    QVERIFY(clock.elapsed() > 2500);
}

void tst_pageNetwork::asksInOrderOnEachTick()
{
    pageNetwork page(nullptr);
    const QStringList expected =
        QStringList(counterCommand("eth0")) + deviceQuestions() + gatheringQuestions() + deviceQuestions();
    for (const char *selected : {"eth0", "wlan0", "wlan0"}) {
        combo(page).setCurrentText(QString::fromLatin1(selected));
        questions.clear();
        Device::clearCalls();
        tick(page);
        QCOMPARE(questions, expected);
        QCOMPARE(Device::shellCommands(), commandsAmong(expected));
        QCOMPARE(questions.count(counterCommand("eth0")), 3);
        QCOMPARE(questions.count(QStringLiteral("address")), 2);
    }
}

void tst_pageNetwork::tickShowsChangesOfTheInterface_data()
{
    QTest::addColumn<QStringList>("changes");
    QTest::addColumn<QString>("facts");

    const QString mac = isArm() ? QStringLiteral("00:1a:2b:3c:4d:5e") : QStringLiteral("02:00:5e:70:00:01");
    QTest::newRow("another address") << QStringList(
        {QStringLiteral("address flush dev eth0"), QStringLiteral("address add 172.16.5.6/12 dev eth0")})
                                     << QStringLiteral("Enabled 172.16.5.6 255.240.0.0 ") + mac;
    QTest::newRow("up without an address") << QStringList(QStringLiteral("address flush dev eth0"))
                                           << QStringLiteral("Enabled 0.0.0.0 0.0.0.0 ") + mac;
    QTest::newRow("down without an address")
        << QStringList({QStringLiteral("address flush dev eth0"), QStringLiteral("link set eth0 down")})
        << QStringLiteral("Disabled 0.0.0.0 0.0.0.0 ") + mac;
    QTest::newRow("down with its address")
        << QStringList({QStringLiteral("address flush dev eth0"), QStringLiteral("link set eth0 down"),
                        QStringLiteral("address add 172.16.5.6/12 dev eth0")})
        << QStringLiteral("Disabled 172.16.5.6 255.240.0.0 ") + mac;
    QTest::newRow("no carrier") << QStringList({QStringLiteral("address flush dev eth0"),
                                                QStringLiteral("address add 172.16.5.6/12 dev eth0"),
                                                QStringLiteral("link set cable0 down")})
                                << QStringLiteral("Enabled 172.16.5.6 255.240.0.0 ") + mac;
    QTest::newRow("another MAC address") << QStringList(
        {QStringLiteral("address flush dev eth0"), QStringLiteral("link set eth0 address 02:00:00:00:00:99")})
                                         << "Enabled 0.0.0.0 0.0.0.0 02:00:00:00:00:99";
    QTest::newRow("gone") << QStringList(QStringLiteral("link delete eth0")) << "Disabled 0.0.0.0 0.0.0.0 ";
}

void tst_pageNetwork::tickShowsChangesOfTheInterface()
{
    QFETCH(QStringList, changes);
    pageNetwork page(nullptr);
    const QString before = shownFacts(page);
    for (const QString &change : std::as_const(changes))
        Network::ip(qPrintable(change));
    QCOMPARE(shownFacts(page), before);
    tick(page);
    QTEST(shownFacts(page), "facts");
    QCOMPARE(offered(page), QStringLiteral("eth0 wlan0"));
}

void tst_pageNetwork::tickShowsChangesOfTheSettings()
{
    pageNetwork page(nullptr);
    Device::write(QStringLiteral("/etc/hostname"), "other\n");
    Device::write(QStringLiteral("/etc/resolv.conf"), "nameserver 10.9.9.9\nsearch other.example\n");
    Device::write(QStringLiteral("/var/lib/dhcp3/vars/eth0/dhcp_server_identifier"),
                  "dhcp_server_identifier=10.8.8.8\n");
    Network::ip("route delete default");
    tick(page);
    QCOMPARE(shown(page, "Hostname:"), QStringLiteral("other"));
    QCOMPARE(shown(page, "Default Domain:"), QStringLiteral("other.example"));
    QCOMPARE(shown(page, "Default Gateway:"), QString());
    QCOMPARE(shown(page, "DHCP Server Address:"), QStringLiteral("10.8.8.8"));
    QCOMPARE(nameservers(page), QStringLiteral("10.9.9.9"));
    tick(page);
    QCOMPARE(nameservers(page), QStringLiteral("10.9.9.9"));
}

void tst_pageNetwork::tickKeepsTheSelection()
{
    pageNetwork page(nullptr);
    combo(page).setCurrentIndex(1);
    tick(page);
    QCOMPARE(combo(page).currentText(), QStringLiteral("wlan0"));
    QCOMPARE(shownFacts(page), kernelFacts("wlan0"));
}

void tst_pageNetwork::vanishedInterfaceStaysListed()
{
    pageNetwork page(nullptr);
    const QString bytes = shownCounter(page, 2);
    QVERIFY(bytes != QLatin1String("???"));
    Network::ip("link delete eth0");
    tick(page);
    QCOMPARE(offered(page), QStringLiteral("eth0 wlan0"));
    QCOMPARE(combo(page).currentText(), QStringLiteral("eth0"));
    QCOMPARE(shownFacts(page), QStringLiteral("Disabled 0.0.0.0 0.0.0.0 "));
    QCOMPARE(shownCounter(page, 2), bytes);

    Network::ip("link add eth0 address 02:00:00:00:00:77 type veth peer name cable0");
    tick(page);
    QCOMPARE(shownFacts(page), QStringLiteral("Disabled 0.0.0.0 0.0.0.0 02:00:00:00:00:77"));
}

void tst_pageNetwork::newInterfaceIsNotListed()
{
    pageNetwork page(nullptr);
    Network::ip("link add eth1 type veth peer name cable2");
    tick(page);
    page.deviceSelected(QStringLiteral("eth0"));
    QCOMPARE(offered(page), QStringLiteral("eth0 wlan0"));
}

void tst_pageNetwork::hiddenDhcpRowComesBack()
{
    pageNetwork page(nullptr);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QLabel *dhcpCaption = caption(page, QStringLiteral("DHCP Server Address:"));
    dhcpCaption->hide();
    dhcpCaption->buddy()->hide();
    page.deviceSelected(QStringLiteral("wlan0"));
    QVERIFY(dhcpCaption->isVisible());
    QVERIFY(dhcpCaption->buddy()->isVisible());
}

void tst_pageNetwork::withoutAnyInterface()
{
    Network::ip("link delete eth0");
    Network::ip("link delete wlan0");
    Network::addInterface(QStringLiteral("usb0"));
    Network::ip("address add 192.0.2.1/24 dev usb0");
    Network::ip("link set usb0 up");
    Network::ip("route add default via 192.0.2.9");
    pageNetwork page(nullptr);
    QCOMPARE(combo(page).count(), 0);
    QCOMPARE(shownFacts(page), QStringLiteral("   "));
    QCOMPARE(shown(page, "DHCP Server Address:"), QString());
    QCOMPARE(shown(page, "Default Gateway:"), QStringLiteral("192.0.2.9"));
    QCOMPARE(shown(page, "Hostname:"), isArm() ? QStringLiteral("tc-arm-01") : QStringLiteral("tc-x86-02"));
    QCOMPARE(nameservers(page),
             isArm() ? QStringLiteral("192.168.1.1|192.168.1.2") : QStringLiteral("10.1.1.1"));
    for (const int row : {1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 14})
        QCOMPARE(shownCounter(page, row), QStringLiteral("???"));

    Device::write(QStringLiteral("/etc/hostname"), "other\n");
    Device::write(QStringLiteral("/etc/resolv.conf"), "search other.example\n");
    Network::ip("link add eth0 type veth peer name cable0");
    const QString domain = shown(page, "Default Domain:");
    questions.clear();
    tick(page);
    QCOMPARE(questions, QStringList());
    QCOMPARE(combo(page).count(), 0);
    QVERIFY(shown(page, "Hostname:") != QLatin1String("other"));
    QCOMPARE(shown(page, "Default Domain:"), domain);
    QCOMPARE(shownCounter(page, 1), QStringLiteral("???"));
}

void tst_pageNetwork::longerNameIsOffered()
{
    Network::ip("link delete eth0");
    Network::ip("link delete wlan0");
    Network::ip("link add eth10 type veth peer name cable10");
    Network::ip("link set eth10 up");
    pageNetwork page(nullptr);
    QCOMPARE(offered(page), QStringLiteral("eth1"));
    QCOMPARE(shownFacts(page), QStringLiteral("Disabled 0.0.0.0 0.0.0.0 "));
}

void tst_pageNetwork::countersAreThoseOfEth0()
{
    pageNetwork page(nullptr);
    combo(page).setCurrentText(QStringLiteral("wlan0"));
    Network::ip("link set cable1 up");
    Network::ip("link set wlan0 up");
    Network::sendFrames("cable0", 7, 1000);
    Network::sendFrames("eth0", 5, 200);
    Network::sendFrames("cable1", 300, 1000);

    const auto sum = [](std::initializer_list<const char *> names) {
        qulonglong total = 0;
        for (const char *name : names)
            total += Network::counter(QStringLiteral("eth0"), name).toULongLong();
        return QString::number(total);
    };
    const auto counters = [&sum] {
        return QStringList(
            {sum({"rx_packets"}), sum({"rx_bytes"}), sum({"rx_errors"}),
             sum({"rx_dropped", "rx_missed_errors"}), sum({"rx_fifo_errors"}),
             sum({"rx_length_errors", "rx_over_errors", "rx_crc_errors", "rx_frame_errors"}),
             sum({"tx_packets"}), sum({"tx_bytes"}), sum({"tx_errors"}), sum({"tx_dropped"}),
             sum({"tx_fifo_errors"}),
             sum({"tx_carrier_errors", "tx_aborted_errors", "tx_window_errors", "tx_heartbeat_errors"}),
             sum({"collisions"})});
    };
    // The kernel sends packets of its own now and then.
    QStringList before;
    QStringList after;
    QStringList shownCounters;
    for (int i = 0; i < 20 && (before.isEmpty() || before != after); ++i) {
        before = counters();
        tick(page);
        after = counters();
    }
    for (const int row : {1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 14})
        shownCounters.append(shownCounter(page, row));
    QCOMPARE(shownCounters, before);
    QVERIFY(shownCounters.at(0).toInt() >= 7);
    QVERIFY(shownCounters.at(1).toInt() >= 7000);
    QVERIFY(shownCounters.at(1).toInt() < 100000);
    QVERIFY(shownCounters.at(6).toInt() >= 5);
    QVERIFY(shownCounters.at(7).toInt() >= 1000);
}

void tst_pageNetwork::nameserverList_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("items");

    QTest::newRow("three in the order of the file")
        << QByteArray("nameserver 10.0.0.3\nnameserver 10.0.0.1\nsearch x\nnameserver 10.0.0.2\n")
        << "10.0.0.3|10.0.0.1|10.0.0.2";
    QTest::newRow("duplicates") << QByteArray("nameserver 10.0.0.1\nnameserver 10.0.0.1\n")
                                << "10.0.0.1|10.0.0.1";
    QTest::newRow("without an address")
        << QByteArray("nameserver\nnameserver 10.0.0.1\nnameserver\n") << "10.0.0.1";
    QTest::newRow("without an address in the middle")
        << QByteArray("nameserver 10.0.0.1\nnameserver\nnameserver \nnameserver 10.0.0.2\n")
        << "10.0.0.1|10.0.0.2";
    QTest::newRow("commented out") << QByteArray("nameserver 1.1.1.1\n#nameserver 2.2.2.2\n")
                                   << "1.1.1.1|2.2.2.2";
    QTest::newRow("none") << QByteArray("search x\n") << "";
    QTest::newRow("IPv6") << QByteArray("nameserver fe80::1%eth0\n") << "fe80::1%eth0";
}

void tst_pageNetwork::nameserverList()
{
    QFETCH(QByteArray, file);
    Device::write(QStringLiteral("/etc/resolv.conf"), file);
    pageNetwork page(nullptr);
    QTEST(nameservers(page), "items");
    tick(page);
    QTEST(nameservers(page), "items");
}

void tst_pageNetwork::withoutAnything()
{
    Network::ip("link delete eth0");
    Network::ip("link delete wlan0");
    Device::remove(QStringLiteral("/etc/hostname"));
    Device::remove(QStringLiteral("/etc/resolv.conf"));
    Device::remove(QStringLiteral("/usr/sbin/route"));
    pageNetwork page(nullptr);
    for (const char *text : {"State:", "IP Address:", "Network Mask:", "MAC Address:", "DHCP Server Address:",
                             "Hostname:", "Default Domain:", "Default Gateway:"})
        QCOMPARE(shown(page, text), QString());
    QCOMPARE(nameservers(page), QString());
}

QTEST_MAIN(tst_pageNetwork)
#include "tst_pagenetwork.moc"
