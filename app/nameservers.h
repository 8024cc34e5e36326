#pragma once

#include <QString>

/// The addresses of the DNS servers, in file order, separated by single blanks; empty without any.
/// The second word of every line of /etc/resolv.conf that contains "nameserver", comments included.
QString readNameServers();
