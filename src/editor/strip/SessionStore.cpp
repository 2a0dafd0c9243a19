#include "editor/strip/SessionStore.h"

#include "capture/ProductFolder.h"
#include "platform/Console.h"
#include "platform/FileSystem.h"

#include <nlohmann/json.hpp>

#include <cstdint>

namespace tallowbay {

namespace {

using nlohmann::json;
using Item = SessionStore::Item;
namespace fs = std::filesystem;

// The containers around what stands deepest in a file of ours: a byte of an item's exact path.
constexpr int deepest = 4;

// A name may hold bytes that are no text, which JSON cannot. Such a path is written twice: as text
// with its odd bytes replaced, for whoever else reads the file, and byte by byte, for us.
constexpr const char* exactPathKey = "urlBytes";

bool isText(const std::string& bytes)
{
    try {
        (void)json(bytes).dump();
        return true;
    } catch (const json::type_error&) {
        return false;
    }
}

std::string asText(const std::string& bytes)
{
    const std::string quoted = json(bytes).dump(-1, ' ', false, json::error_handler_t::replace);
    return json::parse(quoted).get<std::string>();
}

json toJson(const Item& item)
{
    if (!item.path)
        return {{"type", "divider"}};
    const std::string& path = item.path->native();
    json image = {{"type", "image"}, {"url", asText(path)}, {"checked", item.checked}};
    if (!isText(path))
        image[exactPathKey] = std::vector<std::uint8_t>(path.begin(), path.end());
    return image;
}

// The places from the oldest on; with the last one of a batch goes the divider before it.
std::vector<std::size_t> byAge(const std::vector<Item>& items)
{
    std::vector<std::size_t> places;
    for (std::size_t end = items.size(); end > 0;) {
        std::size_t begin = end;
        while (begin > 0 && items[begin - 1].path)
            --begin;
        for (std::size_t place = begin; place < end; ++place)
            places.push_back(place);
        end = begin;
        if (end > 0)
            places.push_back(--end);
    }
    return places;
}

// Compact, as the library writes it.
std::string toText(const std::vector<Item>& items)
{
    std::string text = R"({"items":[)";
    const std::string closing = "]}";
    std::vector<std::string> written;
    std::size_t size = text.size() + closing.size();
    for (const Item& item : items)
        size += 1 + written.emplace_back(toJson(item).dump()).size(); // and a comma
    bool dropped = false;
    for (const std::size_t place : byAge(items)) {
        const bool separatesNothing = dropped && !items[place].path;
        if (size <= SessionStore::largestFile && !separatesNothing)
            break;
        dropped = true;
        size -= 1 + written[place].size();
        written[place].clear();
    }
    for (const std::string& item : written) {
        if (!item.empty())
            text += item + ',';
    }
    if (text.back() == ',')
        text.pop_back();
    return text + closing;
}

fs::path pathOf(const json& image)
{
    const std::string text = image.at("url").get<std::string>();
    const auto exact = image.find(exactPathKey);
    if (exact == image.end())
        return text;
    std::string bytes;
    for (const json& byte : *exact)
        bytes.push_back(static_cast<char>(byte.get<std::uint8_t>()));
    return bytes;
}

// Throws what the library throws for a member that is missing or of another type.
Item fromJson(const json& item)
{
    if (item.at("type").get<std::string>() == "divider")
        return {};
    const auto checked = item.find("checked");
    return {pathOf(item), checked == item.end() || checked->get<bool>()};
}

// Makes a document of what is read, in time that grows with the text alone. Of what stands deeper
// than anything of ours nothing is kept.
class ShallowReader final : public nlohmann::json_sax<json> {
public:
    json document;

    bool null() override { return put(nullptr); }
    bool boolean(bool value) override { return put(value); }
    bool number_integer(number_integer_t value) override { return put(value); }
    bool number_unsigned(number_unsigned_t value) override { return put(value); }
    bool number_float(number_float_t value, const string_t&) override { return put(value); }
    bool string(string_t& value) override { return put(std::move(value)); }
    bool binary(binary_t&) override { return false; } // which text never holds
    bool start_object(std::size_t) override { return begin(json::object()); }
    bool start_array(std::size_t) override { return begin(json::array()); }
    bool end_object() override { return end(); }
    bool end_array() override { return end(); }
    bool key(string_t& name) override
    {
        member = std::move(name);
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const json::exception&) override
    {
        return false;
    }

private:
    bool begin(json container)
    {
        put(std::move(container));
        if (++depth <= deepest)
            open.push_back(latest);
        return true;
    }
    bool end()
    {
        if (depth-- <= deepest)
            open.pop_back();
        return true;
    }
    bool put(json value)
    {
        if (depth > deepest)
            return true;
        if (open.empty())
            latest = &(document = std::move(value));
        else if (open.back()->is_array())
            latest = &open.back()->emplace_back(std::move(value));
        else
            latest = &((*open.back())[member] = std::move(value));
        return true;
    }

    std::vector<json*> open; // the containers around the place, outermost first
    json* latest = nullptr; // what was put last
    std::string member;
    int depth = 0; // containers around the place, those that are not kept, too
};

std::optional<json> parse(const std::string& text)
{
    ShallowReader reader;
    if (!json::sax_parse(text, &reader))
        return std::nullopt;
    return std::move(reader.document);
}

} // namespace

fs::path SessionStore::file(const FileSystem& fileSystem)
{
    return ssOptimizeDir(fileSystem) / "session.json";
}

void SessionStore::save(FileSystem& fileSystem, Console& console, const std::vector<Item>& items)
{
    const fs::path folder = ssOptimizeDir(fileSystem);
    if (!fileSystem.createFolders(folder))
        console.line("Session save failed: the folder " + folder.string() + " cannot be made");
    else if (!fileSystem.writeAtomically(file(fileSystem), toText(items)))
        console.line("Session save failed: " + file(fileSystem).string() + " cannot be written");
}

std::optional<std::vector<Item>> SessionStore::load(const FileSystem& fileSystem)
try {
    const auto size = fileSystem.size(file(fileSystem));
    if (!size || *size > largestFile)
        return std::nullopt;
    const auto text = fileSystem.read(file(fileSystem));
    if (!text)
        return std::nullopt;
    const auto session = parse(*text);
    if (!session)
        return std::nullopt;
    std::vector<Item> items;
    for (const json& item : session->at("items").get_ref<const json::array_t&>())
        items.push_back(fromJson(item));
    return items;
} catch (const json::exception&) {
    return std::nullopt;
}

void SessionStore::clear(FileSystem& fileSystem)
{
    fileSystem.remove(file(fileSystem));
}

} // namespace tallowbay
