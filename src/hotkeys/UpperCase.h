#pragma once

#include <string>

namespace tallowbay {

// UTF-8 text in capitals, whatever the user's language. Bytes that are no UTF-8 stay as they are.
std::string upperCase(const std::string&);

} // namespace tallowbay
