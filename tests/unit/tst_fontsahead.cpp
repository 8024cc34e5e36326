#include "framework/fontsahead.h"
#include "tests/unit/fontreading.h"

#include <QTest>

#include <clocale>

#include <pthread.h>

using namespace FontReading;

class tst_FontsAhead : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void areReadOnAnotherThread();
    void areReadWhenTheObjectIsGone();
    void areReadInTheLocaleOfTheEnvironment();
    void areLeftWhereQtChangesTheEnvironment_data();
    void areLeftWhereQtChangesTheEnvironment();
    void areLeftWithoutAThread();
};

void tst_FontsAhead::init()
{
    reset();
    qunsetenv("DESKTOP_STARTUP_ID");
}

void tst_FontsAhead::areReadOnAnotherThread()
{
    mayEnd = false;
    const FontsAhead fonts;
    // The constructor has returned, with the reading still going on.
    QTRY_COMPARE(begun, 1);
    QCOMPARE(ended, 0);
    QVERIFY(FontReading::thread != std::this_thread::get_id());
    mayEnd = true;
    QTRY_COMPARE(ended, 1);
    QCOMPARE(begun, 1);
}

void tst_FontsAhead::areReadWhenTheObjectIsGone()
{
    mayEnd = false;
    std::thread other;
    {
        const FontsAhead fonts;
        other = endSoon();
    }
    const int endedThen = ended;
    other.join();
    QCOMPARE(endedThen, 1);
}

void tst_FontsAhead::areReadInTheLocaleOfTheEnvironment()
{
    qputenv("LC_ALL", "C.UTF-8");
    QVERIFY(std::setlocale(LC_ALL, "C"));
    reset();
    {
        const FontsAhead fonts;
    }
    QCOMPARE(localesSet, 1);
    QCOMPARE(std::setlocale(LC_ALL, nullptr), "C.UTF-8");
}

void tst_FontsAhead::areLeftWhereQtChangesTheEnvironment_data()
{
    QTest::addColumn<QByteArray>("startupId");

    QTest::newRow("set") << QByteArray("menu_TIME1");
    QTest::newRow("set to nothing") << QByteArray("");
}

void tst_FontsAhead::areLeftWhereQtChangesTheEnvironment()
{
    QFETCH(QByteArray, startupId);
    qputenv("DESKTOP_STARTUP_ID", startupId);
    {
        const FontsAhead fonts;
    }
    QCOMPARE(begun, 0);
    QVERIFY(qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"));
    QCOMPARE(qgetenv("DESKTOP_STARTUP_ID"), startupId);
}

void tst_FontsAhead::areLeftWithoutAThread()
{
    // No address space holds the stack of a thread then.
    pthread_attr_t usual;
    pthread_attr_t huge;
    QCOMPARE(pthread_getattr_default_np(&usual), 0);
    QCOMPARE(pthread_attr_init(&huge), 0);
    QCOMPARE(pthread_attr_setstacksize(&huge, size_t{1} << 62U), 0);
    QCOMPARE(pthread_setattr_default_np(&huge), 0);
    {
        const FontsAhead fonts;
    }
    QCOMPARE(pthread_setattr_default_np(&usual), 0);
    pthread_attr_destroy(&huge);
    pthread_attr_destroy(&usual);
    QCOMPARE(begun, 0);
}

QTEST_MAIN(tst_FontsAhead)
#include "tst_fontsahead.moc"
