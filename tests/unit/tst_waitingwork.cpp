#include "app/waitingwork.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QStringList>
#include <QTest>

namespace {

void start(QProcess &process, const QString &script)
{
    process.start(QStringLiteral("sh"), {QStringLiteral("-c"), script});
}

} // namespace

class tst_WaitingWork : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void doesOnePieceAtATimeInOrder();
    void doesAllPieces();
    void doesWhatIsLeftInTheEnd();
    void doesAPieceThatAPieceAdds();
    void hasNothingToDoWithoutAnObject();
    void leavesThePiecesDuringAPause();
    void addsAPieceToTheWorkThatThereIs();
    void doesAPieceAtOnceWhenThereIsNoWork();
    void isDoneWhileAProcessWorks();
    void waitsForTheProcessAfterTheLastPiece();
    void keepsTheLimitOfTheWait();
    void countsThePiecesAsPartOfTheWait();
    void tellsThatAProcessWasNotStarted_data();
    void tellsThatAProcessWasNotStarted();
    void noticesAnEndDuringAPiece();
    void waitsWithoutALimit();
};

void tst_WaitingWork::doesOnePieceAtATimeInOrder()
{
    QStringList done;
    WaitingWork work;
    work.add([&] { done.append(QStringLiteral("first")); });
    work.add([&] { done.append(QStringLiteral("second")); });
    QVERIFY(done.isEmpty());
    WaitingWork::doNext();
    QCOMPARE(done, QStringList(QStringLiteral("first")));
    QVERIFY(WaitingWork::isLeft());
    WaitingWork::doNext();
    QCOMPARE(done, QStringList({QStringLiteral("first"), QStringLiteral("second")}));
    QVERIFY(!WaitingWork::isLeft());
    WaitingWork::doNext();
    QCOMPARE(done.size(), 2);
}

void tst_WaitingWork::doesAllPieces()
{
    int done = 0;
    WaitingWork work;
    work.add([&] { ++done; });
    work.add([&] { ++done; });
    {
        const WaitingWork::Pause pause;
        WaitingWork::doAll();
        QCOMPARE(done, 0);
    }
    WaitingWork::doAll();
    QCOMPARE(done, 2);
    QVERIFY(!WaitingWork::isLeft());
}

void tst_WaitingWork::doesWhatIsLeftInTheEnd()
{
    QStringList done;
    {
        WaitingWork work;
        work.add([&] { done.append(QStringLiteral("first")); });
        work.add([&] { done.append(QStringLiteral("second")); });
    }
    QCOMPARE(done, QStringList({QStringLiteral("first"), QStringLiteral("second")}));
}

void tst_WaitingWork::doesAPieceThatAPieceAdds()
{
    QStringList done;
    {
        WaitingWork work;
        work.add([&] {
            done.append(QStringLiteral("first"));
            work.add([&] { done.append(QStringLiteral("added")); });
        });
    }
    QCOMPARE(done, QStringList({QStringLiteral("first"), QStringLiteral("added")}));
}

void tst_WaitingWork::hasNothingToDoWithoutAnObject()
{
    QVERIFY(!WaitingWork::isLeft());
    WaitingWork::doNext();
    WaitingWork::doAll();
    {
        const WaitingWork work;
        QVERIFY(!WaitingWork::isLeft());
    }
    QVERIFY(!WaitingWork::isLeft());
    WaitingWork::doNext();
}

void tst_WaitingWork::leavesThePiecesDuringAPause()
{
    bool isDone = false;
    WaitingWork work;
    work.add([&] { isDone = true; });
    {
        const WaitingWork::Pause pause;
        QVERIFY(!WaitingWork::isLeft());
        WaitingWork::doNext();
        QProcess process;
        start(process, QStringLiteral("sleep 0.1"));
        QVERIFY(waitForFinished(process, 30000));
        QVERIFY(!isDone);
    }
    QVERIFY(WaitingWork::isLeft());
    WaitingWork::doNext();
    QVERIFY(isDone);
}

