#pragma once

#include "base/Bitmap.h"
#include "base/Lifetime.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace tallowbay {

class Dispatch;
class FileSystem;
class ImageCodec;
class ThumbnailStrip;

// Reads small pictures of screenshots in the background, those first that are wanted first, and
// keeps as many as a strip can show with room on both sides.
//
// Thread: main queue.
class ThumbnailLoader {
public:
    struct Wanted {
        std::uint64_t id = 0;
        std::filesystem::path url;
        bool operator==(const Wanted&) const = default;
    };

    // What is wanted beyond this is left out.
    static constexpr std::size_t keptAtMost = 64;

    ThumbnailLoader(Dispatch&, const FileSystem&, const ImageCodec&);
    ~ThumbnailLoader(); // what is still waiting is not read

    // A thumbnail has come. Not called for a file that holds no picture.
    std::function<void(std::uint64_t id)> onLoaded;

    // Null if it is not there.
    Image thumbnail(std::uint64_t id) const;

    // The box they have to fit into. Another one has all of them read again.
    void setBox(PixelSize);

    // All that is wanted, nearest first. Others go.
    void want(std::vector<Wanted>);

    // The file shows something else now. Its thumbnail stays until the new one is there.
    void fileChanged(const std::filesystem::path&);

    // While paused, none is begun.
    void setPaused(bool);

private:
    struct Entry {
        std::filesystem::path url;
        Image image;
        bool settled = false; // read as the file and the box are now, or found to be unreadable
        std::uint64_t job = 0; // the one that reads it; 0: none
    };

    void startJobs();
    void start(const Wanted&, Entry&);
    void finish(std::uint64_t id, std::uint64_t job, Image);

    Dispatch& dispatch;
    const FileSystem& fileSystem;
    const ImageCodec& codec;
    PixelSize box;
    std::vector<Wanted> order;
    std::map<std::uint64_t, Entry> entries;
    std::uint64_t lastJob = 0;
    int running = 0;
    bool paused = false;
    std::shared_ptr<std::atomic<bool>> ended = std::make_shared<std::atomic<bool>>(false);
    Lifetime lifetime;
};

// All screenshots of a strip, those first that stand nearest to the slots that are seen.
std::vector<ThumbnailLoader::Wanted> nearestFirst(
    const ThumbnailStrip&, std::size_t firstVisible, std::size_t lastVisible);

} // namespace tallowbay
