#pragma once

#include "base/Lifetime.h"
#include "base/Subscription.h"
#include "platform/Clock.h"
#include "platform/Platform.h"
#include "platform/WindowSystem.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tallowbay {

class ToastGate;

// Some programs take the first file of a paste and no other, whoever offers them. When the user
// pastes several of ours into one of these, the rest is pasted after it, one file at a time, and
// then all of them stand on the pasteboard again.
//
// Any key or click of the user's ends it, and so does another window or another content of the
// pasteboard. What is left then stays there for the user's next paste, and a toast tells how many.
//
// Thread: main queue.
class PasteRest {
public:
    using Paths = std::vector<std::filesystem::path>;

    // `write` puts these files on the pasteboard.
    PasteRest(
        const Platform&, ToastGate&, std::function<void(const Paths&)> write,
        std::function<void()> firePaste);

    // Its pastes are ours and no key of the user's. Told whether it runs.
    std::function<void(bool)> onRunning;

    // The user has pasted, or we have for him: what is taken now is taken by that.
    void expectPaste();

    // The user has pressed a key or clicked: no more is posted.
    void interrupt();

    bool running() const { return run.has_value(); }

private:
    struct Run {
        Paths all;
        std::size_t taken = 1;
        NativeWindow window = 0;
        std::int64_t content = 0; // the pasteboard's change count
        MonotonicTime lastQuestion{};
        bool awaitsProgram = false;
        bool isEnding = false;
        Subscription clicks;
    };

    void filesTaken();
    void beginIfNeeded();
    void pasteNext();
    void complete();
    void stopAfterQuestion();
    void stop();
    void end();
    Paths rest() const;
    bool isUndisturbed() const;
    void after(std::chrono::milliseconds, void (PasteRest::*step)());

    const Platform platform;
    ToastGate& toasts;
    const std::function<void(const Paths&)> write;
    const std::function<void()> firePaste;
    MonotonicTime expectedUntil{};
    std::optional<Run> run;
    int lastStep = 0;
    Lifetime lifetime;
};

} // namespace tallowbay
