#pragma once

/// What the device knows about the person who is logged in.
class UserInfo {
public:
    /// True for root and for a member of one of the administrator groups sudo, wheel and admin.
    /// Asked of the account database (passwd and group) at every call; false when the user is not in it.
    static bool isAdmin();
};
