#pragma once

#include <cstdint>

namespace support {

/// The hash FNV-1a of Fowler, Noll and Vo over bytes or larger units, for comparing results of different platforms.
class fnv1a
{
  public:
    void add(std::uint64_t unit) { value_ = (value_ ^ unit) * 0x100000001b3; }
    std::uint64_t value() const { return value_; }

  private:
    std::uint64_t value_ = 0xcbf29ce484222325;
};

}  // namespace support
