#include "pages/software/packagelistmodel.h"
#include "pages/software/packagelistview.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTest>

#include <memory>

namespace {

/// Counts how often a cell is measured.
class CountingDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        ++measured;
        return QStyledItemDelegate::sizeHint(option, index);
    }

    mutable int measured = 0;
};

/// What the package query prints.
QByteArray manyRows(int count)
{
    QByteArray lines;
    for (int row = 0; row < count; ++row)
        lines += QStringLiteral("package-%1\t1.%1\n").arg(row).toLatin1();
    return lines;
}

} // namespace

class tst_PackageListView : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void isFlatAndReadOnly();
    void measuresAColumnOnceForAContent();
    void measuresAnotherContent();
    void measuresInAnotherFont();
    void fitsTheWidestOfAllRows();
    void findsTheWidestTextNotTheLongest();
    void measuresFewOfManyRows();
    void scrollsToTheStart();
    void measuresNothingWhileItIsHidden();
    void fitsWhatCameWhileItWasHidden();
    void hasTheHeaderOfATree();

private:
    void fill(const QByteArray &rows);
    void arrange();

    QByteArray content; ///< which the model shows
    std::unique_ptr<PackageListModel> model;
    std::unique_ptr<PackageListView> view;
    CountingDelegate *delegate = nullptr;
};

void tst_PackageListView::init()
{
    model = std::make_unique<PackageListModel>(QStringList{QStringLiteral("Name"), QStringLiteral("Version")},
                                               nullptr);
    view = std::make_unique<PackageListView>();
    delegate = new CountingDelegate(view.get());
    view->setItemDelegate(delegate);
    view->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    view->setModel(model.get());
    view->resize(300, 200);
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
}

void tst_PackageListView::cleanup()
{
    view.reset();
    model.reset();
}

void tst_PackageListView::fill(const QByteArray &rows)
{
    model->removeAllRows();
    content = rows;
    model->appendRows(PackageListModel::createItems(packageRows(content)));
    arrange();
}

/// Lets the view do what it has put off.
void tst_PackageListView::arrange()
{
    QTest::qWait(0);
    QCoreApplication::processEvents();
    view->header()->sectionSize(0);
}

void tst_PackageListView::isFlatAndReadOnly()
{
    QVERIFY(!view->rootIsDecorated());
    QVERIFY(view->alternatingRowColors());
    QCOMPARE(view->editTriggers(), QAbstractItemView::NoEditTriggers);
}

void tst_PackageListView::measuresAColumnOnceForAContent()
{
    fill(manyRows(500));
    // The last column takes the space that is left.
    QVERIFY2(delegate->measured > 0, qPrintable(QString::number(delegate->measured)));
    const int width = view->columnWidth(0);
    delegate->measured = 0;
    fill(manyRows(500));
    // Only the rows that are seen, while they are painted.
    QVERIFY2(delegate->measured < 100, qPrintable(QString::number(delegate->measured)));
    QCOMPARE(view->columnWidth(0), width);
}

void tst_PackageListView::measuresAnotherContent()
{
    fill(manyRows(5));
    const int width = view->columnWidth(0);
    view->forgetColumnWidths();
    fill(QByteArray(100, 'w'));
    QVERIFY(view->columnWidth(0) > 2 * width);
    view->forgetColumnWidths();
    fill(manyRows(5));
    QCOMPARE(view->columnWidth(0), width);
}

void tst_PackageListView::measuresInAnotherFont()
{
    fill(manyRows(5));
    const int width = view->columnWidth(0);
    QFont font = view->font();
    font.setPointSizeF(font.pointSizeF() * 3);
    view->setFont(font);
    arrange();
    QVERIFY(view->columnWidth(0) > 2 * width);
}

void tst_PackageListView::fitsTheWidestOfAllRows()
{
    const QByteArray longName(60, 'w');
    fill(manyRows(2000) + longName + "\t1\n" + manyRows(1000));
    QVERIFY(view->columnWidth(0) >= view->fontMetrics().horizontalAdvance(QString::fromLatin1(longName)));
}