void tst_WaitingWork::addsAPieceToTheWorkThatThereIs()
{
    QStringList done;
    {
        WaitingWork work;
        work.add([&] { done.append(QStringLiteral("first")); });
        WaitingWork::addOrDo([&] { done.append(QStringLiteral("second")); });
        QVERIFY(done.isEmpty());
    }
    QCOMPARE(done, QStringList({QStringLiteral("first"), QStringLiteral("second")}));
}

void tst_WaitingWork::doesAPieceAtOnceWhenThereIsNoWork()
{
    bool isDone = false;
    WaitingWork::addOrDo([&] { isDone = true; });
    QVERIFY(isDone);
}

void tst_WaitingWork::isDoneWhileAProcessWorks()
{
    QProcess process;
    QList<QProcess::ProcessState> states;
    WaitingWork work;
    for (int piece = 0; piece < 3; ++piece)
        work.add([&] { states.append(process.state()); });
    start(process, QStringLiteral("sleep 0.3; echo output; exit 4"));
    QVERIFY(waitForFinished(process, 30000));
    QCOMPARE(states.size(), 3);
    QVERIFY(!states.contains(QProcess::NotRunning));
    QCOMPARE(process.exitCode(), 4);
    QCOMPARE(process.readAllStandardOutput(), QByteArray("output\n"));
}

void tst_WaitingWork::waitsForTheProcessAfterTheLastPiece()
{
    QProcess process;
    start(process, QStringLiteral("sleep 0.3"));
    QElapsedTimer time;
    time.start();
    QVERIFY(waitForFinished(process, 30000));
    QVERIFY(time.elapsed() >= 250);
    QCOMPARE(process.state(), QProcess::NotRunning);
}

void tst_WaitingWork::keepsTheLimitOfTheWait()
{
    QProcess process;
    start(process, QStringLiteral("exec sleep 30"));
    QElapsedTimer time;
    time.start();
    QVERIFY(!waitForFinished(process, 300));
    QVERIFY(time.elapsed() >= 250);
    QVERIFY(time.elapsed() < 10000);
    QVERIFY(process.state() != QProcess::NotRunning);
    process.kill();
    process.waitForFinished();
}

void tst_WaitingWork::countsThePiecesAsPartOfTheWait()
{
    QProcess process;
    WaitingWork work;
    work.add([] { QTest::qSleep(1500); });
    start(process, QStringLiteral("exec sleep 30"));
    QElapsedTimer time;
    time.start();
    QVERIFY(!waitForFinished(process, 2000));
    QVERIFY(time.elapsed() < 3000);
    process.kill();
    process.waitForFinished();
}

void tst_WaitingWork::tellsThatAProcessWasNotStarted_data()
{
    QTest::addColumn<int>("pieces");
    QTest::newRow("nothing to do") << 0;
    QTest::newRow("waiting work") << 20;
}

void tst_WaitingWork::tellsThatAProcessWasNotStarted()
{
    QFETCH(int, pieces);
    WaitingWork work;
    for (int piece = 0; piece < pieces; ++piece)
        work.add([] { QTest::qSleep(20); });
    QProcess process;
    process.start(QStringLiteral("/no/such/program"), QStringList());
    QVERIFY(!waitForFinished(process, 30000));
    QCOMPARE(process.error(), QProcess::FailedToStart);
}

void tst_WaitingWork::noticesAnEndDuringAPiece()
{
    QProcess process;
    WaitingWork work;
    work.add([] { QTest::qSleep(500); });
    start(process, QStringLiteral("sleep 0.1; echo output"));
    QVERIFY(waitForFinished(process, 200));
    QCOMPARE(process.readAllStandardOutput(), QByteArray("output\n"));
}

void tst_WaitingWork::waitsWithoutALimit()
{
    QProcess process;
    start(process, QStringLiteral("sleep 0.3"));
    QVERIFY(waitForFinished(process, -1));
}

QTEST_GUILESS_MAIN(tst_WaitingWork)
#include "tst_waitingwork.moc"
