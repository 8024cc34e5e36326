#include "pages/software/packagelistmodel.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

namespace {

QStringList twoHeaders()
{
    return {QStringLiteral("Name"), QStringLiteral("Version")};
}

/// The parts of a text, which has to stay, between the marks; none of an empty text.
PackageRow parts(QLatin1String text, char mark)
{
    PackageRow found;
    const char *part = text.begin();
    for (const char *character = part; !text.isEmpty() && character <= text.end(); ++character) {
        if (character == text.end() || *character == mark) {
            found.append(QLatin1String(part, character));
            part = character + 1;
        }
    }
    return found;
}

/// Rows of a text, which has to stay: "/" ends a row, "|" a cell.
std::vector<PackageRow> rowsOf(const char *text)
{
    std::vector<PackageRow> rows;
    for (const QLatin1String row : parts(QLatin1String(text), '/'))
        rows.push_back(parts(row, '|'));
    return rows;
}

/// What a view reads from the model, in the form that rowsOf() takes; "-" for a cell without an item.
QString textOf(const PackageListModel &model)
{
    QStringList lines;
    for (int row = 0; row < model.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < model.columnCount(); ++column)
            cells.append(model.item(row, column) ? model.index(row, column).data().toString()
                                                 : QStringLiteral("-"));
        lines.append(cells.join(QLatin1Char('|')));
    }
    return lines.join(QLatin1Char('/'));
}

using Change = void (*)(PackageListModel &model);

} // namespace

Q_DECLARE_METATYPE(Change)

class tst_PackageListModel : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fillsAnEmptyModel_data();
    void fillsAnEmptyModel();
    void keepsTheRowsBefore();
    void keepsTheHeaderTexts();
    void reportsAllRowsAtOnce();
    void reportsColumns();
    void keepsPersistentIndexes();
    void hasNoRowsAfterTheRemoval();
    void putsRowsBack();
    void putsNothingBack();
    void putsNoChangedRowsBack_data();
    void putsNoChangedRowsBack();
    void itemsKnowTheirTextAndPlace();
    void itemsTakeANewText();
};

void tst_PackageListModel::fillsAnEmptyModel_data()
{
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("text");
    QTest::newRow("no row") << QByteArray() << "";
    QTest::newRow("one row") << QByteArray("a|1") << "a|1";
    QTest::newRow("two rows") << QByteArray("b|1/a|2") << "b|1/a|2";
    QTest::newRow("shorter than the columns") << QByteArray("a/b|2") << "a|-/b|2";
    QTest::newRow("all shorter than the columns") << QByteArray("a/b") << "a|-/b|-";
    QTest::newRow("longer than the columns") << QByteArray("a|1/b|2|x") << "a|1|-/b|2|x";
    QTest::newRow("an empty text") << QByteArray("a|") << "a|";
}

void tst_PackageListModel::fillsAnEmptyModel()
{
    QFETCH(QByteArray, rows);
    PackageListModel model(twoHeaders(), nullptr);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.appendRows(PackageListModel::createItems(rowsOf(rows.constData())));
    QTEST(textOf(model), "text");
}

void tst_PackageListModel::keepsTheRowsBefore()
{
    PackageListModel model(twoHeaders(), nullptr);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1/b|2")));
    model.appendRows(PackageListModel::createItems(rowsOf("c|3/d")));
    QCOMPARE(textOf(model), QStringLiteral("a|1/b|2/c|3/d|-"));
}

void tst_PackageListModel::keepsTheHeaderTexts()
{
    PackageListModel model(twoHeaders(), nullptr);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1|x")));
    model.removeAllRows();
    QCOMPARE(model.rowCount(), 0);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1")));
    QCOMPARE(model.columnCount(), 3);
    QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Name"));
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Version"));
}

