#include "framework/instancelock.h"

#include <QSocketNotifier>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// Other users may squat on a socket name; the claim then moves on to the next of these.
constexpr int socketNames = 8;
/// How often, every 5 ms, a socket that is bound but does not listen yet is asked again.
constexpr int callAttempts = 40;

class Descriptor {
public:
    explicit Descriptor(int value)
        : m_value(value)
    {
    }
    ~Descriptor()
    {
        if (m_value >= 0)
            close(m_value);
    }
    Q_DISABLE_COPY(Descriptor)

    int get() const { return m_value; }
    int release() { return std::exchange(m_value, -1); }

private:
    int m_value;
};

/// Whether the open file is of the type, the user's own, and nothing of the forbidden mode is allowed.
bool belongsToUser(int descriptor, mode_t type, mode_t forbidden)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && (status.st_mode & S_IFMT) == type && status.st_uid == geteuid()
        && (status.st_mode & forbidden) == 0;
}

int openDirectory(const QByteArray &path)
{
    Descriptor directory(open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    return belongsToUser(directory.get(), S_IFDIR, S_IWGRP | S_IWOTH) ? directory.release() : -1;
}

int openRuntimeDirectory()
{
    const QByteArray named = qgetenv("XDG_RUNTIME_DIR");
    if (named.startsWith('/')) {
        const int directory = openDirectory(named);
        if (directory >= 0)
            return directory;
    }
    return openDirectory("/run/user/" + QByteArray::number(geteuid()));
}

struct SocketAddress {
    sockaddr_un name = {};
    socklen_t length = 0;

    const sockaddr *get() const { return reinterpret_cast<const sockaddr *>(&name); }
};

/// The first byte of an abstract name is zero.
SocketAddress abstractAddress(const QByteArray &program, int number)
{
    const QByteArray text =
        '\0' + program.left(64) + '-' + QByteArray::number(geteuid()) + '-' + QByteArray::number(number);
    SocketAddress address;
    address.name.sun_family = AF_UNIX;
    std::memcpy(address.name.sun_path, text.constData(), static_cast<size_t>(text.size()));
    address.length =
        static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + static_cast<size_t>(text.size()));
    return address;
}

/// The user who listens at the address; none when nobody answers to any of the attempts.
std::optional<uid_t> listenerAt(const SocketAddress &address, int attempts)
{
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const Descriptor caller(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        if (connect(caller.get(), address.get(), address.length) == 0) {
            ucred peer = {};
            socklen_t length = sizeof(peer);
            if (getsockopt(caller.get(), SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0)
                return peer.uid;
            return {};
        }
        if (errno != ECONNREFUSED)
            return {};
        if (attempt + 1 < attempts)
            usleep(5000);
    }
    return {};
}

} // namespace

InstanceLock::InstanceLock(const QByteArray &program)
    : m_heldElsewhere(!claimLockFile(program) || !claimSocket(program))
{
}

InstanceLock::~InstanceLock()
{
    for (const int descriptor : {m_lockFile, m_listener}) {
        if (descriptor >= 0)
            close(descriptor);
    }
}

bool InstanceLock::isHeld(const QByteArray &program)
{
    for (int number = 0; number < socketNames; ++number) {
        if (listenerAt(abstractAddress(program, number), 1) == geteuid())
            return true;
    }
    return false;
}

/// False when another process has locked the file; true without a safe place for one.
bool InstanceLock::claimLockFile(const QByteArray &program)
{
    const Descriptor directory(openRuntimeDirectory());
    if (directory.get() < 0)
        return true;
    const QByteArray name = program + ".lock";
    const int flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    Descriptor file(openat(directory.get(), name.constData(), flags, 0600));
    if (!belongsToUser(file.get(), S_IFREG, S_IRWXG | S_IRWXO))
        return true;
    if (flock(file.get(), LOCK_EX | LOCK_NB) != 0)
        return errno != EWOULDBLOCK;
    m_lockFile = file.release();
    return true;
}

/// False when another process of this user has one of the names.
bool InstanceLock::claimSocket(const QByteArray &program)
{
    // All names are asked first: another user may have given up one since this user's process took a later
    // one.
    if (isHeld(program))
        return false;
    for (int number = 0; number < socketNames; ++number) {
        const SocketAddress address = abstractAddress(program, number);
        Descriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        if (bind(listener.get(), address.get(), address.length) == 0
            && listen(listener.get(), SOMAXCONN) == 0) {
            m_listener = listener.release();
            auto *callers = new QSocketNotifier(m_listener, QSocketNotifier::Read, this);
            // By name, because Qt 5 and Qt 6 declare this signal differently.
            connect(callers, SIGNAL(activated(int)), this, SLOT(answerCaller()));
            return true;
        }
        // Whoever has just bound the name is about to listen.
        if (listenerAt(address, callAttempts) == geteuid())
            return false;
    }
    return true;
}

/// Callers learn who listens from the connection itself; it is taken only to keep the queue short.
void InstanceLock::answerCaller() const
{
    const Descriptor caller(accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC));
}
