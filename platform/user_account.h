#pragma once
// The user who runs Kavor, as the system's user and group databases know them.

#include <string>
#include <vector>

namespace kavor {

// The login name of the effective user; empty when the user database has no entry for it.
std::string loginName();

// The numbers, in decimal, of the groups whose members may administer the machine: 80 on macOS;
// elsewhere root's group 0 and whichever of the groups sudo, wheel and admin the system has.
std::vector<std::string> administratorGroupNumbers();

}  // namespace kavor
