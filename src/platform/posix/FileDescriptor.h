#pragma once

#include <utility>

#include <unistd.h>

namespace tallowbay::posix {

// Owns a file descriptor; may be empty.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number)
        : number(number)
    {
    }
    FileDescriptor(FileDescriptor&& other) noexcept
        : number(std::exchange(other.number, -1))
    {
    }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(number, other.number);
        return *this;
    }
    ~FileDescriptor()
    {
        if (number >= 0)
            ::close(number);
    }

    int get() const { return number; }
    explicit operator bool() const { return number >= 0; }

private:
    int number = -1;
};

} // namespace tallowbay::posix
