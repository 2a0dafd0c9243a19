#pragma once

#include "desktop/support/ChildProcess.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

class QDBusArgument;
class QDBusConnection;

namespace tallowbay::test {

// A control as a screen reader knows it. Of its states, those that tests need, under AT-SPI's
// names: "checked", "focusable", "focused", "selectable", "selected", "showing".
struct AccessibleNode {
    std::string name;
    std::string description;
    std::string role; // such as "push button"
    std::set<std::string> states;
    std::vector<AccessibleNode> children;

    // All nodes from here on down, parents first.
    std::vector<const AccessibleNode*> all() const;
    const AccessibleNode* find(const std::string& role, const std::string& name) const;
};

// The bus of assistive programs of a session, with what programs that run there tell of themselves.
// Throws std::runtime_error if it does not start.
class AssistiveBus {
public:
    // The session's bus is in its environment, and so is the folder for the new bus's socket.
    explicit AssistiveBus(const Environment& session);
    ~AssistiveBus();

    // The windows of the program of that name; empty if it tells nothing.
    std::optional<AccessibleNode> program(const std::string& name) const;

private:
    struct Place {
        std::string service;
        std::string path;
    };

    std::vector<Place> childrenOf(const Place&) const;
    AccessibleNode read(const Place&, int depth) const;
    std::string property(const Place&, const char* name) const;

    std::unique_ptr<ChildProcess> launcher;
    std::unique_ptr<QDBusConnection> bus;
};

} // namespace tallowbay::test
