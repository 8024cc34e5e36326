#include "framework/userinfo.h"

#include <algorithm>
#include <vector>

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace {

std::vector<gid_t> groupsOf(const passwd &account)
{
    int count = 64;
    std::vector<gid_t> groups(static_cast<size_t>(count));
    while (getgrouplist(account.pw_name, account.pw_gid, groups.data(), &count) < 0) {
        groups.resize(groups.size() * 2);
        count = static_cast<int>(groups.size());
    }
    groups.resize(static_cast<size_t>(count));
    return groups;
}

} // namespace

bool UserInfo::isAdmin()
{
    if (geteuid() == 0)
        return true;
    const passwd *account = getpwuid(getuid());
    if (!account)
        return false;
    const std::vector<gid_t> groups = groupsOf(*account);
    const auto isMemberOf = [&groups](const char *name) {
        const group *entry = getgrnam(name);
        return entry && std::find(groups.begin(), groups.end(), entry->gr_gid) != groups.end();
    };
    return isMemberOf("sudo") || isMemberOf("wheel") || isMemberOf("admin");
}
