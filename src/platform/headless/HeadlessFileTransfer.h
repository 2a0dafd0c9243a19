#pragma once

#include "platform/Dispatch.h"
#include "platform/FileTransfer.h"

#include <deque>
#include <map>
#include <utility>

namespace tallowbay::headless {

// Keys that are made when the test says so, or at once.
class HeadlessFileTransfer final : public FileTransfer {
public:
    explicit HeadlessFileTransfer(Dispatch& dispatch)
        : dispatch(dispatch)
    {
    }

    bool available() const override { return isAvailable; }

    void begin(const Files& files, Reply reply) override
    {
        ++begun;
        waiting.emplace_back(files, std::move(reply));
        if (!holding)
            answer();
    }

    void end(const std::string& key) override { open.erase(key); }

    // Replies to those who wait, with keys or without.
    void answer()
    {
        for (auto& [files, reply] : std::exchange(waiting, {})) {
            std::optional<std::string> key;
            if (!failing)
                key = "key " + std::to_string(begun);
            if (key)
                open[*key] = files;
            dispatch.mainAsync([reply = std::move(reply), key] { reply(key); });
        }
    }

    bool isAvailable = true;
    bool failing = false;
    bool holding = false; // until answer()
    int begun = 0;
    std::map<std::string, Files> open; // by their keys

private:
    Dispatch& dispatch;
    std::deque<std::pair<Files, Reply>> waiting;
};

} // namespace tallowbay::headless
