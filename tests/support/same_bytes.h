#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <string>
#include <vector>

#include "tests/support/one_nan.h"

/// Comparisons of whole buffers to the bit: signs of zeros and NaN payloads count.
namespace support {

template <class T>
testing::AssertionResult same_bytes(const std::vector<T>& got, const std::vector<T>& expected)
{
    if (got.size() != expected.size())
        return testing::AssertionFailure() << "sizes differ: " << got.size() << " and " << expected.size();
    for (std::size_t i = 0; i < got.size(); ++i)
        if (std::memcmp(&got[i], &expected[i], sizeof(T)) != 0)
            return testing::AssertionFailure()
                   << "element " << i << " of " << got.size() << ": " << testing::PrintToString(got[i])
                   << " instead of " << testing::PrintToString(expected[i]);
    return testing::AssertionSuccess();
}

/// Pixels between guard elements that reveal a write out of bounds. All bytes start as `fill`.
template <class T>
class framed
{
  public:
    explicit framed(std::size_t count, unsigned char fill = 0xA5) : fill_{fill}, all_(count + 2 * guard)
    {
        std::memset(static_cast<void*>(all_.data()), fill, all_.size() * sizeof(T));
    }
    T* inside() { return all_.data() + guard; }
    std::size_t size() const { return all_.size() - 2 * guard; }
    std::vector<T> copy() const { return {all_.begin() + guard, all_.end() - guard}; }

    bool frame_untouched() const { return untouched(0, guard) && untouched(all_.size() - guard, all_.size()); }

  private:
    static constexpr std::size_t guard = 64;
    bool untouched(std::size_t begin, std::size_t end) const
    {
        const auto* bytes = reinterpret_cast<const unsigned char*>(all_.data());
        for (std::size_t i = begin * sizeof(T); i < end * sizeof(T); ++i)
            if (bytes[i] != fill_) return false;
        return true;
    }
    unsigned char fill_;
    std::vector<T> all_;
};

/// The text of the exception that `call` throws; empty when it throws none.
template <class Call>
std::string message_of(Call&& call)
{
    try {
        call();
    } catch (const std::exception& error) {
        return error.what();
    }
    return {};
}

}  // namespace support
