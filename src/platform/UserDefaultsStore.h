#pragma once

#include "platform/UserDefaults.h"

#include <memory>
#include <string>

namespace tallowbay {

// Opens domains by name. Thread: main queue. The store outlives what it opened.
class UserDefaultsStore {
public:
    virtual ~UserDefaultsStore() = default;

    // The program's own domain.
    virtual UserDefaults& standard() = 0;

    // A domain of the system or of another program; need not exist.
    virtual std::unique_ptr<UserDefaults> open(const std::string& domain) = 0;
};

} // namespace tallowbay
