#pragma once

#include <QByteArray>

/// The claim of one process to be the only one of its user that runs a program. The kernel drops the
/// claim when the process ends, however it ends, and other users can neither see nor hold it.
///
/// The claim is a lock on a file in the user's own run-time directory ($XDG_RUNTIME_DIR, else
/// /run/user/UID). Where there is none that belongs to the user alone, it is an abstract socket, whose
/// holder is asked for by its kernel-attested user id, so that nothing is written anywhere.
class InstanceLock {
public:
    explicit InstanceLock(const QByteArray &program);
    ~InstanceLock();
    Q_DISABLE_COPY(InstanceLock)

    /// True when another process of this user holds the claim. False when this process got it, and
    /// also when neither kind of claim can be made here: then nothing stops a second copy.
    bool isHeldElsewhere() const { return m_heldElsewhere; }

private:
    bool claimLockFile(const QByteArray &program);
    void claimSocket(const QByteArray &program);

    int m_descriptor = -1;
    bool m_heldElsewhere = false;
};
