#include "platform/x11/windows/XSettings.h"

#include <cstddef>
#include <cstdint>

namespace tallowbay::x11 {

namespace {

// Reads numbers and texts one after the other; once it has failed it stays failed.
class SettingsReader {
public:
    explicit SettingsReader(std::string_view bytes)
        : bytes(bytes)
    {
    }

    bool failed() const { return damaged; }
    void setBigEndian(bool big) { bigEndian = big; }

    std::string_view take(std::size_t count)
    {
        damaged = damaged || count > bytes.size();
        if (damaged)
            return {};
        const auto taken = bytes.substr(0, count);
        bytes.remove_prefix(count);
        return taken;
    }

    std::uint32_t number(std::size_t size)
    {
        std::uint32_t result = 0;
        const auto digits = take(size);
        for (std::size_t index = 0; index < digits.size(); ++index) {
            const auto shift = 8 * (bigEndian ? digits.size() - 1 - index : index);
            result |= std::uint32_t(static_cast<unsigned char>(digits[index])) << shift;
        }
        return result;
    }

    std::string_view paddedText(std::size_t length)
    {
        const auto text = take(length);
        take((4 - length % 4) % 4);
        return text;
    }

private:
    std::string_view bytes;
    bool bigEndian = false;
    bool damaged = false;
};

enum class Type { number = 0, text = 1, color = 2 };

// Empty for values that are no text.
std::optional<std::string_view> readValue(SettingsReader& reader, Type type)
{
    if (type == Type::text)
        return reader.paddedText(reader.number(4));
    reader.take(type == Type::color ? 8 : 4);
    return std::nullopt;
}

} // namespace

std::optional<std::string> textOfXSettings(std::string_view property, std::string_view name)
{
    SettingsReader reader(property);
    reader.setBigEndian(reader.number(1) == 1);
    reader.take(3 + 4); // padding, serial number
    const std::uint32_t count = reader.number(4);
    for (std::uint32_t index = 0; index < count && !reader.failed(); ++index) {
        const auto type = static_cast<Type>(reader.number(1));
        reader.take(1);
        const auto found = reader.paddedText(reader.number(2));
        reader.take(4); // serial number
        const auto text = readValue(reader, type);
        if (text && !reader.failed() && found == name)
            return std::string(*text);
    }
    return std::nullopt;
}

} // namespace tallowbay::x11
