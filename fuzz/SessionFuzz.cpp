// Whatever stands in the session file: it is read as a whole or not at all, and the strip that is
// restored from it is saved as it stands.

#include "base/Fatal.h"
#include "editor/strip/ThumbnailStrip.h"
#include "fuzz/FuzzTarget.h"
#include "platform/headless/Desktop.h"

namespace tallowbay::fuzz {

std::vector<std::string> seeds()
{
    return {
        R"({"items":[{"type":"image","url":"/a.png","checked":true},{"type":"divider"}]})",
        R"({"items":[{"type":"image","url":"/\u00e4","urlBytes":[47,255]},{"type":"x","url":"/b"}]})",
        R"({"items":[],"more":[[[{"deep":[1,2.5,null,false]}]]]})"};
}

} // namespace tallowbay::fuzz

using namespace tallowbay;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    headless::Desktop desktop;
    const auto file = SessionStore::file(desktop.files);
    desktop.files.createFolders(file.parent_path());
    desktop.files.writeAtomically(file, std::string(data, data + size));
    const auto items = SessionStore::load(desktop.files);
    if (!items)
        return 0;
    ThumbnailStrip strip;
    strip.restore(*items, [](const auto& path) { return path.native().size() % 2 == 0; });
    SessionStore::save(desktop.files, desktop.console, strip.session());
    const auto again = SessionStore::load(desktop.files);
    if (!again || *again != strip.session())
        fatalError("what was saved is not what was restored");
    return 0;
}
