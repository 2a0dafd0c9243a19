#include "platform/posix/preferences/JsonDomainFile.h"

#include "platform/posix/FileDescriptor.h"
#include "platform/posix/files/FileBytes.h"
#include "platform/posix/preferences/DefaultsJson.h"

#include <algorithm>
#include <cerrno>
#include <iostream>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

// Held until destroyed. A file system that knows no locks goes without.
class WriterLock {
public:
    explicit WriterLock(const fs::path& document)
        : file(::open(lockPath(document).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
        while (file && ::flock(file.get(), LOCK_EX) != 0 && errno == EINTR) { }
    }

private:
    static fs::path lockPath(const fs::path& document)
    {
        return document.parent_path() / ("." + document.filename().native() + ".lock");
    }

    FileDescriptor file;
};

bool isBlank(const std::string& text)
{
    return text.find_first_not_of(" \t\r\n") == text.npos;
}

// How many containers stand in each other, if the text is JSON.
std::size_t depthOf(const std::string& text)
{
    std::size_t depth = 0;
    std::size_t greatest = 0;
    bool quoted = false;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char letter = text[at];
        if (quoted && letter == '\\')
            ++at;
        else if (letter == '"')
            quoted = !quoted;
        else if (!quoted && (letter == '{' || letter == '['))
            greatest = std::max(greatest, ++depth);
        else if (!quoted && (letter == '}' || letter == ']') && depth > 0)
            --depth;
    }
    return greatest;
}

// Empty if it is no JSON object, or too much of one. A file that is as good as empty is one.
std::optional<json> parseObject(const std::string& text)
{
    if (text.size() > JsonDomainFile::mostBytes || depthOf(text) > JsonDomainFile::deepest)
        return std::nullopt;
    auto document = isBlank(text) ? json::object() : json::parse(text, nullptr, false);
    return document.is_object() ? std::optional(std::move(document)) : std::nullopt;
}

bool isFree(const fs::path& path)
{
    struct stat ignored;
    return ::lstat(path.c_str(), &ignored) != 0;
}

fs::path freeNameAside(const fs::path& path)
{
    const auto name = path.native() + ".damaged";
    fs::path candidate = name;
    for (int i = 2; !isFree(candidate); ++i)
        candidate = name + "." + std::to_string(i);
    return candidate;
}

} // namespace

JsonDomainFile::JsonDomainFile(fs::path path)
    : path(std::move(path))
{
}

const json& JsonDomainFile::read() const
{
    if (!upToDate())
        load();
    return document;
}

bool JsonDomainFile::upToDate() const
{
    return version && FileVersion::of(path) == version;
}

void JsonDomainFile::load() const
{
    // Before the reading, and so never newer than what is read.
    const auto seen = FileVersion::of(path);
    version.reset();
    damaged = false;
    document = json::object();
    if (!seen)
        return;
    if (seen->isReliable())
        version = seen;
    const auto text = readFile(path, mostBytes);
    auto parsed = text ? parseObject(*text) : std::nullopt;
    damaged = !parsed;
    if (parsed)
        document = std::move(*parsed);
    else if (std::exchange(complainedOf, seen) != seen)
        complain();
}

void JsonDomainFile::complain() const
{
    std::cerr << "tallowbay: " << path.native()
              << " cannot be read or understood, and counts as empty" << std::endl;
}

bool JsonDomainFile::update(const std::function<void(json&)>& change)
{
    if (!makeFolders(path.parent_path()))
        return false;
    const WriterLock lock(path);
    load();
    auto changed = document;
    change(changed);
    // Compared as text: a number is equal to one of another type.
    const auto text = toText(changed);
    if (text == toText(document))
        return true;
    if (!parseObject(text))
        return false;
    version.reset();
    return (!damaged || setAside()) && replaceFile(path, text);
}

bool JsonDomainFile::setAside() const
{
    const auto aside = freeNameAside(path);
    if (::rename(path.c_str(), aside.c_str()) != 0)
        return false;
    std::cerr << "tallowbay: " << path.native() << " is damaged; kept as "
              << aside.filename().native() << std::endl;
    return true;
}

} // namespace tallowbay::posix
