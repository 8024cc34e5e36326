#include "framework/instancelock.h"

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

    operator int() const { return m_value; }
    int release() { return std::exchange(m_value, -1); }

private:
    int m_value;
};

bool belongsToUserAlone(int descriptor, mode_t type)
{
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && (status.st_mode & S_IFMT) == type && status.st_uid == geteuid()
        && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

int openDirectory(const QByteArray &path)
{
    Descriptor directory(open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    return directory >= 0 && belongsToUserAlone(directory, S_IFDIR) ? directory.release() : -1;
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

/// The user who listens at the address; none when nobody answers.
std::optional<uid_t> listenerAt(const SocketAddress &address)
{
    for (int attempt = 0; attempt < callAttempts; ++attempt) {
        const Descriptor caller(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        if (connect(caller, address.get(), address.length) == 0) {
            ucred peer = {};
            socklen_t length = sizeof(peer);
            if (getsockopt(caller, SOL_SOCKET, SO_PEERCRED, &peer, &length) == 0)
                return peer.uid;
            return {};
        }
        if (errno != ECONNREFUSED)
            return {};
        usleep(5000);
    }
    return {};
}

} // namespace

InstanceLock::InstanceLock(const QByteArray &program)
{
    if (!claimLockFile(program))
        claimSocket(program);
}

InstanceLock::~InstanceLock()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

/// Returns false when there is no safe place for a lock file, so that the other way has to be tried.
bool InstanceLock::claimLockFile(const QByteArray &program)
{
    const Descriptor directory(openRuntimeDirectory());
    if (directory < 0)
        return false;
    const QByteArray name = program + ".lock";
    Descriptor file(
        openat(directory, name.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
    if (file < 0 || !belongsToUserAlone(file, S_IFREG))
        return false;
    if (flock(file, LOCK_EX | LOCK_NB) == 0) {
        m_descriptor = file.release();
        return true;
    }
    m_heldElsewhere = errno == EWOULDBLOCK;
    return m_heldElsewhere;
}

void InstanceLock::claimSocket(const QByteArray &program)
{
    for (int number = 0; number < socketNames; ++number) {
        Descriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        const SocketAddress address = abstractAddress(program, number);
        if (bind(listener, address.get(), address.length) == 0) {
            // Callers learn who listens from the connection itself, so it is never accepted.
            if (listen(listener, SOMAXCONN) == 0)
                m_descriptor = listener.release();
            return;
        }
        if (errno != EADDRINUSE)
            return;
        if (listenerAt(address) == geteuid()) {
            m_heldElsewhere = true;
            return;
        }
    }
}
