#pragma once

#include "base/Bitmap.h"
#include "base/Lifetime.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>

namespace tallowbay {

class Dispatch;
class FileSystem;
class ImageCodec;

// Reads whole pictures in the background.
//
// Thread: main queue, the answers, too, which never come inside of the call.
class PictureLoader {
public:
    // Null: there is no such file, or it holds no picture.
    using Answer = std::function<void(Image)>;

    PictureLoader(Dispatch&, const FileSystem&, const ImageCodec&);
    ~PictureLoader(); // nothing is answered any more

    // For the canvas, where only the newest request counts: a former one that has not been answered
    // never is, and costs nothing if its turn has not come.
    void load(const std::filesystem::path&, Answer);
    void forget();
    bool isLoading() const { return loading; }

    // Always answered, whatever else is asked for.
    void loadBeside(const std::filesystem::path&, Answer);

private:
    void read(
        const std::filesystem::path&, std::shared_ptr<const std::atomic<bool>> dropped, Answer);

    Dispatch& dispatch;
    const FileSystem& fileSystem;
    const ImageCodec& codec;
    bool loading = false;
    std::shared_ptr<std::atomic<bool>> current; // of the newest request: whether it is dropped
    std::shared_ptr<std::atomic<bool>> ended = std::make_shared<std::atomic<bool>>(false);
    Lifetime lifetime;
};

} // namespace tallowbay
