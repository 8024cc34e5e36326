#pragma once

#include <QByteArray>
#include <QObject>

/// The claim of one process to be the only one of its user that runs a program. The kernel drops the
/// claim when the process ends, however it ends, and no other user can hold it or keep it from being held.
///
/// It is a lock on a file in the user's own run-time directory ($XDG_RUNTIME_DIR, else /run/user/UID), as far
/// as there is one that nobody else can write to, and always an abstract socket, which leaves nothing in the
/// file system. Who holds a socket is asked of the kernel; the names that other users hold are passed over.
class InstanceLock : public QObject {
    Q_OBJECT

public:
    explicit InstanceLock(const QByteArray &program);
    ~InstanceLock() override;
    Q_DISABLE_COPY(InstanceLock)

    /// Whether a process of this user holds the claim, asked of its socket and without making one.
    static bool isHeld(const QByteArray &program);

    /// True when another process of this user holds the claim. False when this process got it, and
    /// also when no claim can be made here: then nothing stops a second copy.
    bool isHeldElsewhere() const { return m_heldElsewhere; }

private Q_SLOTS:
    void answerCaller() const;

private:
    bool claimLockFile(const QByteArray &program);
    bool claimSocket(const QByteArray &program);

    int m_lockFile = -1;
    int m_listener = -1;
    bool m_heldElsewhere = false;
};