void tst_PackageListView::findsTheWidestTextNotTheLongest()
{
    const QByteArray longText(60, 'i');
    const QByteArray wideText(40, 'W');
    const auto width = [this](const QByteArray &text) {
        return view->fontMetrics().horizontalAdvance(QString::fromLatin1(text));
    };
    QVERIFY(width(wideText) > width(longText));
    fill((longText + '\n').repeated(100) + wideText);
    QVERIFY(view->columnWidth(0) >= width(wideText));
}

void tst_PackageListView::measuresFewOfManyRows()
{
    fill(manyRows(3000));
    // The cells that are seen are measured once more when they are painted.
    QVERIFY2(delegate->measured < 300, qPrintable(QString::number(delegate->measured)));
}

void tst_PackageListView::scrollsToTheStart()
{
    fill(QByteArray(100, 'w') + "\t1\n");
    fill(manyRows(500));
    view->horizontalScrollBar()->setValue(50);
    view->verticalScrollBar()->setValue(100);
    QCOMPARE(view->horizontalScrollBar()->value(), 50);
    QCOMPARE(view->verticalScrollBar()->value(), 100);
    view->scrollToStart();
    QCOMPARE(view->horizontalScrollBar()->value(), 0);
    QCOMPARE(view->verticalScrollBar()->value(), 0);
    QCOMPARE(view->indexAt(QPoint(1, 1)), model->index(0, 0));
}

void tst_PackageListView::measuresNothingWhileItIsHidden()
{
    view->hide();
    delegate->measured = 0;
    fill(manyRows(500));
    view->setFont(QFont(QStringLiteral("DejaVu Sans"), 30));
    arrange();
    QCOMPARE(delegate->measured, 0);
}

void tst_PackageListView::fitsWhatCameWhileItWasHidden()
{
    fill(manyRows(5));
    const int width = view->columnWidth(0);
    view->hide();
    view->forgetColumnWidths();
    fill(QByteArray(100, 'w') + "\t1\n" + manyRows(500));
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    QVERIFY(view->columnWidth(0) > 2 * width);
    QVERIFY(view->verticalScrollBar()->isVisible());
    QVERIFY(view->horizontalScrollBar()->isVisible());
    QCOMPARE(view->indexAt(QPoint(1, 1)), model->index(0, 0));

    view->hide();
    view->forgetColumnWidths();
    fill(manyRows(5));
    view->show();
    QVERIFY(QTest::qWaitForWindowExposed(view.get()));
    QCOMPARE(view->columnWidth(0), width);
    QVERIFY(!view->verticalScrollBar()->isVisible());
    QVERIFY(!view->horizontalScrollBar()->isVisible());
}

void tst_PackageListView::hasTheHeaderOfATree()
{
    const QTreeView plain;
    const QHeaderView *expected = plain.header();
    const QHeaderView *header = view->header();
    QCOMPARE(header->orientation(), expected->orientation());
    QCOMPARE(header->sectionsMovable(), expected->sectionsMovable());
    QCOMPARE(header->sectionsClickable(), expected->sectionsClickable());
    QCOMPARE(header->highlightSections(), expected->highlightSections());
    QCOMPARE(header->stretchLastSection(), expected->stretchLastSection());
    QCOMPARE(header->defaultAlignment(), expected->defaultAlignment());
    QCOMPARE(header->focusPolicy(), expected->focusPolicy());

    // Its captions are measured, too.
    fill("a\tb\n");
    QFont bold = header->font();
    bold.setBold(true);
    QVERIFY(view->columnWidth(0) >= QFontMetrics(bold).horizontalAdvance(QStringLiteral("Name")));
    QVERIFY(view->columnWidth(0) > view->sizeHintForIndex(model->index(0, 0)).width());
}

QTEST_MAIN(tst_PackageListView)
#include "tst_packagelistview.moc"
