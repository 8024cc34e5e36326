#include "pages/network/netstatsview.h"
#include "procnetdev.h"
#include "tests/markingtranslator.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QHeaderView>
#include <QScopeGuard>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTest>
#include <QTextStream>

namespace {

QStringList column(const QTableWidget &table, int number)
{
    QStringList texts;
    for (int row = 0; row < table.rowCount(); ++row)
        texts.append(table.item(row, number)->text());
    return texts;
}

QStringList values(const char *blankSeparated)
{
    // A dash stands for an empty text.
    QStringList texts = QString::fromLatin1(blankSeparated).split(QLatin1Char(' '));
    texts.replaceInStrings(QStringLiteral("-"), QString());
    return texts;
}

} // namespace

class tst_NetStatsView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void captionsAndInitialValues();
    void items();
    void sizes_data();
    void sizes();
    void sizesAfterChangeOfStyle();
    void sizesAfterChangesWhileHidden();
    void headers();
    void setRow();
    void noMetaObjectOfItsOwn();
    void translationContext();

    void interfaceCounters_data();
    void interfaceCounters();
    void readCounter_data();
    void readCounter();
    void readCounterChains();

    void updateStats_data();
    void updateStats();
    void valuesStayWithoutALine();
};

void tst_NetStatsView::cleanup()
{
    // The one that the tests start with on every platform.
    QApplication::setStyle(QStringLiteral("Fusion"));
}

void tst_NetStatsView::captionsAndInitialValues()
{
    const NetStatsView view(nullptr);
    const QStringList captions = {
        QStringLiteral("Received"),     QStringLiteral("Packets"),        QStringLiteral("Bytes"),
        QStringLiteral("Errors"),       QStringLiteral("Dropped"),        QStringLiteral("Overruns"),
        QStringLiteral("Frame Errors"), QStringLiteral("Transmitted"),    QStringLiteral("Packets"),
        QStringLiteral("Bytes"),        QStringLiteral("Errors"),         QStringLiteral("Dropped"),
        QStringLiteral("Overruns"),     QStringLiteral("Carrier Errors"), QStringLiteral("Collisions"),
    };
    QCOMPARE(view.rowCount(), 15);
    QCOMPARE(view.columnCount(), 2);
    QCOMPARE(column(view, 0), captions);
    QCOMPARE(column(view, 1), values("- ??? ??? ??? ??? ??? ??? - ??? ??? ??? ??? ??? ??? ???"));
}

void tst_NetStatsView::items()
{
    const NetStatsView view(nullptr);
    for (int row = 0; row < 15; ++row) {
        QCOMPARE(view.item(row, 0)->flags(), Qt::ItemIsEnabled);
        QCOMPARE(view.item(row, 1)->flags(), Qt::ItemIsEnabled);
        const bool isSection = row == 0 || row == 7;
        QCOMPARE(view.item(row, 0)->data(Qt::TextAlignmentRole).toInt(), isSection ? 132 : 130);
        QVERIFY(!view.item(row, 1)->data(Qt::TextAlignmentRole).isValid());
    }
}

void tst_NetStatsView::sizes_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<int>("pixelSize");

    for (const QString &style : {QStringLiteral("Fusion"), QStringLiteral("Windows")}) {
        for (const int pixelSize : {8, 13, 30})
            QTest::addRow("%s, font of %d", qPrintable(style), pixelSize) << style << pixelSize;
    }
}