void tst_PackageListModel::reportsAllRowsAtOnce()
{
    PackageListModel model(twoHeaders(), nullptr);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1")));
    QSignalSpy announced(&model, &PackageListModel::rowsAboutToBeInserted);
    QSignalSpy inserted(&model, &PackageListModel::rowsInserted);
    QSignalSpy changed(&model, &PackageListModel::dataChanged);
    QSignalSpy arranged(&model, &PackageListModel::layoutChanged);
    QString textWhenReported;
    connect(&model, &PackageListModel::rowsInserted, this, [&] { textWhenReported = textOf(model); });
    model.appendRows(PackageListModel::createItems(rowsOf("b|2/c|3/d|4")));
    for (const QSignalSpy *spy : {&announced, &inserted}) {
        QCOMPARE(spy->size(), 1);
        QCOMPARE(spy->constFirst().at(0).toModelIndex(), QModelIndex());
        QCOMPARE(spy->constFirst().at(1).toInt(), 1);
        QCOMPARE(spy->constFirst().at(2).toInt(), 3);
    }
    QCOMPARE(textWhenReported, QStringLiteral("a|1/b|2/c|3/d|4"));
    QCOMPARE(arranged.size(), 0);
    QCOMPARE(changed.size(), 0);
    QVERIFY(!model.signalsBlocked());
}

void tst_PackageListModel::reportsColumns()
{
    PackageListModel model(twoHeaders(), nullptr);
    QSignalSpy inserted(&model, &PackageListModel::columnsInserted);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1/b|2")));
    QCOMPARE(inserted.size(), 0);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1|x|y/b|2|z")));
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(inserted.constFirst().at(1).toInt(), 2);
    QCOMPARE(inserted.constFirst().at(2).toInt(), 3);
}

void tst_PackageListModel::keepsPersistentIndexes()
{
    PackageListModel model(twoHeaders(), nullptr);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1/b|2")));
    const QPersistentModelIndex last(model.index(1, 1));
    model.appendRows(PackageListModel::createItems(rowsOf("c|3/d|4|x")));
    QVERIFY(last.isValid());
    QCOMPARE(last.row(), 1);
    QCOMPARE(last.data().toString(), QStringLiteral("2"));
    model.removeAllRows();
    QVERIFY(!last.isValid());
}

void tst_PackageListModel::hasNoRowsAfterTheRemoval()
{
    PackageListModel model(twoHeaders(), nullptr);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1/b|2")));
    model.removeAllRows();
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.columnCount(), 2);
    QVERIFY(!model.hasChildren());
    QVERIFY(!model.hasIndex(0, 0));
    QVERIFY(!model.index(0, 0).isValid());
    QSignalSpy removed(&model, &PackageListModel::rowsRemoved);
    model.removeAllRows();
    model.appendRows(PackageListModel::createItems(rowsOf("c|3")));
    QCOMPARE(removed.size(), 0);
    QCOMPARE(textOf(model), QStringLiteral("c|3"));
}

void tst_PackageListModel::putsRowsBack()
{
    PackageListModel model(twoHeaders(), nullptr);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1/b|2")));
    model.appendRows(PackageListModel::createItems(rowsOf("c|3|x")));
    QSignalSpy removed(&model, &PackageListModel::rowsRemoved);
    QSignalSpy inserted(&model, &PackageListModel::rowsInserted);
    for (int time = 1; time <= 2; ++time) {
        const QPersistentModelIndex index(model.index(1, 1));
        model.removeAllRows();
        QVERIFY(!index.isValid());
        QVERIFY(model.putRowsBack());
        QCOMPARE(textOf(model), QStringLiteral("a|1|-/b|2|-/c|3|x"));
        QVERIFY(model.hasChildren());
        for (const QSignalSpy *spy : {&removed, &inserted}) {
            QCOMPARE(spy->size(), time);
            QCOMPARE(spy->constLast().at(0).toModelIndex(), QModelIndex());
            QCOMPARE(spy->constLast().at(1).toInt(), 0);
            QCOMPARE(spy->constLast().at(2).toInt(), 2);
        }
    }
}

void tst_PackageListModel::putsNothingBack()
{
    PackageListModel model(twoHeaders(), nullptr);
    QVERIFY(!model.putRowsBack());
    model.removeAllRows();
    QVERIFY(!model.putRowsBack());
    model.appendRows(PackageListModel::createItems(rowsOf("a|1")));
    QVERIFY(!model.putRowsBack());
    model.removeAllRows();
    model.appendRows({});
    QVERIFY(!model.putRowsBack());
    QCOMPARE(textOf(model), QString());
}

