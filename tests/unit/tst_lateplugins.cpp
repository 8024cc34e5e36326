#include "app/lateplugins.h"

#include <QCoreApplication>
#include <QTest>
#include <QWidget>

namespace {

/// Notes where plugins are looked for while it is painted.
class Painted : public QWidget {
public:
    QList<QStringList> paths;

protected:
    void paintEvent(QPaintEvent * /*event*/) override { paths.append(QCoreApplication::libraryPaths()); }
};

} // namespace

class tst_LatePlugins : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void areFoundAfterTheFirstPainting();
    void areFoundWhenNothingIsPainted();
};

void tst_LatePlugins::areFoundAfterTheFirstPainting()
{
    const QStringList paths = QCoreApplication::libraryPaths();
    QVERIFY(!paths.isEmpty());
    const LatePlugins latePlugins;
    QCOMPARE(QCoreApplication::libraryPaths(), QStringList());

    Painted window;
    auto *child = new Painted;
    child->setParent(&window);
    window.show();
    QTRY_COMPARE(QCoreApplication::libraryPaths(), paths);
    // The child is painted after its parent.
    QCOMPARE(window.paths.value(0, paths), QStringList());
    QCOMPARE(child->paths.value(0, paths), QStringList());

    // Later paintings change nothing.
    const QStringList others{QStringLiteral("/nonexistent")};
    QCoreApplication::setLibraryPaths(others);
    const auto times = window.paths.size();
    window.update();
    QTRY_VERIFY(window.paths.size() > times);
    QCoreApplication::processEvents();
    QCOMPARE(QCoreApplication::libraryPaths(), others);
    QCoreApplication::setLibraryPaths(paths);
}

void tst_LatePlugins::areFoundWhenNothingIsPainted()
{
    const QStringList paths = QCoreApplication::libraryPaths();
    {
        const LatePlugins latePlugins;
        QCOMPARE(QCoreApplication::libraryPaths(), QStringList());
    }
    QCOMPARE(QCoreApplication::libraryPaths(), paths);
}

QTEST_MAIN(tst_LatePlugins)
#include "tst_lateplugins.moc"