void tst_NetStatsView::sizes()
{
    QFETCH(QString, style);
    QFETCH(int, pixelSize);
    QVERIFY(QStyleFactory::keys().contains(style));
    QApplication::setStyle(style);
    const QFont original = QApplication::font();
    QFont font = original;
    font.setPixelSize(pixelSize);
    QApplication::setFont(font);
    const auto restoreFont = qScopeGuard([&original] { QApplication::setFont(original); });

    NetStatsView view(nullptr);
    view.resize(300, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    for (int row = 0; row < 15; ++row)
        QCOMPARE(view.rowHeight(row), 20);
    QCOMPARE(view.verticalHeader()->length(), 300);
    QCOMPARE(view.columnWidth(0), 174);
    QCOMPARE(view.horizontalHeader()->height(), 23);
    QVERIFY(view.verticalHeader()->isHidden());
    QVERIFY(view.horizontalHeader()->isVisible());
}

void tst_NetStatsView::sizesAfterChangeOfStyle()
{
    QApplication::setStyle(QStringLiteral("Windows"));
    NetStatsView view(nullptr);
    const int defaultWidth = QTableWidget(1, 2).columnWidth(1);
    QCOMPARE(view.columnWidth(1), defaultWidth);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QApplication::setStyle(QStringLiteral("Fusion"));
    view.setStyleSheet(QStringLiteral("QHeaderView { font-size: 30px }"));
    QCoreApplication::processEvents();
    QCOMPARE(view.rowHeight(0), 20);
    QCOMPARE(view.rowHeight(14), 20);
    QCOMPARE(view.columnWidth(0), 174);
    QCOMPARE(view.horizontalHeader()->height(), 23);
}

void tst_NetStatsView::sizesAfterChangesWhileHidden()
{
    NetStatsView view(nullptr);
    view.resize(300, 400);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QRect cells = view.viewport()->geometry();
    QCOMPARE(cells.top(), view.horizontalHeader()->geometry().bottom() + 1);
    QCOMPARE(view.horizontalHeader()->width(), cells.width());
    QVERIFY(!view.verticalScrollBar()->isVisible());

    view.hide();
    view.horizontalHeader()->setFixedHeight(40);
    view.setRowHeight(0, 400);
    QCoreApplication::processEvents();
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QCOMPARE(view.viewport()->geometry().top(), cells.top() + 40 - 23);
    QVERIFY(view.verticalScrollBar()->isVisible());
}

void tst_NetStatsView::headers()
{
    const NetStatsView view(nullptr);
    QCOMPARE(view.horizontalHeaderItem(0)->text(), QStringLiteral("Interface Statistics"));
    QCOMPARE(view.horizontalHeaderItem(1)->text(), QStringLiteral("Value"));
    QCOMPARE(view.lineWidth(), 1);
    QCOMPARE(view.midLineWidth(), 1);
    QVERIFY(!view.isSortingEnabled());
}

void tst_NetStatsView::setRow()
{
    NetStatsView view(nullptr);
    const QAbstractItemModelTester tester(view.model());
    view.setRow(3, QStringLiteral("Section"), QString());
    view.setRow(0, QStringLiteral("<b>Caption</b>"), QStringLiteral("<i>5</i>"));
    QCOMPARE(view.item(3, 0)->data(Qt::TextAlignmentRole).toInt(), 132);
    QCOMPARE(view.item(3, 1)->text(), QString());
    QCOMPARE(view.item(0, 0)->data(Qt::TextAlignmentRole).toInt(), 130);
    QCOMPARE(view.item(0, 0)->text(), QStringLiteral("<b>Caption</b>"));
    QCOMPARE(view.item(0, 1)->text(), QStringLiteral("<i>5</i>"));
    QCOMPARE(view.rowCount(), 15);
}

void tst_NetStatsView::noMetaObjectOfItsOwn()
{
    const NetStatsView view(nullptr);
    QCOMPARE(view.metaObject()->className(), "QTableWidget");
}

void tst_NetStatsView::translationContext()
{
    const MarkingTranslator translator;
    const NetStatsView view(nullptr);
    const QStringList texts = column(view, 0)
        + QStringList({view.horizontalHeaderItem(0)->text(), view.horizontalHeaderItem(1)->text()});
    QCOMPARE(texts.size(), 17);
    for (const QString &text : texts)
        QVERIFY2(text.startsWith(QLatin1String("[QObject]")), qPrintable(text));
    QCOMPARE(column(view, 1).at(1), QStringLiteral("???"));
}

void tst_NetStatsView::interfaceCounters_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("counters");

    const QByteArray lines = "    lo: 1 2 3\n  eth0: 4 5 6\n eth10:7 8 9  \n";
    QTest::newRow("one line") << lines << "eth0"
                              << "4 5 6";
    QTest::newRow("against the colon") << lines << "eth10"
                                       << "7 8 9";
    QTest::newRow("as part of a longer name") << lines << "eth1"
                                              << "7 8 9";
    QTest::newRow("none") << lines << "wlan0"
                          << "";
    QTest::newRow("first of several") << QByteArray(" veth0: 1 2\n  eth0: 3 4\n") << "eth0"
                                      << "1 2";
    QTest::newRow("first of several, the other way round")
        << QByteArray("  eth0: 3 4\n veth0: 1 2\n") << "eth0"
        << "3 4";
    QTest::newRow("inner blanks kept") << QByteArray("  eth0:  1    2\n") << "eth0"
                                       << "1    2";
    QTest::newRow("up to a second colon") << QByteArray("eth0:1: 3 4\n") << "eth0"
                                          << "1";
    QTest::newRow("the name is a regular expression") << lines << "e.h0"
                                                      << "4 5 6";
    QTest::newRow("in a header line") << lines << "face"
                                      << "";
    QTest::newRow("among the counters") << lines << "8"
                                        << "7 8 9";
    QTest::newRow("placeholder of the template") << QByteArray("%1: 1\n") << "%1"
                                                 << "1";
}

void tst_NetStatsView::interfaceCounters()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, name);
    ProcNetDev dev;
    dev.setInterfaces(lines);
    QTEST(readInterfaceCounters(name), "counters");
}

void tst_NetStatsView::readCounter_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("word");

    QTest::newRow("one word") << "12"
                              << "12";
    QTest::newRow("first word") << "12 34"
                                << "12";
    QTest::newRow("blanks before") << "  \t\n12 "
                                   << "12";
    QTest::newRow("as it stands") << "0018446744073709551615x"
                                  << "0018446744073709551615x";
    QTest::newRow("nothing") << ""
                             << "";
    QTest::newRow("blanks") << "  "
                            << "";
}