void tst_PackageListModel::putsNoChangedRowsBack_data()
{
    QTest::addColumn<Change>("change");
    const auto newRow = [](const char *name, Change change) { QTest::newRow(name) << change; };
    newRow("a text", [](PackageListModel &model) { model.item(1, 1)->setText(QStringLiteral("x")); });
    newRow("a tool tip", [](PackageListModel &model) { model.item(0)->setToolTip(QStringLiteral("x")); });
    newRow("an item", [](PackageListModel &model) { model.setItem(1, 1, new QStandardItem); });
    newRow("a further row", [](PackageListModel &model) { model.appendRow(new QStandardItem); });
    newRow("a row less", [](PackageListModel &model) { model.removeRow(1); });
    newRow("a further column", [](PackageListModel &model) { model.insertColumn(1); });
    newRow("a column less", [](PackageListModel &model) { model.removeColumn(1); });
    newRow("order", [](PackageListModel &model) { model.sort(0, Qt::DescendingOrder); });
    newRow("all", [](PackageListModel &model) { model.clear(); });
    newRow("a row below another",
           [](PackageListModel &model) { model.item(0)->appendRow(new QStandardItem); });
    newRow("a text, and more rows", [](PackageListModel &model) {
        model.item(1, 1)->setText(QStringLiteral("x"));
        model.appendRows(PackageListModel::createItems(rowsOf("c|3")));
    });
    newRow("all, while there are none", [](PackageListModel &model) {
        model.removeAllRows();
        model.clear();
    });
    newRow("a row while there are none", [](PackageListModel &model) {
        model.removeAllRows();
        model.appendRow(new QStandardItem);
    });
}

void tst_PackageListModel::putsNoChangedRowsBack()
{
    QFETCH(Change, change);
    PackageListModel model(twoHeaders(), nullptr);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1/b|2")));
    change(model);
    model.removeAllRows();
    QCOMPARE(model.rowCount(), 0);
    QVERIFY(!model.putRowsBack());
    model.appendRows(PackageListModel::createItems(rowsOf("a|1/b|2")));
    QVERIFY(textOf(model).startsWith(QLatin1String("a|1")));
    QCOMPARE(model.rowCount(), 2);
    model.removeAllRows();
    QVERIFY(model.putRowsBack());
    QCOMPARE(model.rowCount(), 2);
}

void tst_PackageListModel::itemsKnowTheirTextAndPlace()
{
    PackageListModel model(twoHeaders(), nullptr);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1/b|2")));
    const QStandardItem *item = model.item(1, 1);
    QCOMPARE(item->text(), QStringLiteral("2"));
    QCOMPARE(item->data(Qt::EditRole).toString(), QStringLiteral("2"));
    QVERIFY(!item->data(Qt::ToolTipRole).isValid());
    QCOMPARE(item->model(), &model);
    QCOMPARE(item->index(), model.index(1, 1));
}

void tst_PackageListModel::itemsTakeANewText()
{
    PackageListModel model(twoHeaders(), nullptr);
    model.appendRows(PackageListModel::createItems(rowsOf("a|1/b|2")));
    const QSignalSpy changed(&model, &PackageListModel::dataChanged);
    QVERIFY(model.setData(model.index(1, 1), QStringLiteral("3")));
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.constFirst().constFirst().toModelIndex(), model.index(1, 1));
    QCOMPARE(model.index(1, 1).data().toString(), QStringLiteral("3"));
    QVERIFY(model.setData(model.index(1, 1), QStringLiteral("tip"), Qt::ToolTipRole));
    QCOMPARE(model.index(1, 1).data(Qt::ToolTipRole).toString(), QStringLiteral("tip"));
    QCOMPARE(model.index(1, 1).data().toString(), QStringLiteral("3"));
}

QTEST_GUILESS_MAIN(tst_PackageListModel)
#include "tst_packagelistmodel.moc"
