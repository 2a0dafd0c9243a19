#pragma once

#include <cstdlib>
#include <stdexcept>

#include <unistd.h>

namespace tallowbay::test {

// For tests of permissions, which mean nothing to the superuser.
class AsOrdinaryUser {
public:
    AsOrdinaryUser()
    {
        if (::geteuid() == 0 && ::seteuid(65534) != 0)
            throw std::runtime_error("cannot become an ordinary user");
    }
    ~AsOrdinaryUser()
    {
        if (::geteuid() != ::getuid() && ::seteuid(::getuid()) != 0)
            std::abort();
    }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;
};

} // namespace tallowbay::test
