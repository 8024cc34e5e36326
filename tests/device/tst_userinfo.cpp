#include "framework/userinfo.h"
#include "tests/device/device.h"

#include <QFile>
#include <QTest>

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uid_t operatorId = 4711;

/// Asks as the user; -1 where this process may not become another user.
int isAdminAs(uid_t user)
{
    const pid_t child = fork();
    if (child == 0) {
        if (setgroups(0, nullptr) != 0 || setgid(user) != 0 || setuid(user) != 0)
            _exit(2);
        _exit(UserInfo::isAdmin() ? 1 : 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WEXITSTATUS(status) == 2 ? -1 : WEXITSTATUS(status);
}

void addLine(const QString &path, const QByteArray &line)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    Device::write(path, file.readAll() + line);
    QVERIFY(QFile::setPermissions(
        path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther));
}

} // namespace

class tst_UserInfo : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Device::restore(); }
    void rootIsAdmin();
    void isAdminByGroup_data();
    void isAdminByGroup();
    void isAskedEachTime();
};

void tst_UserInfo::rootIsAdmin()
{
    QVERIFY(UserInfo::isAdmin());
}

void tst_UserInfo::isAdminByGroup_data()
{
    QTest::addColumn<QByteArray>("group");
    QTest::addColumn<int>("primaryGroup");
    QTest::addColumn<bool>("admin");

    QTest::newRow("plain user") << QByteArray("operator:x:4711:\n") << 4711 << false;
    QTest::newRow("sudo") << QByteArray("sudo:x:4800:other,operator\n") << 4711 << true;
    QTest::newRow("wheel") << QByteArray("wheel:x:4800:operator\n") << 4711 << true;
    QTest::newRow("admin") << QByteArray("admin:x:4800:operator\n") << 4711 << true;
    QTest::newRow("primary group") << QByteArray("wheel:x:4800:\n") << 4800 << true;
    QTest::newRow("another member") << QByteArray("wheel:x:4800:other\n") << 4711 << false;
    QTest::newRow("another group") << QByteArray("wheels:x:4800:operator\n") << 4711 << false;
    QTest::newRow("not in the account database") << QByteArray("wheel:x:4800:operator\n") << -1 << false;
}

void tst_UserInfo::isAdminByGroup()
{
    QFETCH(QByteArray, group);
    QFETCH(int, primaryGroup);
    QFETCH(bool, admin);
    // Replaced whole: the machine's own groups may be any.
    Device::write(QStringLiteral("/etc/group"), "root:x:0:\n" + group);
    QVERIFY(QFile::setPermissions(QStringLiteral("/etc/group"),
                                  QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    if (primaryGroup >= 0)
        addLine(QStringLiteral("/etc/passwd"),
                "operator:x:4711:" + QByteArray::number(primaryGroup) + ":Operator:/:/usr/bin/dash\n");
    const int answer = isAdminAs(operatorId);
    if (answer < 0)
        QSKIP("only root can become another user");
    QCOMPARE(answer == 1, admin);
}

void tst_UserInfo::isAskedEachTime()
{
    Device::write(QStringLiteral("/etc/group"), "root:x:0:\n");
    addLine(QStringLiteral("/etc/passwd"), "operator:x:4711:4711:Operator:/:/usr/bin/dash\n");
    const pid_t child = fork();
    if (child == 0) {
        // The real user decides who is asked for; with root's rights he would be an administrator anyway.
        if (setresuid(operatorId, operatorId, 0) != 0)
            _exit(2);
        const bool before = UserInfo::isAdmin();
        if (setresuid(operatorId, 0, 0) != 0)
            _exit(2);
        Device::write(QStringLiteral("/etc/group"), "root:x:0:\nwheel:x:4800:operator\n");
        if (setresuid(operatorId, operatorId, 0) != 0)
            _exit(2);
        _exit(!before && UserInfo::isAdmin() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WEXITSTATUS(status) == 2)
        QSKIP("only root can become another user");
    QCOMPARE(WEXITSTATUS(status), 0);
}

QTEST_GUILESS_MAIN(tst_UserInfo)
#include "tst_userinfo.moc"