void tst_NetStatsView::readCounter()
{
    QFETCH(QString, text);
    QTextStream stream(&text, QIODevice::ReadOnly);
    QTableWidgetItem item(QStringLiteral("???"));
    QCOMPARE(&::readCounter(stream, &item), &stream);
    QTEST(item.text(), "word");
    QCOMPARE(item.data(Qt::DisplayRole).userType(), int(QMetaType::QString));
}

void tst_NetStatsView::readCounterChains()
{
    QString text = QStringLiteral("1 2");
    QTextStream stream(&text, QIODevice::ReadOnly);
    QTableWidgetItem first;
    QTableWidgetItem second;
    QTableWidgetItem third(QStringLiteral("old"));
    ::readCounter(::readCounter(::readCounter(stream, &first), &second), &third);
    QCOMPARE(first.text(), QStringLiteral("1"));
    QCOMPARE(second.text(), QStringLiteral("2"));
    QCOMPARE(third.text(), QString());
}

void tst_NetStatsView::updateStats_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QStringList>("shown");

    // rows: received packets, bytes, errors, dropped, overruns, frame; transmitted packets, bytes, errors,
    // dropped, overruns, carrier, collisions
    QTest::newRow("every counter in its row")
        << QByteArray("  eth0: 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n")
        << values("- 2 1 3 4 5 6 - 10 9 11 12 13 15 14");
    QTest::newRow("first counter against the colon")
        << QByteArray("  eth0:1234 10 0 0 0 0 0 0 5678 20 0 0 0 0 0 0\n")
        << values("- 10 1234 0 0 0 0 - 20 5678 0 0 0 0 0");
    QTest::newRow("largest counters, no grouping")
        << QByteArray("  eth0: 18446744073709551615 1000000 0 0 0 0 0 0 1 2 0 0 0 0 0 0\n")
        << values("- 1000000 18446744073709551615 0 0 0 0 - 2 1 0 0 0 0 0");
    QTest::newRow("fifteen words") << QByteArray("  eth0: 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15\n")
                                   << values("- 2 1 3 4 5 6 - 10 9 11 12 13 15 14");
    QTest::newRow("fourteen words") << QByteArray("  eth0: 1 2 3 4 5 6 7 8 9 10 11 12 13 14\n")
                                    << values("- 2 1 3 4 5 6 - 10 9 11 12 13 - 14");
    QTest::newRow("nine words") << QByteArray("  eth0: 1 2 3 4 5 6 7 8 9\n")
                                << values("- 2 1 3 4 5 6 - - 9 - - - - -");
    QTest::newRow("seven words") << QByteArray("  eth0: 1 2 3 4 5 6 7\n")
                                 << values("- 2 1 3 4 5 6 - - - - - - - -");
    QTest::newRow("one word") << QByteArray("  eth0: 1\n") << values("- - 1 - - - - - - - - - - - -");
    QTest::newRow("seventeen words") << QByteArray("  eth0: 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17\n")
                                     << values("- 2 1 3 4 5 6 - 10 9 11 12 13 15 14");
    QTest::newRow("eth0 among others") << QByteArray("    lo: 9 9 9\n  eth0: 1 2 3\n wlan0: 8 8 8\n")
                                       << values("- 2 1 3 - - - - - - - - - - -");
    QTest::newRow("veth0 before eth0")
        << QByteArray(" veth0: 9 8 7\n  eth0: 1 2 3\n") << values("- 8 9 7 - - - - - - - - - - -");
    QTest::newRow("no interface") << QByteArray("    lo: 1 2 3\n wlan0: 4 5 6\n")
                                  << values("- ??? ??? ??? ??? ??? ??? - ??? ??? ??? ??? ??? ??? ???");
    QTest::newRow("nothing after the colon")
        << QByteArray("  eth0:   \n") << values("- ??? ??? ??? ??? ??? ??? - ??? ??? ??? ??? ??? ??? ???");
}

void tst_NetStatsView::updateStats()
{
    QFETCH(QByteArray, lines);
    ProcNetDev dev;
    dev.setInterfaces(lines);
    NetStatsView view(nullptr);
    const QAbstractItemModelTester tester(view.model());
    view.updateStats();
    QTEST(column(view, 1), "shown");
}

void tst_NetStatsView::valuesStayWithoutALine()
{
    ProcNetDev dev;
    NetStatsView view(nullptr);
    dev.setInterfaces("  eth0: 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n");
    view.updateStats();
    dev.setInterfaces("    lo: 9 9 9\n");
    view.updateStats();
    QCOMPARE(column(view, 1), values("- 2 1 3 4 5 6 - 10 9 11 12 13 15 14"));
    dev.setInterfaces("  eth0: 5\n");
    view.updateStats();
    QCOMPARE(column(view, 1), values("- - 5 - - - - - - - - - - - -"));
}

QTEST_MAIN(tst_NetStatsView)
#include "tst_netstatsview.moc"
